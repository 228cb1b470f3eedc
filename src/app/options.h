// The command line. What is no option of the start itself is handed to the entry procedure, which looks in it
// for
// "-ns" (no splash) and "-nv" (first run after an update), anywhere and in any case.
#pragma once

#include <string>
#include <vector>

namespace zendrix::app {

struct Options {
  std::string edition = "Home";
  std::string folder;        // program folder; no closing separator
  bool chosen = false;       // the folder was named; otherwise it is the executable's
  std::string exe_name;      // the executable's name without extension
  std::string exe_path;      // canonical
  std::string command_line;  // the other arguments, joined by blanks
  bool help = false;
  bool version = false;
  std::string error;  // what is wrong with the command line; empty when nothing is
};

// `arguments` without the program's name; `exe_path` as the kernel tells it.
Options ParseOptions(const std::vector<std::string>& arguments, const std::string& exe_path);
std::string Usage();
// Canonical path of this executable.
std::string ExecutablePath();

}  // namespace zendrix::app
