// What has to be settled before the toolkit's application object exists, and what belongs to it right after.
#pragma once

#include <string>

namespace zendrix::app {

// Takes what would steer the toolkit or the browser out of the environment (but in a build with
// ZENDRIX_TEST_BUILD, which keeps it), then settles the browser's own switches. To be called first in main,
// while there is one thread.
void BeforeApplication(const std::string& edition);
void AfterApplication(const std::string& edition);

// The name of the edition's desktop entry, without its ending. A desktop finds icon, name and actions of a
// window by it: it is the window's application id on Wayland and the first part of its class on X.
std::string DesktopEntryOf(const std::string& edition);

}  // namespace zendrix::app
