// Readers of what starts by itself: desktop autostart entries and service units. Pure functions on text;
// what cannot be read gives no command.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zendrix::agent {

// Command of a desktop entry; no value when the entry has none or is switched off ("Hidden=true").
std::optional<std::string> ParseDesktopCommand(std::string_view text);

// Commands that a service unit runs, "ExecStart=" and its neighbours, without systemd's prefix characters.
std::vector<std::string> ParseUnitCommands(std::string_view text);

// The program that a command line runs: its first word, quotes removed; behind "env" with assignments, the
// first word that is none. Empty when there is none.
std::string ProgramOfCommand(std::string_view command);

}  // namespace zendrix::agent
