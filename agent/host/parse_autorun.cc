#include "agent/host/parse_autorun.h"

#include <algorithm>

#include "agent/host/text.h"

namespace zendrix::agent {
namespace {

// Splits "key=value" with blanks allowed around the "="; the key is empty when there is none.
void SplitAssignment(std::string_view line, std::string_view& key, std::string_view& value) {
  const std::size_t sign = line.find('=');
  key = sign == std::string_view::npos ? std::string_view() : Trim(line.substr(0, sign));
  value = sign == std::string_view::npos ? std::string_view() : Trim(line.substr(sign + 1));
}

// One word off the front; a quoted word may hold blanks.
std::string TakeWord(std::string_view& text) {
  text = Trim(text);
  if (text.empty()) return {};
  const char quote = text[0];
  const bool quoted = quote == '"' || quote == '\'';
  if (quoted) text.remove_prefix(1);
  const std::size_t end = quoted ? text.find(quote) : text.find_first_of(" \t");
  std::string word(text.substr(0, end));
  text.remove_prefix(std::min(end == std::string_view::npos ? text.size() : end + 1, text.size()));
  return word;
}

bool IsEnv(std::string_view word) {
  return word == "env" || word == "/usr/bin/env" || word == "/bin/env";
}

}  // namespace

std::optional<std::string> ParseDesktopCommand(std::string_view text) {
  bool in_entry = false;
  std::optional<std::string> command;
  for (std::string_view line : SplitLines(text)) {
    line = Trim(line);
    if (!line.empty() && line[0] == '[') in_entry = line == "[Desktop Entry]";
    if (!in_entry) continue;
    std::string_view key;
    std::string_view value;
    SplitAssignment(line, key, value);
    if (key == "Hidden" && value == "true") return {};
    if (key == "Exec" && !value.empty() && !command) command = std::string(value);
  }
  return command;
}

std::vector<std::string> ParseUnitCommands(std::string_view text) {
  std::vector<std::string> commands;
  for (const std::string_view line : SplitLines(text)) {
    std::string_view key;
    std::string_view value;
    SplitAssignment(line, key, value);
    if (key != "ExecStart" && key != "ExecStartPre" && key != "ExecStartPost") continue;
    value.remove_prefix(std::min(value.find_first_not_of("@-:+!"), value.size()));
    if (!value.empty()) commands.emplace_back(value);
  }
  return commands;
}

std::string ProgramOfCommand(std::string_view command) {
  std::string word = TakeWord(command);
  if (!IsEnv(word)) return word;
  do {
    word = TakeWord(command);
  } while (word.find('=') != std::string::npos || word.substr(0, 1) == "-");
  return word;
}

}  // namespace zendrix::agent
