#include "core/date_calendar.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace zendrix::core {
namespace {

constexpr int kFirstYear = 100;
constexpr int kLastYear = 9999;
constexpr int kFirstDay = -657434;
constexpr int kLastDay = 2958465;

constexpr std::chrono::sys_days kDayZero = std::chrono::year{1899} / std::chrono::December / 30;

std::chrono::year_month_day CivilOf(int year, int month, int day) {
  return std::chrono::year{year} / std::chrono::month{static_cast<unsigned>(month)} /
         std::chrono::day{static_cast<unsigned>(day)};
}

int CountOfDays(const std::chrono::sys_days& day) {
  return static_cast<int>((day - kDayZero).count());
}

struct DayAndSecond {
  int day = 0;
  int second = 0;
};

// The time of day is the distance from the whole day, also in front of day zero: -1.75 is 18:00 on day -1.
DayAndSecond Parts(Date date) {
  if (!(date > kFirstDay - 1)) return {std::isnan(date) ? 0 : kFirstDay, 0};
  if (date >= kLastDay + 1) return {kLastDay, kSecondsPerDay - 1};
  const double whole = std::trunc(date);
  DayAndSecond parts{static_cast<int>(whole),
                     static_cast<int>(std::floor(std::fabs(date - whole) * kSecondsPerDay + 0.5))};
  if (parts.second == kSecondsPerDay) parts = {std::min(parts.day + 1, kLastDay), 0};
  return parts;
}

}  // namespace

int DaysInMonth(int year, int month) {
  if (month < 1 || month > 12) return 0;
  const auto last =
      std::chrono::year{year} / std::chrono::month{static_cast<unsigned>(month)} / std::chrono::last;
  return static_cast<int>(static_cast<unsigned>(last.day()));
}

std::optional<int> DayNumber(int year, int month, int day) {
  if (year < kFirstYear || year > kLastYear || day < 1 || day > DaysInMonth(year, month)) return std::nullopt;
  return CountOfDays(CivilOf(year, month, day));
}

platform::LocalTime DateOfDayNumber(int day_number) {
  const std::chrono::year_month_day civil =
      kDayZero + std::chrono::days{std::clamp(day_number, kFirstDay, kLastDay)};
  platform::LocalTime local;
  local.day = static_cast<int>(static_cast<unsigned>(civil.day()));
  local.month = static_cast<int>(static_cast<unsigned>(civil.month()));
  local.year = static_cast<int>(civil.year());
  return local;
}

Date DateOf(int day_number, int hour, int minute, int second) {
  const double away = day_number < 0 ? -1 : 1;
  double date = day_number;
  date += away * (hour / 24.0);
  date += away * (minute / 1440.0);
  date += away * (second / 86400.0);
  return date;
}

Date DateFrom(const platform::LocalTime& local) {
  const std::optional<int> day = DayNumber(local.year, local.month, local.day);
  return day ? DateOf(*day, local.hour, local.minute, local.second) : 0;
}

std::int64_t WallSeconds(const platform::LocalTime& local) {
  const std::int64_t day = DayNumber(local.year, local.month, local.day).value_or(0) - kEpochDay;
  return ((day * 24 + local.hour) * 60 + local.minute) * 60 + local.second;
}

platform::LocalTime WallTime(std::int64_t seconds) {
  const std::int64_t day = seconds / kSecondsPerDay - (seconds % kSecondsPerDay < 0 ? 1 : 0);
  const auto second = static_cast<int>(seconds - day * kSecondsPerDay);
  platform::LocalTime local =
      DateOfDayNumber(static_cast<int>(std::clamp<std::int64_t>(day + kEpochDay, kFirstDay, kLastDay)));
  local.hour = second / 3600;
  local.minute = second / 60 % 60;
  local.second = second % 60;
  return local;
}

CalendarMoment MomentOf(const platform::LocalTime& local) {
  CalendarMoment moment;
  moment.local = local;
  const int day = DayNumber(local.year, local.month, local.day).value_or(0);
  // Day 1 was a Sunday.
  moment.weekday = ((day - 1) % 7 + 7) % 7;
  moment.day_of_year = day - DayNumber(local.year, 1, 1).value_or(day) + 1;
  return moment;
}

CalendarMoment MomentOf(Date date) {
  return MomentOf(LocalTimeOf(date));
}

platform::LocalTime LocalTimeOf(Date date) {
  const DayAndSecond parts = Parts(date);
  platform::LocalTime local = DateOfDayNumber(parts.day);
  local.hour = parts.second / 3600;
  local.minute = parts.second / 60 % 60;
  local.second = parts.second % 60;
  return local;
}

}  // namespace zendrix::core
