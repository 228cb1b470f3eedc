#include "core/utils.h"

#include "core/run_time_error.h"
#include "platform/memory/memory_platform.h"

namespace zendrix::core {
namespace {

constexpr std::int32_t kMoment = 1163754300;  // 2006-11-17 09:05:00 UTC

// A font in which every character has the same width.
MeasureText FixedPitch(int width) {
  return [width](std::string_view text) { return static_cast<int>(text.size()) * width; };
}

class UtilsTest : public ::testing::Test {
 protected:
  platform::MemoryPlatform platform_;
};

TEST(CleanLine, ControlCharactersBecomeBlanksAndTheLengthStays) {
  EXPECT_EQ(CleanLine("a\tb\r\nc"), "a b  c");
  EXPECT_EQ(CleanLine(std::string("\0x\x1f", 3)), " x ");
  EXPECT_EQ(CleanLine("\x7f\x80\xff "), "\x7f\x80\xff ");
  EXPECT_EQ(CleanLine(""), "");
}

TEST_F(UtilsTest, GetLocaleValueKnowsTheShortDateOrder) {
  platform_.locale.info.date_order = 2;
  EXPECT_EQ(GetLocaleValue(33, platform_.locale), "2");
  EXPECT_EQ(GetLocaleValue(14, platform_.locale), "");
}

TEST_F(UtilsTest, UTCToTextPadsNothing) {
  EXPECT_EQ(UTCToText(kMoment, 0, platform_.family), "11/17/2006 9:5:0");
}

TEST_F(UtilsTest, UTCToTextFollowsTheOrder) {
  EXPECT_EQ(UTCToText(kMoment, 1, platform_.family), "17/11/2006 9:5:0");
  EXPECT_EQ(UTCToText(kMoment, 2, platform_.family), "2006/11/17 9:5:0");
  EXPECT_EQ(UTCToText(kMoment, 7, platform_.family), "11/17/2006 9:5:0");
}

TEST_F(UtilsTest, UTCToTextIsLocalTime) {
  platform_.family.offset_seconds = 3600;
  EXPECT_EQ(UTCToText(kMoment, 0, platform_.family), "11/17/2006 10:5:0");
}

TEST_F(UtilsTest, DateToUTCIsTheInverseOfTheDisplayedDate) {
  platform_.family.offset_seconds = -7200;
  const Date date = DateFrom(platform_.family.FromUTC(kMoment));
  EXPECT_EQ(DateToUTC(date, platform_.family), "1163754300");
}

TEST_F(UtilsTest, NowIsTheClocksMomentInLocalTime) {
  platform_.clock.SetUtc(kMoment);
  platform_.family.offset_seconds = 3600;
  const platform::LocalTime now = LocalTimeOf(Now(platform_.clock, platform_.family));
  EXPECT_EQ(now.hour, 10);
  EXPECT_EQ(now.minute, 5);
  EXPECT_EQ(now.day, 17);
}

TEST_F(UtilsTest, DisplayTimeIsShortDateAndLongTime) {
  EXPECT_EQ(DisplayTime(kMoment, 0, platform_.family, platform_.locale.info), "11/17/2006 09:05:00 AM");
}

TEST_F(UtilsTest, DisplayTimeReadsTheTextInTheLocalesOrder) {
  platform_.locale.info.short_date = "dd.MM.yyyy";
  platform_.locale.info.time = "HH:mm:ss";
  platform_.locale.info.date_separator = ".";
  platform_.locale.info.date_order = 1;
  // 2006-12-05: day and month would change places under any other order.
  EXPECT_EQ(DisplayTime(1165309500, 1, platform_.family, platform_.locale.info), "05.12.2006 09:05:00");
}

TEST(FileNamePart, IsBehindTheLastBackslash) {
  EXPECT_EQ(FileNamePart("C:\\Program Files\\a.kvl"), "a.kvl");
  EXPECT_EQ(FileNamePart("folder\\"), "");
  EXPECT_EQ(FileNamePart("a.kvl"), "a.kvl");
  EXPECT_EQ(FileNamePart(""), "");
}

TEST(CountOf, CountsWithoutOverlap) {
  EXPECT_EQ(CountOf("a,b,c", ","), 2);
  EXPECT_EQ(CountOf("aaaa", "aa"), 2);
  EXPECT_EQ(CountOf("abc", "x"), 0);
  EXPECT_EQ(CountOf("abc", ""), 0);
}

TEST(CountOf, EmptyTextHasNone) {
  EXPECT_EQ(CountOf("", ","), 0);
}

TEST(FormatVersion, ShowsAZeroBetweenMinorAndRevision) {
  EXPECT_EQ(FormatVersion(1, 0, 1), "1.0.0.1");
  EXPECT_EQ(FormatVersion(12, 34, 567), "12.34.0.567");
  EXPECT_EQ(FormatVersion(0, 0, 0), "0.0.0.0");
}

TEST(FormatVersion, StopsBehindTheMinorWithoutARevision) {
  EXPECT_EQ(FormatVersion(1, 2), "1.2");
}

TEST(ColumnCodeOfHeader, KnowsFiveHeaders) {
  EXPECT_EQ(ColumnCodeOfHeader("Date/Time"), 1);
  EXPECT_EQ(ColumnCodeOfHeader("Hostname"), 2);
  EXPECT_EQ(ColumnCodeOfHeader("Monitor"), 3);
  EXPECT_EQ(ColumnCodeOfHeader("Change"), 4);
  EXPECT_EQ(ColumnCodeOfHeader("Description"), 8);
}

TEST(ColumnCodeOfHeader, AnythingElseIs999) {
  EXPECT_EQ(ColumnCodeOfHeader("monitor"), 999);
  EXPECT_EQ(ColumnCodeOfHeader(""), 999);
}

std::string Fit(std::string_view text, int limit) {
  return FitTextToWidth(text, limit, FixedPitch(100), FixedPitch(7), 15);
}

TEST(FitTextToWidth, NarrowTextStaysAsItIs) {
  EXPECT_EQ(Fit("abcdefghij", 1001), "abcdefghij");
}

TEST(FitTextToWidth, ATextAsWideAsTheControlIsShortened) {
  // 10 characters: 3 from the left, "...", from position 8 on 3 from the right; 9 x 100 is below 1000 - 57.
  EXPECT_EQ(Fit("abcdefghij", 1000), "abc...hij");
}

TEST(FitTextToWidth, FewerThanFiveCharactersAreNeverShortened) {
  EXPECT_EQ(Fit("abcd", 10), "abcd");
}

TEST(FitTextToWidth, DropsFromBothSidesUntilItFits) {
  EXPECT_EQ(Fit("abcdefghijklmnop", 858), "ab...nop");
  EXPECT_EQ(Fit("abcdefghijklmnop", 1000), "abc...nop");
  EXPECT_EQ(Fit("abcdefghijklmnop", 1158), "abcd...mnop");
}

TEST(FitTextToWidth, StopsWhenTheLeftHasTwoOrTheRightThreeCharacters) {
  // Left is down to two characters, the right keeps three.
  EXPECT_EQ(Fit("abcdefghijklmnop", 1), "ab...nop");
  // Five characters: nothing on the left, the last one on the right.
  EXPECT_EQ(Fit("abcde", 1), "...e");
  EXPECT_EQ(Fit("abcdefg", 1), "a...fg");
}

TEST(FitTextToWidth, PathsAreCompactedInPixels) {
  const std::string path = "C:\\Program Files\\Korvessa\\KorvessaMonitoring.kvl";
  const int limit = 2200;
  EXPECT_EQ(Fit(path, limit), CompactPath(path, (limit - 100) / 15, FixedPitch(7)));
  EXPECT_LT(Fit(path, limit).size(), path.size());
}

TEST(DescLookup, TakesTheTextBehindTheKeyInTheFirstLineThatHoldsIt) {
  const DescArray lines = {"other", "x002,first", "002,second"};
  std::string text;
  EXPECT_TRUE(DescLookup(lines, "002,", text));
  EXPECT_EQ(text, "first");
}

TEST(DescLookup, IsCaseSensitive) {
  std::string text = "as it was";
  EXPECT_FALSE(DescLookup({"YesMsg,text"}, "yesmsg,", text));
  EXPECT_EQ(text, "as it was");
}

TEST(DescLookup, TrailingEmptyLineDoesNotDisturb) {
  std::string text;
  EXPECT_TRUE(DescLookup({"002,text", ""}, "002,", text));
  EXPECT_EQ(text, "text");
}

TEST(DescLookup, EmptyArrayHasNothing) {
  std::string text;
  EXPECT_FALSE(DescLookup({}, "002,", text));
}

TEST(DescAt, TakesTheTextBehindTheNumberOneLessAndAComma) {
  const DescArray lines = {"", "0,zero", "1,one", "9,wrong"};
  EXPECT_EQ(DescAt(lines, 1), "zero");
  EXPECT_EQ(DescAt(lines, 2), "one");
  EXPECT_EQ(DescAt(lines, 3), "");
}

TEST(DescAt, AnArrayThatIsTooShortRaisesAnIndexError) {
  const DescArray lines = {"", "0,zero"};
  try {
    DescAt(lines, 7);
    FAIL() << "nothing was raised";
  } catch (const RunTimeError& error) {
    EXPECT_EQ(error.number, 9);
  }
}

TEST(DescAt, AnEmptyArrayShowsTheFallBackText) {
  EXPECT_EQ(DescAt({}, 7), "Description Not Available");
}

}  // namespace
}  // namespace zendrix::core
