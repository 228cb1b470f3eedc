#include "agent/host/parse_autorun.h"

#include <algorithm>
#include <iterator>

#include "agent/host/text.h"

namespace zendrix::agent {
namespace {

// Splits "key=value" with blanks allowed around the "="; the key is empty when there is none.
void SplitAssignment(std::string_view line, std::string_view& key, std::string_view& value) {
  const std::size_t sign = line.find('=');
  key = sign == std::string_view::npos ? std::string_view() : Trim(line.substr(0, sign));
  value = sign == std::string_view::npos ? std::string_view() : Trim(line.substr(sign + 1));
}

void Add(std::string_view command, Commands& commands) {
  if (command.empty()) return;
  if (commands.texts.size() < kMostCommands) {
    commands.texts.emplace_back(command);
  } else {
    ++commands.left_out;
  }
}

bool IsComment(std::string_view line) {
  return !line.empty() && (line[0] == '#' || line[0] == ';');
}

// Lines as the service manager joins them (systemd.syntax(7)): comments between the parts of one are passed
// over, a blank stands for the line end.
std::vector<std::string> JoinedLines(std::string_view text) {
  std::vector<std::string> lines;
  bool goes_on = false;
  for (const std::string_view raw : SplitLines(text)) {
    std::string_view line = Trim(raw);
    if (IsComment(line)) continue;
    const bool more = line.ends_with('\\');
    if (more) line.remove_suffix(1);
    if (goes_on) {
      lines.back().append(" ").append(line);
    } else {
      lines.emplace_back(line);
    }
    goes_on = more;
  }
  return lines;
}

bool IsCommandKey(std::string_view key) {
  static constexpr std::string_view kKeys[] = {"ExecStart",     "ExecStartPre",  "ExecStartPost",
                                               "ExecReload",    "ExecStop",      "ExecStopPost",
                                               "ExecCondition", "ExecReloadPost"};
  return std::find(std::begin(kKeys), std::end(kKeys), key) != std::end(kKeys);
}

}  // namespace

Commands ParseDesktopCommands(std::string_view text) {
  bool in_entry = false;
  bool says_hidden = false;
  bool says_shown = false;
  Commands commands;
  for (std::string_view line : SplitLines(text)) {
    line = Trim(line);
    if (!line.empty() && line[0] == '[') in_entry = line.starts_with("[Desktop Entry]");
    if (!in_entry || IsComment(line)) continue;
    std::string_view key;
    std::string_view value;
    SplitAssignment(line, key, value);
    if (key == "Hidden") (value == "true" ? says_hidden : says_shown) = true;
    // Some desktops read the key with a mark behind it: "Exec[$e]".
    if (key.substr(0, key.find('[')) == "Exec") Add(value, commands);
  }
  return says_hidden && !says_shown ? Commands() : commands;
}

Commands ParseUnitCommands(std::string_view text) {
  Commands commands;
  for (const std::string& line : JoinedLines(text)) {
    std::string_view key;
    std::string_view value;
    SplitAssignment(line, key, value);
    if (!IsCommandKey(key)) continue;
    value.remove_prefix(std::min(value.find_first_not_of("@-:+!|"), value.size()));
    Add(value, commands);
  }
  return commands;
}

}  // namespace zendrix::agent
