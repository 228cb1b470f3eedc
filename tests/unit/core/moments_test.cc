#include "core/moments.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/memory/memory_platform.h"

namespace zendrix::core {
namespace {

constexpr std::int32_t kMoment = 1163754300;  // 2006-11-17 09:05:00 UTC

class MomentsTest : public ::testing::Test {
 protected:
  platform::MemoryPlatform platform_;
};

TEST_F(MomentsTest, GetLocaleValueKnowsTheShortDateOrder) {
  platform_.locale.info.date_order = 2;
  EXPECT_EQ(GetLocaleValue(33, platform_.locale), "2");
  EXPECT_EQ(GetLocaleValue(14, platform_.locale), "");
}

TEST_F(MomentsTest, UTCToTextPadsNothing) {
  EXPECT_EQ(UTCToText(kMoment, 0, platform_.family), "11/17/2006 9:5:0");
}

TEST_F(MomentsTest, UTCToTextFollowsTheOrder) {
  EXPECT_EQ(UTCToText(kMoment, 1, platform_.family), "17/11/2006 9:5:0");
  EXPECT_EQ(UTCToText(kMoment, 2, platform_.family), "2006/11/17 9:5:0");
  EXPECT_EQ(UTCToText(kMoment, 7, platform_.family), "11/17/2006 9:5:0");
}

TEST_F(MomentsTest, UTCToTextIsLocalTime) {
  platform_.family.offset_seconds = 3600;
  EXPECT_EQ(UTCToText(kMoment, 0, platform_.family), "11/17/2006 10:5:0");
}

TEST_F(MomentsTest, DateToUTCIsTheInverseOfTheDisplayedDate) {
  platform_.family.offset_seconds = -7200;
  const Date date = DateFrom(platform_.family.FromUTC(kMoment));
  EXPECT_EQ(DateToUTC(date, platform_.family), "1163754300");
}

TEST_F(MomentsTest, NowIsTheClocksMomentInLocalTime) {
  platform_.clock.SetUtc(kMoment);
  platform_.family.offset_seconds = 3600;
  const platform::LocalTime now = LocalTimeOf(Now(platform_.clock, platform_.family));
  EXPECT_EQ(now.hour, 10);
  EXPECT_EQ(now.minute, 5);
  EXPECT_EQ(now.day, 17);
}

TEST_F(MomentsTest, DisplayTimeIsShortDateAndLongTime) {
  EXPECT_EQ(DisplayTime(kMoment, 0, platform_.family, platform_.locale.info), "11/17/2006 09:05:00 AM");
}

TEST_F(MomentsTest, DisplayTimeReadsTheTextInTheLocalesOrder) {
  platform_.locale.info.short_date = "dd.MM.yyyy";
  platform_.locale.info.time = "HH:mm:ss";
  platform_.locale.info.date_separator = ".";
  platform_.locale.info.date_order = 1;
  // 2006-12-05: day and month would change places under any other order.
  EXPECT_EQ(DisplayTime(1165309500, 1, platform_.family, platform_.locale.info), "05.12.2006 09:05:00");
}

}  // namespace
}  // namespace zendrix::core
