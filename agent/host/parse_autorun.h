// Readers of what starts by itself: desktop autostart entries and service units. Pure functions on text;
// what cannot be read gives no command.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zendrix::agent {

// No more commands than this are taken from one file.
inline constexpr std::size_t kMostCommands = 16;

// What one file starts.
struct Commands {
  std::vector<std::string> texts;
  std::uint64_t left_out = 0;  // further ones than kMostCommands
};

// Commands of a desktop entry that any desktop would run; none when all would take it for switched off
// ("Hidden=true"). Of a key that stands twice some take the first, others the last.
Commands ParseDesktopCommands(std::string_view text);

// Commands that a service unit, or a drop-in of one, runs at any time of its life ("ExecStart=" and its
// neighbours, systemd.service(5)), without systemd's prefix characters. A line that ends in a backslash goes
// on in the next one.
Commands ParseUnitCommands(std::string_view text);

}  // namespace zendrix::agent
