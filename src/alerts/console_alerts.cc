#include "alerts/console_alerts.h"

#include <utility>

#include "alerts/lookup.h"
#include "alerts/summary_table.h"

namespace zendrix::alerts {

ConsoleAlerts::ConsoleAlerts(core::AppState& state, core::ErrorLog& log,
                             std::function<store::EventTable*()> table)
    : state_(state),
      log_(log),
      table_(std::move(table)),
      renderer_(state, log, context_),
      decisions_(state, log, context_, checked_) {}

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
  alerts::GetNotableInfo(state_, log_, table_(), id, context_);
}

bool ConsoleAlerts::DecideFromMenu(Answer answer, const std::string& item_text, const std::string& date_utc) {
  return decisions_.FromMenu(answer, table_(), item_text, date_utc);
}

void ConsoleAlerts::DecideFromPage(Answer answer) {
  decisions_.FromPage(answer, table_());
}

}  // namespace zendrix::alerts
