// A desktop that starts nothing and writes down what it is asked. The inspector uses it too, so that looking
// at a folder never opens a browser.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/shell.h"

namespace zendrix::platform {

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
  Status OpenInstaller(const std::string& path, const std::string& parameters) override {
    installers.push_back({path, parameters});
    if (on_installer) on_installer();
    return Outcome(path);
  }

  // What was asked for, refused calls included.
  std::vector<std::string> opened;
  std::vector<std::vector<std::string>> runs;
  std::vector<std::pair<std::string, std::string>> installers;  // path and parameters
  // When set, every call is refused with it.
  std::optional<ErrorKind> fail;
  // Called when a program is started, to play its effects.
  std::function<void(const std::vector<std::string>& arguments)> on_run;
  std::function<void()> on_installer;

 private:
  Status Outcome(const std::string& what) const {
    if (fail) return Error{*fail, what + ": refused"};
    return Done{};
  }
};

}  // namespace zendrix::platform
