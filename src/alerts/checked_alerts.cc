#include "alerts/checked_alerts.h"

#include <algorithm>

#include "core/guards.h"
#include "core/number_rules.h"
#include "core/run_time_error.h"
#include "core/text_rules.h"
#include "core/utils.h"

namespace zendrix::alerts {
namespace {

constexpr char kMark = 'A';

void AddLine(const std::string& line, const platform::LocaleInfo& locale, CheckedAlerts& checked) {
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
  const auto found = std::find_if(entries_.begin(), entries_.end(),
                                  [&](const Entry& entry) { return core::EqualNoCase(entry.key, key); });
  if (found == entries_.end()) return std::nullopt;
  return found->value;
}

void CheckedAlerts::Add(std::string_view key, std::string_view value) {
  if (Find(key)) core::Raise(core::kKeyExists);
  entries_.push_back({std::string(key), std::string(value)});
}

void CheckedAlerts::Remove(std::string_view key) {
  const auto removed =
      std::erase_if(entries_, [&](const Entry& entry) { return core::EqualNoCase(entry.key, key); });
  if (removed == 0) core::Raise(core::kInvalidProcedureCall);
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
    for (std::size_t start = 0; start < text.size();) {
      const std::size_t end = std::min(text.find('\n', start), text.size());
      AddLine(text.substr(start, end - start), state.seams.locale.Current(), checked);
      start = end + 1;
    }
  });
}

}  // namespace zendrix::alerts
