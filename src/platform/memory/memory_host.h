// The machine, the desktop and the end of the process as a test wants them: facts that are set, acts that are
// written down.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/host_info.h"
#include "platform/process.h"
#include "platform/shell.h"

namespace zendrix::platform {

class MemoryHost : public HostInfo {
 public:
  std::string ComputerName() override { return computer_name; }
  std::string SystemInformationTool() override { return system_information_tool; }

  std::string computer_name = "TESTHOST";
  std::string system_information_tool;
};

class RecordingShell : public Shell {
 public:
  Status Open(const std::string& document) override {
    opened.push_back(document);
    return Outcome(document);
  }
  Status RunHidden(const std::vector<std::string>& arguments) override {
    runs.push_back(arguments);
    if (on_run) on_run(arguments);
    return Outcome(arguments.empty() ? "" : arguments.front());
  }

  // What was asked for, refused calls included.
  std::vector<std::string> opened;
  std::vector<std::vector<std::string>> runs;
  // When set, every call is refused with it.
  std::optional<ErrorKind> fail;
  // Called when a program is started, to play its effects.
  std::function<void(const std::vector<std::string>& arguments)> on_run;

 private:
  Status Outcome(const std::string& what) const {
    if (fail) return Error{*fail, what + ": refused"};
    return Done{};
  }
};

class ThrowingProcess : public Process {
 public:
  [[noreturn]] void End(int status) override {
    ended = status;
    throw ProcessEnded{status};
  }

  // The status of the last End, if there was one.
  std::optional<int> ended;
};

}  // namespace zendrix::platform
