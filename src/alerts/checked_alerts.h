// ChkAlrColl: which alerts the user has dealt with and in which direction, for this run of the console.
//
// The key is the alert's DateUTC. The value is the same text, with "A" behind it when the alert was marked as
// abnormal (blocked), and alone when it was marked as normal (allowed). An alert without an entry is
// undecided.
#pragma once

#include <list>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "core/app_state.h"
#include "core/error_log.h"

namespace zendrix::alerts {

inline constexpr char kCheckedAlertsFile[] = "KorvessaAlr.kvl";

class CheckedAlerts {
 public:
  CheckedAlerts() = default;
  CheckedAlerts(const CheckedAlerts&) = delete;
  CheckedAlerts& operator=(const CheckedAlerts&) = delete;

  struct Entry {
    std::string key;
    std::string value;
  };

  // The value of the key, or nothing for an undecided alert.
  std::optional<std::string> Find(std::string_view key) const;
  // Raises 457 when the key is taken.
  void Add(std::string_view key, std::string_view value);
  // Raises 5 when there is no such key.
  void Remove(std::string_view key);
  void Clear();
  // In the order in which they were added.
  const std::list<Entry>& entries() const { return entries_; }

  // The user's decision on an alert, in the place of any earlier one.
  void MarkBlocked(const std::string& date_utc);
  void MarkAllowed(const std::string& date_utc);

 private:
  void Set(const std::string& key, const std::string& value);

  std::list<Entry> entries_;
  // Upper-case key to its entry: every alert of the list asks here.
  std::unordered_map<std::string, std::list<Entry>::iterator> places_;
};

// Whether a value means "blocked".
bool IsBlocked(std::string_view value);

// LoadChkAlrColl: replaces the collection by what KorvessaAlr.kvl of the program folder holds, one decision a
// line. A line whose body is not numeric is passed over; a second line for a key is a failure, which is
// logged under "EventUtils : LoadChkAlrColl" and ends the load with what has been read.
void LoadChkAlrColl(core::AppState& state, core::ErrorLog& log, CheckedAlerts& checked);

}  // namespace zendrix::alerts
