#include "core/date_calendar.h"

#include <gtest/gtest.h>

namespace zendrix::core {
namespace {

std::string Text(const platform::LocalTime& local) {
  return std::to_string(local.year) + "-" + std::to_string(local.month) + "-" + std::to_string(local.day) +
         " " + std::to_string(local.hour) + ":" + std::to_string(local.minute) + ":" +
         std::to_string(local.second);
}

TEST(WallSecondsTest, CountFromTheBeginningOf1970) {
  EXPECT_EQ(WallSeconds({1, 1, 1970, 0, 0, 0}), 0);
  EXPECT_EQ(WallSeconds({1, 1, 1970, 0, 0, 1}), 1);
  EXPECT_EQ(WallSeconds({31, 12, 1969, 23, 59, 59}), -1);
  EXPECT_EQ(WallSeconds({21, 11, 2026, 9, 5, 7}), 1'795'251'907);
}

TEST(WallSecondsTest, AndBack) {
  EXPECT_EQ(Text(WallTime(0)), "1970-1-1 0:0:0");
  EXPECT_EQ(Text(WallTime(-1)), "1969-12-31 23:59:59");
  EXPECT_EQ(Text(WallTime(1'795'251'907)), "2026-11-21 9:5:7");
  for (const std::int64_t seconds : {-5'000'000'000L, -86'401L, -86'400L, 86'399L, 86'400L, 9'999'999'999L})
    EXPECT_EQ(WallSeconds(WallTime(seconds)), seconds);
}

TEST(WallSecondsTest, EndsOfTheCalendar) {
  EXPECT_EQ(Text(WallTime(WallSeconds({31, 12, 9999, 23, 59, 59}) + 86'400)), "9999-12-31 23:59:59");
  EXPECT_EQ(WallTime(WallSeconds({1, 1, 100, 0, 0, 0}) - 86'400).year, 100);
}

}  // namespace
}  // namespace zendrix::core
