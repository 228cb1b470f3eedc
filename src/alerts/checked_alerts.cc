#include "alerts/checked_alerts.h"

#include "core/guards.h"
#include "core/letter_case.h"
#include "core/number_rules.h"
#include "core/run_time_error.h"
#include "core/text_rules.h"

namespace zendrix::alerts {
namespace {

constexpr char kMark = 'A';

void AddLine(std::string_view line, const platform::LocaleInfo& locale, CheckedAlerts& checked) {
  const std::string clean = core::CleanLine(line);
  const std::string_view body = core::Trim(clean);
  std::string_view key = body;
  if (IsBlocked(body)) key.remove_suffix(1);
  if (!core::IsNumeric(key, locale)) return;
  checked.Add(key, body);
}

}  // namespace

bool IsBlocked(std::string_view value) {
  return !value.empty() && value.back() == kMark;
}

std::optional<std::string> CheckedAlerts::Find(std::string_view key) const {
  const auto found = places_.find(core::UpperCase(key));
  if (found == places_.end()) return std::nullopt;
  return found->second->value;
}

void CheckedAlerts::Add(std::string_view key, std::string_view value) {
  const auto [place, added] = places_.try_emplace(core::UpperCase(key));
  if (!added) core::Raise(core::kKeyExists);
  place->second = entries_.insert(entries_.end(), {std::string(key), std::string(value)});
}

void CheckedAlerts::Remove(std::string_view key) {
  const auto found = places_.find(core::UpperCase(key));
  if (found == places_.end()) core::Raise(core::kInvalidProcedureCall);
  entries_.erase(found->second);
  places_.erase(found);
}

void CheckedAlerts::Clear() {
  entries_.clear();
  places_.clear();
}

void CheckedAlerts::MarkBlocked(const std::string& date_utc) {
  Set(date_utc, date_utc + kMark);
}

void CheckedAlerts::MarkAllowed(const std::string& date_utc) {
  Set(date_utc, date_utc);
}

void CheckedAlerts::Set(const std::string& key, const std::string& value) {
  if (Find(key)) Remove(key);
  Add(key, value);
}

void LoadChkAlrColl(core::AppState& state, core::ErrorLog& log, CheckedAlerts& checked) {
  checked.Clear();
  core::OrLog(log, "EventUtils : LoadChkAlrColl", [&] {
    auto& files = state.seams.files;
    const std::string path = platform::JoinPath(state.ProgramFolder, kCheckedAlertsFile);
    if (!files.Exists(path)) return;
    const std::string text = core::ValueOrRaise(files.ReadAll(path));
    for (const std::string_view line : core::Lines(text))
      AddLine(line, state.seams.locale.Current(), checked);
  });
}

}  // namespace zendrix::alerts
