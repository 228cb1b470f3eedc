// The links of the navigation strip that lead to the portal: feedback, support, the newest version, and the
// tour. The rules know each but the last by two labels, a sign and a word; both lead to the same place.
#pragma once

#include <functional>

#include "core/app_state.h"
#include "core/error_log.h"
#include "widgets/label.h"
#include "widgets/screen.h"

namespace zendrix::home {

// Everything outlives the links.
struct PortalLinksNeeds {
  core::AppState& state;
  core::ErrorLog& log;
  widgets::Screen& screen;
  std::function<void()> ShowTour;  // may be empty: there is no tour
};

class PortalLinks {
 public:
  explicit PortalLinks(PortalLinksNeeds needs);
  PortalLinks(const PortalLinks&) = delete;
  PortalLinks& operator=(const PortalLinks&) = delete;

  void Feedback_Click();
  void NewVer_Click();
  void Support_Click();
  void hGetStr_Click();

  widgets::Label Feedbacklbl{"Feedbacklbl", "Feedback"};
  widgets::Label Feedback{"Feedback"};
  widgets::Label NewVerlbl{"NewVerlbl", "New version"};
  widgets::Label NewVer{"NewVer"};
  widgets::Label Supportlbl{"Supportlbl", "Support"};
  widgets::Label Support{"Support"};
  widgets::Label hGetStr{"hGetStr", "Getting Started"};

 private:
  PortalLinksNeeds needs_;
};

}  // namespace zendrix::home
