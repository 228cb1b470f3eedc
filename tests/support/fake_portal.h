// A browser for portal pages in tests: writes down what it is told; the test plays what becomes of it.
#pragma once

#include <string>
#include <vector>

#include "widgets/portal_view.h"

namespace zendrix::testing {

class FakePortal : public widgets::PortalBrowser {
 public:
  explicit FakePortal(widgets::PortalView& view) : view_(view) { view.SetBrowser(this); }
  ~FakePortal() override { view_.SetBrowser(nullptr); }

  std::vector<std::string> events;  // "navigate ...", "back", "forward", "stop"

  void Navigate(const std::string& url) override { events.push_back("navigate " + url); }
  void GoBack() override { events.push_back("back"); }
  void GoForward() override { events.push_back("forward"); }
  void Stop() override { events.push_back("stop"); }

  void Arrive() {
    view_.ready = true;
    view_.NavigateComplete.Raise();
  }
  void Fail() { view_.NavigateError.Raise(); }

 private:
  widgets::PortalView& view_;
};

}  // namespace zendrix::testing
