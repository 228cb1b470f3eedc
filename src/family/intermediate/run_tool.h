// Another program of the system, asked a question: without a shell, with an environment of its own, for a
// limited time.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace zendrix::family {

struct ToolAnswer {
  int status = 0;    // exit status
  std::string text;  // its standard output, at most a megabyte of it
};

// Nothing when it cannot be started, was ended by a signal or took longer than it may; it is ended then.
std::optional<ToolAnswer> RunTool(const std::vector<std::string>& command, std::chrono::milliseconds most);

}  // namespace zendrix::family
