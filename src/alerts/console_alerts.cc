#include "alerts/console_alerts.h"

#include <utility>

#include "alerts/lookup.h"
#include "alerts/summary_table.h"

namespace zendrix::alerts {

ConsoleAlerts::ConsoleAlerts(core::AppState& state, core::ErrorLog& log, TableSource table)
    : state_(state),
      log_(log),
      table_(std::move(table)),
      renderer_(state, log, context_),
      decisions_(state, log, table_, context_, checked_) {}

void ConsoleAlerts::LoadChkAlrColl() {
  alerts::LoadChkAlrColl(state_, log_, checked_);
}

std::optional<std::string> ConsoleAlerts::Decision(const std::string& date_utc) {
  return checked_.Find(date_utc);
}

bool ConsoleAlerts::HasDetails(const std::string& id) {
  GetNotableInfo(id);
  return HasSummaryTable(state_, context_, "success") || HasSummaryTable(state_, context_, "failed");
}

void ConsoleAlerts::ForgetNotableInfo() {
  context_.Reset();
}

std::string ConsoleAlerts::RenderDetails(const std::string& id) {
  GetNotableInfo(id);
  return renderer_.GetCurrDesc(true, Purpose::kShown);
}

void ConsoleAlerts::GetNotableInfo(const std::string& id) {
  const auto table = table_();
  alerts::GetNotableInfo(state_, log_, table.get(), id, context_);
}

bool ConsoleAlerts::DecideFromMenu(Answer answer, const ListedAlert& alert) {
  return decisions_.FromMenu(answer, alert);
}

void ConsoleAlerts::DecideFromPage(Answer answer, const ListedAlert& alert) {
  decisions_.FromPage(answer, alert);
}

}  // namespace zendrix::alerts
