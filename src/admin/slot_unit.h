// The units that the timeline counts time in, by the setting TSlots: minutes, hours, days, weeks, months. A
// month counts as 30 days, while the moments that slots are labelled with go back by calendar months.
#pragma once

#include <cstdint>
#include <string_view>

#include "core/date_rules.h"

namespace zendrix::admin {

struct SlotUnit {
  std::int32_t SlotSeconds;
  std::string_view SlotInterval;  // "n" a minute, "h" an hour, "d" a day, "ww" a week, "m" a month
  std::string_view SlotFormat;    // of a label; empty: date and time in their general form
  std::string_view axis_text;     // "Time (Minutes)"
};

// Slots of a minute, with "?" for their unit, for a number that stands for none.
const SlotUnit& SlotUnitOf(int number);

// The date `count` intervals earlier; a day that the earlier month does not have becomes its last one.
core::Date MovedBack(core::Date date, std::string_view interval, int count);

}  // namespace zendrix::admin
