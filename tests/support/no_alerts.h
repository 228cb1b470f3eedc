// Alert logic that knows nothing: what a test of the list or the page does not care about.
#pragma once

#include "alerts/alert_services.h"

namespace zendrix::testing {

class NoAlerts : public alerts::AlertServices {
 public:
  void LoadChkAlrColl() override {}
  std::optional<std::string> Decision(const std::string&) override { return std::nullopt; }
  bool HasDetails(const std::string&) override { return false; }
  void ForgetNotableInfo() override {}
  std::string RenderDetails(const std::string&) override { return {}; }
  alerts::Explanation Explain(const alerts::ListedAlert&) override {
    return {0, [](std::size_t) { return std::string(); }};
  }
  void Conclude(alerts::Answer, const alerts::ListedAlert&) override {}
  bool DecideFromMenu(alerts::Answer, const alerts::ListedAlert&) override { return false; }
  void DecideFromPage(alerts::Answer, const alerts::ListedAlert&) override {}
};

}  // namespace zendrix::testing
