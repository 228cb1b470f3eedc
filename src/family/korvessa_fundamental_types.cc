#include "family/korvessa_fundamental_types.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <ctime>
#include <limits>
#include <string>

namespace zendrix::family {
namespace {

constexpr std::int64_t kDaySeconds = 86400;

std::int64_t FloorDiv(std::int64_t value, std::int64_t by) {
  return value / by - (value % by < 0 ? 1 : 0);
}

// Days since 1970-01-01 of a Gregorian date whose month lies in 1 to 12. Years are counted from March, so
// that the leap day is the last of its year.
std::int64_t DaysOf(std::int64_t year, std::int64_t month, std::int64_t day) {
  if (month <= 2) --year;
  const std::int64_t era = FloorDiv(year, 400);
  const std::int64_t year_of_era = year - era * 400;
  const std::int64_t day_of_year = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
  return era * 146097 + year_of_era * 365 + year_of_era / 4 - year_of_era / 100 + day_of_year - 719468;
}

struct Date {
  std::int32_t day, month, year;
};

Date DateOf(std::int64_t days) {
  days += 719468;
  const std::int64_t era = FloorDiv(days, 146097);
  const std::int64_t day_of_era = days - era * 146097;
  const std::int64_t year_of_era =
      (day_of_era - day_of_era / 1460 + day_of_era / 36524 - day_of_era / 146096) / 365;
  const std::int64_t day_of_year = day_of_era - (365 * year_of_era + year_of_era / 4 - year_of_era / 100);
  const std::int64_t shifted_month = (5 * day_of_year + 2) / 153;
  const auto month = static_cast<std::int32_t>(shifted_month + (shifted_month < 10 ? 3 : -9));
  return {static_cast<std::int32_t>(day_of_year - (153 * shifted_month + 2) / 5 + 1), month,
          static_cast<std::int32_t>(year_of_era + era * 400 + (month <= 2 ? 1 : 0))};
}

std::int64_t OffsetFromLibrary(std::int64_t seconds) {
  const auto moment = static_cast<std::time_t>(seconds);
  std::tm local{};
  return localtime_r(&moment, &local) ? local.tm_gmtoff : 0;
}

// Offsets of the time zone, remembered by whole UTC days: a table of events asks for many moments of few
// days, and the C library's answer costs a lock and a search each time. A day whose offset differs between
// its ends is not remembered. No zone changes and changes back within one day.
class Offsets {
 public:
  // Local time minus UTC, in seconds, at this moment.
  std::int64_t At(std::int64_t seconds) {
    const std::int64_t day = FloorDiv(seconds, kDaySeconds);
    Entry& entry = days_[static_cast<std::size_t>(day & (kEntries - 1))];
    if (entry.day == day) return entry.offset;
    const std::int64_t first = OffsetFromLibrary(day * kDaySeconds);
    if (first != OffsetFromLibrary((day + 1) * kDaySeconds - 1)) return OffsetFromLibrary(seconds);
    entry = {day, first};
    return first;
  }

  // Starts afresh when the process's time zone is another one than before.
  void Refresh() {
    const char* zone = std::getenv("TZ");
    if (known_ && (zone ? has_zone_ && zone_ == zone : !has_zone_)) return;
    tzset();
    days_.fill({});
    known_ = true;
    has_zone_ = zone != nullptr;
    zone_ = zone ? zone : "";
  }

 private:
  struct Entry {
    std::int64_t day = std::numeric_limits<std::int64_t>::min();
    std::int64_t offset = 0;
  };
  static constexpr std::int64_t kEntries = 512;  // a power of two
  std::array<Entry, kEntries> days_;
  std::string zone_;
  bool has_zone_ = false;
  bool known_ = false;
};

// One per thread, so that the functions need no lock.
Offsets& ThisThreadsOffsets() {
  thread_local Offsets offsets;
  offsets.Refresh();
  return offsets;
}

// The moment whose local reading is `local` (seconds since 1970 as if local time were UTC).
std::int64_t MomentOf(std::int64_t local, Offsets& offsets) {
  std::int64_t first = std::numeric_limits<std::int64_t>::max();
  std::int64_t largest = std::numeric_limits<std::int64_t>::min();
  // Offsets lie within 26 hours of one another; every one in force near the moment is met on the way.
  constexpr std::int64_t kHours[] = {-26, -13, 0, 13, 26};
  for (const std::int64_t hours : kHours) {
    const std::int64_t offset = offsets.At(local + hours * 3600);
    largest = std::max(largest, offset);
    if (offsets.At(local - offset) == offset) first = std::min(first, local - offset);
  }
  if (first != std::numeric_limits<std::int64_t>::max()) return first;
  // In the gap of clocks set forward: with the offset behind the change the moment lies before it.
  return local - offsets.At(local - largest);
}

}  // namespace

void FromUTC(std::int32_t seconds, std::int32_t* day, std::int32_t* month, std::int32_t* year,
             std::int32_t* hour, std::int32_t* minute, std::int32_t* second) {
  const std::int64_t local = seconds + ThisThreadsOffsets().At(seconds);
  const std::int64_t days = FloorDiv(local, kDaySeconds);
  const auto of_day = static_cast<std::int32_t>(local - days * kDaySeconds);
  const Date date = DateOf(days);
  *day = date.day;
  *month = date.month;
  *year = date.year;
  *hour = of_day / 3600;
  *minute = of_day / 60 % 60;
  *second = of_day % 60;
}

void ToUTC(std::int32_t day, std::int32_t month, std::int32_t year, std::int32_t hour, std::int32_t minute,
           std::int32_t second, std::int32_t* result) {
  const std::int64_t months = static_cast<std::int64_t>(month) - 1;
  const std::int64_t years = FloorDiv(months, 12);
  const std::int64_t days =
      DaysOf(year + years, months - years * 12 + 1, 1) + static_cast<std::int64_t>(day) - 1;
  const std::int64_t local = days * kDaySeconds + static_cast<std::int64_t>(hour) * 3600 +
                             static_cast<std::int64_t>(minute) * 60 + second;
  constexpr std::int64_t kFirst = std::numeric_limits<std::int32_t>::min();
  constexpr std::int64_t kLast = std::numeric_limits<std::int32_t>::max();
  // Far outside the range the answer is settled, and the C library is spared years it cannot express.
  if (local < kFirst - 4 * kDaySeconds || local > kLast + 4 * kDaySeconds) {
    *result = static_cast<std::int32_t>(local < 0 ? kFirst : kLast);
    return;
  }
  *result = static_cast<std::int32_t>(std::clamp(MomentOf(local, ThisThreadsOffsets()), kFirst, kLast));
}

}  // namespace zendrix::family
