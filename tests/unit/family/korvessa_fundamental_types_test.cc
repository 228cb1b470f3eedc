#include "family/korvessa_fundamental_types.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <ctime>
#include <limits>
#include <random>
#include <string>
#include <thread>

#include "support/environment.h"

namespace zendrix::family {
namespace {

using test::EnvironmentVariable;

constexpr std::int32_t kFirst = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kLast = std::numeric_limits<std::int32_t>::max();

struct Local {
  std::int32_t day = 0, month = 0, year = 0, hour = 0, minute = 0, second = 0;
};

Local LocalOf(std::int32_t seconds) {
  Local local;
  FromUTC(seconds, &local.day, &local.month, &local.year, &local.hour, &local.minute, &local.second);
  return local;
}

std::int32_t UtcOf(const Local& local) {
  std::int32_t seconds = 0;
  ToUTC(local.day, local.month, local.year, local.hour, local.minute, local.second, &seconds);
  return seconds;
}

// "2004-11-09 11:33:20"
std::string Text(std::int32_t seconds) {
  const Local l = LocalOf(seconds);
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", l.year, l.month, l.day, l.hour, l.minute,
                l.second);
  return text;
}

std::string TextOfLibrary(std::int32_t seconds) {
  const std::time_t moment = seconds;
  std::tm local{};
  localtime_r(&moment, &local);
  char text[64];
  std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
  return text;
}

TEST(FundamentalTypesTest, EpochAndItsSurroundings) {
  const EnvironmentVariable zone("TZ", "UTC0");
  EXPECT_EQ(Text(0), "1970-01-01 00:00:00");
  EXPECT_EQ(Text(-1), "1969-12-31 23:59:59");
  EXPECT_EQ(Text(1100000000), "2004-11-09 11:33:20");
  EXPECT_EQ(Text(kFirst), "1901-12-13 20:45:52");
  EXPECT_EQ(Text(kLast), "2038-01-19 03:14:07");
  EXPECT_EQ(Text(951782400), "2000-02-29 00:00:00");
}

TEST(FundamentalTypesTest, RepeatedHourIsReadAsItsFirstPass) {
  const EnvironmentVariable zone("TZ", "Europe/Berlin");
  // 2009-10-25: 02:30 comes at 00:30 UTC (summer time) and again at 01:30 UTC.
  constexpr std::int32_t kFirstPass = 1256430600;
  EXPECT_EQ(Text(kFirstPass), "2009-10-25 02:30:00");
  EXPECT_EQ(Text(kFirstPass + 3600), "2009-10-25 02:30:00");
  EXPECT_EQ(UtcOf({25, 10, 2009, 2, 30, 0}), kFirstPass);
  EXPECT_EQ(UtcOf({25, 10, 2009, 1, 59, 59}), kFirstPass - 1801);
  EXPECT_EQ(UtcOf({25, 10, 2009, 3, 0, 0}), kFirstPass + 3600 + 1800);
}

TEST(FundamentalTypesTest, HourThatDoesNotOccurIsReadWithTheOffsetBefore) {
  const EnvironmentVariable zone("TZ", "Europe/Berlin");
  // 2009-03-29: 01:59:59 is followed by 03:00:00, at 01:00 UTC.
  constexpr std::int32_t kChange = 1238288400;
  EXPECT_EQ(Text(kChange - 1), "2009-03-29 01:59:59");
  EXPECT_EQ(Text(kChange), "2009-03-29 03:00:00");
  EXPECT_EQ(UtcOf({29, 3, 2009, 2, 30, 0}), kChange + 1800);
}

TEST(FundamentalTypesTest, RepeatedHourWestOfGreenwich) {
  const EnvironmentVariable zone("TZ", "EST5EDT,M3.2.0,M11.1.0");
  // 2009-11-01 01:15 comes at 05:15 UTC and at 06:15 UTC.
  EXPECT_EQ(Text(1257052500), "2009-11-01 01:15:00");
  EXPECT_EQ(Text(1257052500 + 3600), "2009-11-01 01:15:00");
  EXPECT_EQ(UtcOf({1, 11, 2009, 1, 15, 0}), 1257052500);
}

TEST(FundamentalTypesTest, DayThatDoesNotExistInTheZone) {
  const EnvironmentVariable zone("TZ", "Pacific/Apia");
  // The island skipped 30 December 2011: clocks set forward by a whole day.
  EXPECT_EQ(Text(1325239199), "2011-12-29 23:59:59");
  EXPECT_EQ(Text(1325239200), "2011-12-31 00:00:00");
  EXPECT_EQ(UtcOf({29, 12, 2011, 23, 59, 59}), 1325239199);
  EXPECT_EQ(UtcOf({31, 12, 2011, 0, 0, 0}), 1325239200);
  EXPECT_EQ(UtcOf({30, 12, 2011, 0, 0, 0}), 1325239200);
}

TEST(FundamentalTypesTest, ValuesBeyondTheirRangesCarryOver) {
  const EnvironmentVariable zone("TZ", "UTC0");
  EXPECT_EQ(Text(UtcOf({32, 12, 2003, 0, 0, 0})), "2004-01-01 00:00:00");
  EXPECT_EQ(Text(UtcOf({1, 13, 2003, 25, 0, 0})), "2004-01-02 01:00:00");
  EXPECT_EQ(Text(UtcOf({0, 0, 2004, 0, 0, -1})), "2003-11-29 23:59:59");
}

TEST(FundamentalTypesTest, MomentsBeyondTheRangeBecomeItsEnds) {
  const EnvironmentVariable zone("TZ", "UTC0");
  EXPECT_EQ(UtcOf({1, 1, 9999, 0, 0, 0}), kLast);
  EXPECT_EQ(UtcOf({30, 12, 1899, 0, 0, 0}), kFirst);
  EXPECT_EQ(UtcOf({19, 1, 2038, 3, 14, 8}), kLast);
  EXPECT_EQ(UtcOf({kLast, kLast, kLast, kLast, kLast, kLast}), kLast);
  EXPECT_EQ(UtcOf({kFirst, kFirst, kFirst, kFirst, kFirst, kFirst}), kFirst);
}

TEST(FundamentalTypesTest, ChangeOfTheZoneIsSeenAtOnce) {
  {
    const EnvironmentVariable zone("TZ", "UTC0");
    EXPECT_EQ(Text(0), "1970-01-01 00:00:00");
  }
  const EnvironmentVariable zone("TZ", "TST-3");
  EXPECT_EQ(Text(0), "1970-01-01 03:00:00");
}

TEST(FundamentalTypesTest, ZoneThatIsTakenAwayIsSeenByANewThread) {
  {
    const EnvironmentVariable zone("TZ", "TST-13:47");
    EXPECT_EQ(Text(0), "1970-01-01 13:47:00");
  }
  const EnvironmentVariable none("TZ", std::nullopt);
  std::string text;
  std::thread([&text] { text = Text(0); }).join();
  tzset();
  EXPECT_EQ(text, TextOfLibrary(0));
}

class EveryZoneTest : public ::testing::TestWithParam<const char*> {};

TEST_P(EveryZoneTest, AgreesWithTheLibraryAndComesBackOverTheWholeRange) {
  const EnvironmentVariable zone("TZ", GetParam());
  tzset();
  std::mt19937 random(20091025);
  std::uniform_int_distribution<std::int32_t> any(kFirst, kLast);
  const auto check = [](std::int32_t seconds) {
    const std::string text = Text(seconds);
    ASSERT_EQ(text, TextOfLibrary(seconds)) << seconds;
    const std::int32_t back = UtcOf(LocalOf(seconds));
    // The same moment, or the first of the moments that read alike.
    ASSERT_LE(back, seconds);
    ASSERT_EQ(Text(back), text);
    if (back != seconds) {
      ASSERT_LE(static_cast<std::int64_t>(seconds) - back, 26 * 3600);
    }
  };
  for (int i = 0; i < 4000; ++i) check(any(random));
  // A year at a step that goes through every change of the clocks.
  for (std::int32_t t = 1230768000; t < 1262304000; t += 1801) check(t);
  check(kFirst);
  check(kLast);
  check(0);
  check(-1);
}

INSTANTIATE_TEST_SUITE_P(Zones, EveryZoneTest,
                         ::testing::Values("UTC0", "Europe/Berlin", "America/New_York", "America/St_Johns",
                                           "Australia/Lord_Howe", "Pacific/Apia", "Asia/Kathmandu",
                                           "Africa/Monrovia", "Africa/Casablanca",
                                           "CET-1CEST,M3.5.0,M10.5.0/3"));

}  // namespace
}  // namespace zendrix::family
