// The alert logic as the Home console uses it: one lookup at a time, its renderings, and the user's
// decisions.
#pragma once

#include <optional>
#include <string>

#include "alerts/alert_services.h"
#include "alerts/checked_alerts.h"
#include "alerts/decisions.h"
#include "alerts/notable_info.h"
#include "alerts/renderer.h"

namespace zendrix::alerts {

class ConsoleAlerts : public AlertServices {
 public:
  ConsoleAlerts(core::AppState& state, core::ErrorLog& log, TableSource table);

  void LoadChkAlrColl() override;
  std::optional<std::string> Decision(const std::string& date_utc) override;
  bool HasDetails(const std::string& id) override;
  void ForgetNotableInfo() override;
  std::string RenderDetails(const std::string& id) override;
  Explanation Explain(const ListedAlert& alert) override;
  void Conclude(Answer answer, const ListedAlert& alert) override;
  bool DecideFromMenu(Answer answer, const ListedAlert& alert) override;
  void DecideFromPage(Answer answer, const ListedAlert& alert) override;

  // Looks the alert up; everything below speaks of the alert looked up last.
  void GetNotableInfo(const std::string& id);
  AlertContext& context() { return context_; }
  Renderer& renderer() { return renderer_; }
  CheckedAlerts& ChkAlrColl() { return checked_; }

 private:
  core::AppState& state_;
  core::ErrorLog& log_;
  TableSource table_;
  AlertContext context_;
  CheckedAlerts checked_;
  Renderer renderer_;
  Decisions decisions_;
};

}  // namespace zendrix::alerts
