// Readers of the per-process files under /proc. Pure functions on text: damage gives "no value", never an
// error. Names are the raw bytes that the process chose.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zendrix::agent {

// /proc/PID/stat
struct ProcessStat {
  std::uint64_t pid = 0;
  std::string name;  // at most 15 bytes, chosen by the process
  std::uint64_t parent = 0;
  std::uint64_t start_ticks = 0;  // since boot; with the pid it names one process for good
  bool kernel_thread = false;
  bool ended = false;  // or about to: it runs nothing any more and has lost its program
};
std::optional<ProcessStat> ParseProcessStat(std::string_view text);

// Resident memory in kB from /proc/PID/status.
std::optional<std::uint64_t> ParseResidentKb(std::string_view text);
// A process's share of the memory in kB, from /proc/PID/smaps_rollup: what several have in common is divided
// among them.
std::optional<std::uint64_t> ParseShareKb(std::string_view text);

// Target of /proc/PID/exe
struct ProgramFile {
  std::string path;
  bool deleted = false;    // the file is gone while the program runs
  bool in_memory = false;  // there never was a file: the program was started from an anonymous memory file
};
ProgramFile ParseProgramFile(std::string_view target);

// Inode of a /proc/PID/fd link such as "socket:[1599]".
std::optional<std::uint64_t> ParseSocketInode(std::string_view target);

}  // namespace zendrix::agent
