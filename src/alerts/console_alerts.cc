#include "alerts/console_alerts.h"

#include <memory>
#include <utility>

#include "alerts/lookup.h"
#include "alerts/summary_table.h"
#include "core/guards.h"

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

Explanation ConsoleAlerts::Explain(const ListedAlert& alert) {
  GetNotableInfo(alert.id);
  if (context_.NotableInfo.front().DateUTC != alert.date_utc) context_.Reset();
  auto copy = std::make_shared<AlertContext>(context_);
  // The pages name the time that the alert's own rendering leaves.
  copy->AlertDate.clear();
  copy->AlertTime.clear();
  Renderer(state_, log_, *copy).GetCurrDesc(true, Purpose::kShown);
  return {copy->NotableInfo.size() - 1, [this, copy](std::size_t index) {
            return Renderer(state_, log_, *copy).GetMonitorDesc(index, Purpose::kShown);
          }};
}

// The place of an entry that stays is its old one.
void ConsoleAlerts::Conclude(Answer answer, const ListedAlert& alert) {
  core::OrIgnore([&] {
    const auto decision = checked_.Find(alert.date_utc);
    if (answer == Answer::kBlock) return checked_.MarkBlocked(alert.date_utc);
    if (decision && IsBlocked(*decision)) checked_.Remove(alert.date_utc);
    checked_.Add(alert.date_utc, alert.date_utc);
  });
}

bool ConsoleAlerts::DecideFromMenu(Answer answer, const ListedAlert& alert) {
  return decisions_.FromMenu(answer, alert);
}

void ConsoleAlerts::DecideFromPage(Answer answer, const ListedAlert& alert) {
  decisions_.FromPage(answer, alert);
}

}  // namespace zendrix::alerts
