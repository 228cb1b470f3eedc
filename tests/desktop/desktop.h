// A private desktop: a screen in memory, a session bus, an accessibility bus and a window manager, each
// waited for until it answers. One per process, because the accessibility library knows one desktop; it stays
// until the process ends.
#pragma once

#include <string>
#include <vector>

#include "desktop/child_process.h"

namespace zendrix::desktop {

class Desktop {
 public:
  // `folder` belongs to the user of the tests. The environment of this process becomes the desktop's.
  explicit Desktop(const std::string& folder);
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;

  // What a program started on this desktop finds in its environment: nothing of the caller's, no way to the
  // network and none to the system's services.
  const Environment& environment() const { return environment_; }
  ChildProcess Start(const std::vector<std::string>& command, const std::string& name) const;
  const std::string& folder() const { return folder_; }

 private:
  void StartScreen();
  void StartBuses();
  void StartWindowManager();

  std::string folder_;
  Environment environment_;
  ChildProcess screen_, session_bus_, accessibility_, window_manager_;
};

}  // namespace zendrix::desktop
