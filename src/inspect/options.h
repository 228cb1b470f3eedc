// What the command line said before the command.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace zendrix::inspect {

struct Options {
  std::string folder;   // the program folder, no closing separator
  bool chosen = false;  // the folder was named; otherwise it is this program's own
  bool write = false;   // changes reach the folder; otherwise they stay in memory
  std::string edition = "Home";
  std::optional<std::string> agent;  // "running", "stopped", "missing": instead of the real service layer
  bool answer_yes = true;            // to every question
  bool pretty = false;
  std::vector<std::string> arguments;  // the command and what stands behind it
};

}  // namespace zendrix::inspect
