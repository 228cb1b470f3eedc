#include "admin/slot_unit.h"

#include <algorithm>
#include <array>

#include "core/date_calendar.h"

namespace zendrix::admin {

namespace {

constexpr std::array kUnits = {
    SlotUnit{60, "n", "Hh:Nn AMPM", "Time (Minutes)"}, SlotUnit{3600, "h", "Hh AMPM", "Time (Hours)"},
    SlotUnit{86400, "d", "mm/dd", "Time (Days)"},      SlotUnit{604800, "ww", "mm/dd", "Time (Weeks)"},
    SlotUnit{2592000, "m", "mmm yy", "Time (Months)"},
};
constexpr SlotUnit kOther = {60, "n", "", "Time (?)"};

constexpr int kMonthsPerYear = 12;

std::int64_t SecondsOf(std::string_view interval) {
  for (const SlotUnit& unit : kUnits)
    if (unit.SlotInterval == interval) return unit.SlotSeconds;
  return 0;
}

}  // namespace

const SlotUnit& SlotUnitOf(int number) {
  const bool known = number >= 1 && number <= static_cast<int>(kUnits.size());
  return known ? kUnits[static_cast<std::size_t>(number - 1)] : kOther;
}

// In whole seconds: a date in front of day zero counts its time of day backwards.
core::Date MovedBack(core::Date date, std::string_view interval, int count) {
  platform::LocalTime local = core::LocalTimeOf(date);
  if (interval == "m") {
    const int month = local.year * kMonthsPerYear + local.month - 1 - count;
    local.year = month / kMonthsPerYear;
    local.month = month % kMonthsPerYear + 1;
    local.day = std::min(local.day, core::DaysInMonth(local.year, local.month));
    return core::DateFrom(local);
  }
  const std::int64_t day = core::DayNumber(local.year, local.month, local.day).value_or(0);
  const std::int64_t seconds = day * core::kSecondsPerDay + local.hour * 3600 + local.minute * 60 +
                               local.second - count * SecondsOf(interval);
  std::int64_t second = seconds % core::kSecondsPerDay;
  if (second < 0) second += core::kSecondsPerDay;
  const auto new_day = static_cast<int>((seconds - second) / core::kSecondsPerDay);
  const auto of_day = static_cast<int>(second);
  return core::DateOf(new_day, of_day / 3600, of_day / 60 % 60, of_day % 60);
}

}  // namespace zendrix::admin
