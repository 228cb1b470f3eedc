// A page of the portal in an embedded browser: it goes nowhere else, has a history, and says so when the page
// cannot be had. The tour and the survey stand on it.
#pragma once

#include <memory>
#include <string>

#include "core/app_state.h"
#include "widgets/label.h"
#include "widgets/portal_view.h"

namespace zendrix::home {

class PortalPage {
 public:
  // `view` outlives the page.
  PortalPage(core::AppState& state, widgets::PortalView& view);
  PortalPage(const PortalPage&) = delete;
  PortalPage& operator=(const PortalPage&) = delete;

  void Navigate(const std::string& url);
  // There is no address to go to.
  void SayNoPage() { lblNoPage.visible = true; }
  void GoBack() { view_.GoBack(); }
  void GoForward() { view_.GoForward(); }
  void Stop() { view_.Stop(); }

  // Shown from a failed navigation to the next page that is there.
  widgets::Label lblNoPage{
      "lblNoPage",
      "This page cannot be shown at the moment. It is on the portal: check the connection "
      "to the Internet, or try again later."};

 private:
  // Waits until nothing is on its way, ten seconds at the most; the event loop goes on.
  void WaitUntilReady();

  core::AppState& app_;
  widgets::PortalView& view_;
  bool waiting_ = false;
  std::shared_ptr<char> alive_ = std::make_shared<char>();
};

}  // namespace zendrix::home
