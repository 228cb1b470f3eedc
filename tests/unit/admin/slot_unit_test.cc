#include "admin/slot_unit.h"

#include <gtest/gtest.h>

#include "core/date_calendar.h"

namespace zendrix::admin {
namespace {

std::string Back(const platform::LocalTime& from, std::string_view interval, int count) {
  const platform::LocalTime to = core::LocalTimeOf(MovedBack(core::DateFrom(from), interval, count));
  return std::to_string(to.year) + "-" + std::to_string(to.month) + "-" + std::to_string(to.day) + " " +
         std::to_string(to.hour) + ":" + std::to_string(to.minute) + ":" + std::to_string(to.second);
}

TEST(SlotUnitTest, EachNumberHasItsUnit) {
  const struct {
    int number;
    std::int32_t seconds;
    const char *interval, *format, *axis;
  } rows[] = {
      {1, 60, "n", "Hh:Nn AMPM", "Time (Minutes)"},
      {2, 3600, "h", "Hh AMPM", "Time (Hours)"},
      {3, 86400, "d", "mm/dd", "Time (Days)"},
      {4, 604800, "ww", "mm/dd", "Time (Weeks)"},
      {5, 2592000, "m", "mmm yy", "Time (Months)"},
      {0, 60, "n", "", "Time (?)"},
      {6, 60, "n", "", "Time (?)"},
      {255, 60, "n", "", "Time (?)"},
  };
  for (const auto& row : rows) {
    const SlotUnit& unit = SlotUnitOf(row.number);
    EXPECT_EQ(unit.SlotSeconds, row.seconds) << row.number;
    EXPECT_EQ(unit.SlotInterval, row.interval) << row.number;
    EXPECT_EQ(unit.SlotFormat, row.format) << row.number;
    EXPECT_EQ(unit.axis_text, row.axis) << row.number;
  }
}

TEST(SlotUnitTest, DatesGoBackByTheirInterval) {
  const platform::LocalTime from{21, 11, 2026, 1, 45, 30};
  EXPECT_EQ(Back(from, "n", 0), "2026-11-21 1:45:30");
  EXPECT_EQ(Back(from, "n", 46), "2026-11-21 0:59:30");
  EXPECT_EQ(Back(from, "n", 106), "2026-11-20 23:59:30");
  EXPECT_EQ(Back(from, "h", 2), "2026-11-20 23:45:30");
  EXPECT_EQ(Back(from, "d", 21), "2026-10-31 1:45:30");
  EXPECT_EQ(Back(from, "ww", 52), "2025-11-22 1:45:30");
}

TEST(SlotUnitTest, MonthsGoBackByTheCalendarToADayThatIsThere) {
  EXPECT_EQ(Back({31, 3, 2024, 12, 0, 0}, "m", 1), "2024-2-29 12:0:0");
  EXPECT_EQ(Back({31, 3, 2025, 12, 0, 0}, "m", 1), "2025-2-28 12:0:0");
  EXPECT_EQ(Back({15, 1, 2026, 0, 0, 1}, "m", 1), "2025-12-15 0:0:1");
  EXPECT_EQ(Back({15, 1, 2026, 0, 0, 1}, "m", 48), "2022-1-15 0:0:1");
}

TEST(SlotUnitTest, TimesOfDayInFrontOfDayZeroGoBackToo) {
  EXPECT_EQ(Back({30, 12, 1899, 0, 0, 0}, "n", 15), "1899-12-29 23:45:0");
  EXPECT_EQ(Back({29, 12, 1899, 23, 45, 0}, "h", 24), "1899-12-28 23:45:0");
}

}  // namespace
}  // namespace zendrix::admin
