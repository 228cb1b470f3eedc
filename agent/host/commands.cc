#include "agent/host/commands.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <optional>
#include <vector>

#include "agent/host/places.h"

namespace zendrix::agent {
namespace {

constexpr std::size_t kMostWords = 2000;  // of one command; nobody writes so many
constexpr int kMostDepth = 6;             // starters behind one another

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kParts = " \t\r\n\"'`;&|()<>{}=,:$";

bool IsOneOf(std::string_view word, std::initializer_list<std::string_view> words) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

// One word off the front; quotes, also in the middle of a word, hold it together and vanish.
std::string TakeWord(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  std::string word;
  char quote = 0;
  std::size_t at = 0;
  for (; at < text.size(); ++at) {
    const char byte = text[at];
    if (quote == 0 && kBlanks.find(byte) != std::string_view::npos) break;
    if (quote == 0 && (byte == '"' || byte == '\'')) {
      quote = byte;
    } else if (byte == quote) {
      quote = 0;
    } else {
      word += byte;
    }
  }
  text.remove_prefix(at);
  return word;
}

std::vector<std::string> WordsOf(std::string_view text) {
  std::vector<std::string> words;
  while (words.size() < kMostWords && text.find_first_not_of(kBlanks) != std::string_view::npos)
    words.push_back(TakeWord(text));
  return words;
}

std::string_view NameOf(std::string_view path) {
  return path.substr(path.rfind('/') + 1);
}

// Of "python3.11" the "python".
std::string_view WithoutVersion(std::string_view name) {
  return name.substr(0, name.find_last_not_of("0123456789.") + 1);
}

bool IsShell(std::string_view name) {
  return IsOneOf(name, {"sh", "bash", "dash", "zsh", "ksh", "mksh", "ash", "fish", "busybox"});
}

bool IsInterpreter(std::string_view name) {
  return IsOneOf(WithoutVersion(name),
                 {"python", "perl", "ruby", "node", "nodejs", "php", "lua", "java", "tclsh"});
}

bool IsLoader(std::string_view name) {
  return name.starts_with("ld-linux") || name.starts_with("ld-musl") || name == "ld.so";
}

// Starts the program named behind its own options.
bool IsStarter(std::string_view name) {
  return IsLoader(name) || IsOneOf(name, {"env", "nohup", "setsid", "nice", "ionice", "stdbuf", "timeout",
                                          "exec", "sudo", "doas", "chrt", "taskset", "unshare", "setpriv",
                                          "systemd-run", "dbus-launch", "dbus-run-session", "xargs"});
}

bool IsNumber(std::string_view word) {
  return !word.empty() && word[0] >= '0' && word[0] <= '9' &&
         word.find_first_not_of("0123456789.smhd") == std::string_view::npos;
}

// Options of a starter, assignments of "env", the time of "timeout".
std::size_t SkipOptions(const std::vector<std::string>& words, std::size_t at) {
  while (at < words.size() &&
         (words[at].starts_with("-") || words[at].find('=') != std::string::npos || IsNumber(words[at])))
    ++at;
  return at;
}

// The text that a shell is given to run; no value when it is given a file, or nothing.
std::optional<std::string> TextOfShell(const std::vector<std::string>& words, std::size_t at) {
  for (; at < words.size() && words[at].starts_with("-"); ++at) {
    const bool is_text = !words[at].starts_with("--") && words[at].find('c') != std::string::npos;
    if (is_text && at + 1 < words.size()) return words[at + 1];
  }
  return {};
}

struct Run {
  std::string program;
  bool through = false;    // something else starts it
  bool as_script = false;  // an interpreter reads it
};

Run FindProgram(std::vector<std::string> words) {
  Run run;
  for (int depth = 0; depth < kMostDepth; ++depth) {
    const std::size_t at = SkipOptions(words, 0);
    if (at >= words.size()) return run;
    const std::string word = words[at];
    const std::string_view name = NameOf(word);
    const bool is_shell = IsShell(name);
    const bool is_script = is_shell || IsInterpreter(name);
    if (!is_script && !IsStarter(name)) {
      run.program = word;
      return run;
    }
    run.through = true;
    if (const auto text = is_shell ? TextOfShell(words, at + 1) : std::nullopt) {
      words = WordsOf(*text);
      continue;
    }
    const std::size_t next = SkipOptions(words, at + 1);
    if (is_script) {
      // A path behind it is its script; otherwise it reads its code from elsewhere.
      run.as_script = next < words.size() && words[next].find('/') != std::string::npos;
      run.program = run.as_script ? words[next] : word;
      return run;
    }
    if (next >= words.size()) return run;
    words.erase(words.begin(), words.begin() + static_cast<std::ptrdiff_t>(next));
  }
  return run;
}

bool IsOctal(char byte) {
  return byte >= '0' && byte <= '7';
}

// As a shell or the service manager takes it: quotes vanish, "\x2f" and "\057" are "/", "\t" is "t" (a
// shell's word), and %T and %V stand for the temporary folders (systemd.unit(5)).
std::string Unescaped(std::string_view text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char byte = text[i];
    const char next = i + 1 < text.size() ? text[i + 1] : '\0';
    const auto number = [&](std::size_t from, std::size_t digits, int base) {
      int value = 0;
      for (const char digit : text.substr(from, digits)) {
        const bool is_letter = (digit | 0x20) >= 'a';
        value = value * base + (is_letter ? (digit | 0x20) - 'a' + 10 : digit - '0');
      }
      return static_cast<char>(value & 0xFF);
    };
    if (byte == '"' || byte == '\'') continue;
    if (byte == '%' && (next == 'T' || next == 'V')) {
      plain += next == 'T' ? "/tmp" : "/var/tmp";
      ++i;
    } else if (byte == '\\' && next == 'x' &&
               text.substr(i + 2, 2).find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos &&
               i + 3 < text.size()) {
      plain += number(i + 2, 2, 16);
      i += 3;
    } else if (byte == '\\' && i + 3 < text.size() && IsOctal(next) && IsOctal(text[i + 2]) &&
               IsOctal(text[i + 3])) {
      plain += number(i + 1, 3, 8);
      i += 3;
    } else if (byte != '\\') {
      plain += byte;
    }
  }
  return plain;
}

// Folders that hold settings and programs of every ordinary user.
bool IsOwnFolder(std::string_view path) {
  return path.find("/.config/") != std::string_view::npos ||
         path.find("/.cache/") != std::string_view::npos || path.find("/.local/") != std::string_view::npos ||
         path.find("/.mozilla/") != std::string_view::npos;
}

void LookAtParts(std::string_view text, bool through, Command& command) {
  bool behind_cd = false;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of(kParts), text.size());
    const std::string_view part = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (part.empty()) continue;
    // "cd /tmp; ./x"
    const bool in_temporary =
        InTemporaryFolder(part) || (behind_cd && InTemporaryFolder(std::string(part) + "/x"));
    behind_cd = through && part == "cd";
    if (command.temporary.empty() && in_temporary) command.temporary = NormalPath(part);
    // An ordinary program's arguments name its settings, and these are hidden on every computer.
    const bool counts = through || !IsOwnFolder(part);
    if (command.hidden.empty() && counts && IsHidden(part)) command.hidden = NormalPath(part);
  }
}

}  // namespace

Command ReadCommand(std::string_view text) {
  Command command;
  Run run = FindProgram(WordsOf(text));
  command.program = std::move(run.program);
  const std::string program = NormalPath(command.program);
  if (InTemporaryFolder(command.program)) command.temporary = program;
  if (IsHidden(command.program)) command.hidden = program;
  LookAtParts(text, run.through, command);
  LookAtParts(Unescaped(text), run.through, command);
  const bool is_usual_script = run.as_script && program.starts_with("/etc/");
  command.is_outside =
      command.program.starts_with("/") && !InSystemFolder(command.program) && !is_usual_script;
  return command;
}

}  // namespace zendrix::agent
