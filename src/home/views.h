// The panes of the Home console by index, and how their controls are named.
#pragma once

#include <array>
#include <string>

namespace zendrix::home {

// Index 1 is not used; Quit has no pane.
enum View : int {
  kAlertsView = 0,
  kAdvancedView = 2,
  kOptionsView = 3,
  kHelpView = 4,
  kQuitView = 5,
  kSummaryView = 6
};
inline constexpr int kViewCount = 7;
inline constexpr std::array<int, 6> kViews = {0, 2, 3, 4, 5, 6};

// What the navigation calls the pane.
const char* CaptionOf(int view);

// The given name of a control that each pane has one of: "StaImg(2)".
std::string Indexed(const char* name, int view);

}  // namespace zendrix::home
