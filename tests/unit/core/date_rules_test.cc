#include "core/date_rules.h"

#include <gtest/gtest.h>

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <map>
#include <random>
#include <tuple>

#include "core/date_calendar.h"
#include "support/golden_table.h"
#include "support/locales.h"

namespace zendrix::core {
namespace {

using platform::LocaleInfo;
using platform::LocalTime;
using test::GoldenReport;
using test::GoldenRow;
using test::LoadGolden;
using test::LocaleOf;

constexpr std::array kLocaleIds = {test::kUsEnglish, test::kGerman, test::kUkEnglish, test::kJapanese};
constexpr int kThisYear = 2027;  // no leap year

LocaleInfo Us() {
  return LocaleOf(test::kUsEnglish);
}

std::string Padded(int number, int width) {
  std::string text = std::to_string(number);
  return std::string(static_cast<std::size_t>(std::max(0, width - static_cast<int>(text.size()))), '0') +
         text;
}

std::string IsoOf(Date date) {
  const LocalTime local = LocalTimeOf(date);
  return Padded(local.year, 4) + "-" + Padded(local.month, 2) + "-" + Padded(local.day, 2) + " " +
         Padded(local.hour, 2) + ":" + Padded(local.minute, 2) + ":" + Padded(local.second, 2);
}

std::string FifteenDigits(double value) {
  std::array<char, 40> text{};
  return std::string(
      text.data(),
      std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::general, 15).ptr);
}

// "Nothing" or the moment that was read.
std::string Read(std::string_view text, const LocaleInfo& locale = Us()) {
  const std::optional<Date> date = ReadDate(text, locale, kThisYear);
  return date ? IsoOf(*date) : "nothing";
}

Date At(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
  return DateFrom(LocalTime{day, month, year, hour, minute, second});
}

LocaleInfo PicturesOf(const GoldenRow& row) {
  LocaleInfo locale = Us();
  locale.short_date = row.Text("short");
  locale.long_date = row.Text("long");
  locale.time = row.Text("time");
  locale.am = row.Text("am");
  locale.pm = row.Text("pm");
  locale.date_separator = row.Text("date_sep");
  locale.time_separator = row.Text("time_sep");
  return locale;
}

void CompareParsed(const std::string& table) {
  GoldenReport report;
  for (const GoldenRow& row : LoadGolden(ZENDRIX_TEST_DATA, table)) {
    const std::string text = row.Text("text");
    const std::optional<Date> date = ReadDate(text, LocaleOf(row.Int("lcid")), kThisYear);
    std::string expected = row.Raw("result");
    if (expected == "OK") {
      std::string iso = row.Raw("iso");
      if (iso.substr(0, 4) == "YYYY") iso.replace(0, 4, std::to_string(kThisYear));
      expected += " " + iso + (row.IsAny("serial") ? "" : " " + row.Raw("serial"));
    }
    std::string got = "TYPEMISMATCH";
    if (date) got = "OK " + IsoOf(*date) + (row.IsAny("serial") ? "" : " " + FifteenDigits(*date));
    report.Compare(row, text, expected, got);
  }
}

TEST(DateGolden, ReadsTexts) {
  CompareParsed("date_parse.tsv");
}

TEST(DateGolden, DoesNotReadNamesOfDays) {
  CompareParsed("date_known_parse.tsv");
}

TEST(DateGolden, WritesByFormat) {
  GoldenReport report;
  for (const GoldenRow& row : LoadGolden(ZENDRIX_TEST_DATA, "date_format.tsv")) {
    report.Compare(row, row.Raw("iso") + " " + row.Raw("format"), row.Text("text"),
                   FormatDate(row.Number("serial"), row.Text("format"), LocaleOf(row.Int("lcid"))));
  }
}

void CompareByPictures(const std::string& table) {
  GoldenReport report;
  for (const GoldenRow& row : LoadGolden(ZENDRIX_TEST_DATA, table)) {
    report.Compare(row, row.Raw("iso") + " " + row.Raw("format"), row.Text("text"),
                   FormatDate(row.Number("serial"), row.Text("format"), PicturesOf(row)));
  }
}

TEST(DateGolden, WritesByTheUsersPictures) {
  CompareByPictures("date_pattern.tsv");
}

TEST(DateGolden, ShowsMidnightInAFullTime) {
  CompareByPictures("date_known_midnight.tsv");
}

TEST(DateGolden, WritesByNamedFormat) {
  const std::map<std::string, std::string> names = {{"vbGeneralDate", "General Date"},
                                                    {"vbLongDate", "Long Date"},
                                                    {"vbShortDate", "Short Date"},
                                                    {"vbLongTime", "Long Time"},
                                                    {"vbShortTime", "Short Time"}};
  GoldenReport report;
  for (const GoldenRow& row : LoadGolden(ZENDRIX_TEST_DATA, "date_named.tsv")) {
    report.Compare(row, row.Raw("iso") + " " + row.Raw("named"), row.Text("text"),
                   FormatDate(row.Number("serial"), names.at(row.Raw("named")), Us()));
  }
}

TEST(DateGolden, WritesWithoutFormat) {
  GoldenReport report;
  for (const GoldenRow& row : LoadGolden(ZENDRIX_TEST_DATA, "date_cstr.tsv")) {
    report.Compare(row, row.Raw("iso"), row.Text("text"),
                   TextOfDate(row.Number("serial"), LocaleOf(row.Int("lcid"))));
  }
}

TEST(DateGolden, SerialsAndCalendarAgree) {
  GoldenReport report;
  for (const GoldenRow& row : LoadGolden(ZENDRIX_TEST_DATA, "date_format.tsv")) {
    report.Compare(row, row.Raw("serial"), row.Raw("iso"), IsoOf(row.Number("serial")));
    EXPECT_NEAR(DateFrom(LocalTimeOf(row.Number("serial"))), row.Number("serial"), 1e-9) << row.Id();
  }
}

TEST(ReadDate, ReadsWhatUtcToTextWrites) {
  EXPECT_EQ(Read("11/21/2026 9:5:0"), "2026-11-21 09:05:00");
  EXPECT_EQ(Read("21/11/2026 9:5:0", LocaleOf(test::kGerman)), "2026-11-21 09:05:00");
  EXPECT_EQ(Read("21/11/2026 9:5:0", LocaleOf(test::kUkEnglish)), "2026-11-21 09:05:00");
  EXPECT_EQ(Read("2026/11/21 9:5:0", LocaleOf(test::kJapanese)), "2026-11-21 09:05:00");
}

TEST(ReadDate, TakesAMonthAndAYearWhenThereIsNoSuchDay) {
  EXPECT_EQ(Read("1/32"), "1932-01-01 00:00:00");
  EXPECT_EQ(Read("2/2000"), "2000-02-01 00:00:00");
  EXPECT_EQ(Read("2000/2"), "2000-02-01 00:00:00");
  EXPECT_EQ(Read("Apr 31"), "1931-04-01 00:00:00");
}

// Was refused, and a log's line with such a date lost it.
TEST(ReadDate, TakesADayBehindAYearWhereTheMiddleNumberCannotBeAMonth) {
  for (const int lcid : kLocaleIds) {
    const LocaleInfo locale = LocaleOf(lcid);
    EXPECT_EQ(Read("2000/31/12", locale), "2000-12-31 00:00:00") << lcid;
    EXPECT_EQ(Read("2000-13-02 3:04:05", locale), "2000-02-13 03:04:05") << lcid;
    EXPECT_EQ(Read("99 31 12", locale), "1999-12-31 00:00:00") << lcid;
    EXPECT_EQ(Read("2000/12/31", locale), "2000-12-31 00:00:00") << lcid;
    EXPECT_EQ(Read("2000/1/2", locale), "2000-01-02 00:00:00") << lcid;
    EXPECT_EQ(Read("2000/31/4", locale), "nothing") << lcid;
    EXPECT_EQ(Read("2000/32/12", locale), "nothing") << lcid;
    EXPECT_EQ(Read("2000/13/13", locale), "nothing") << lcid;
    EXPECT_EQ(Read("2001/29/2", locale), "nothing") << lcid;
  }
}

// Where any of the three could be the year, the user's own order of day and month decides.
TEST(ReadDate, TakesThreeSmallNumbersInTheNearestOrderThatMakesADay) {
  EXPECT_EQ(Read("1 31 3", Us()), "2003-01-31 00:00:00");
  EXPECT_EQ(Read("1/31/3", LocaleOf(test::kJapanese)), "2003-01-31 00:00:00");
  EXPECT_EQ(Read("1.31.3", LocaleOf(test::kGerman)), "2001-03-31 00:00:00");
  EXPECT_EQ(Read("31 1 3", LocaleOf(test::kJapanese)), "1931-01-03 00:00:00");
}

TEST(ReadDate, TakesTheDayInFrontOfAMonthByNameUnlessTheUsersYearsComeFirst) {
  EXPECT_EQ(Read("2-Jan-03", Us()), "2003-01-02 00:00:00");
  EXPECT_EQ(Read("2-Jan-03", LocaleOf(test::kUkEnglish)), "2003-01-02 00:00:00");
  LocaleInfo year_first = Us();
  year_first.date_order = 2;
  EXPECT_EQ(Read("03-Jan-2", year_first), "2003-01-02 00:00:00");
  EXPECT_EQ(Read("Jan 2 03", year_first), "2003-01-02 00:00:00") << "behind the name the day comes first";
}

TEST(ReadDate, TakesTheYearOfTheCallOnlyWhenNoneIsNamed) {
  EXPECT_EQ(Read("Jan 2"), "2027-01-02 00:00:00");
  EXPECT_EQ(ReadDate("2/29", Us(), 2028), At(2028, 2, 29));
}

TEST(ReadDate, TakesTwoDigitsAsTheHundredYearsFrom1930) {
  EXPECT_EQ(Read("1/1/30"), "1930-01-01 00:00:00");
  EXPECT_EQ(Read("1/1/29"), "2029-01-01 00:00:00");
}

TEST(ReadDate, ReadsUtcSecondsAsNoDate) {
  for (std::string_view text : {"1234567890", "0", "-1", "2147483647", "99999999999999999999"}) {
    EXPECT_EQ(Read(text), "nothing") << text;
  }
}

TEST(ReadDate, DoesNotReadTheMiddleOfADateAsATime) {
  EXPECT_EQ(Read("1/2:03"), "nothing");
  EXPECT_EQ(Read("1/2/3 am"), "nothing");
  EXPECT_EQ(Read("1/2 3:04 2000"), "nothing");
}

TEST(ReadDate, RefusesSeparatorsAndCommasWithoutNeighbours) {
  for (std::string_view text :
       {",1/2/2000", "1/2/2000,", "1//2/2000", "1/,2/2000", "1/2,,2000", "/", ",", ":", "."}) {
    EXPECT_EQ(Read(text), "nothing") << text;
  }
}

TEST(ReadDate, DoesNotSeeWhatStandsBehindANul) {
  EXPECT_EQ(Read(std::string_view("1/2/2000\0x", 10)), "2000-01-02 00:00:00");
}

TEST(ReadDate, ReadsDatesWrittenWithDotsEverywhere) {
  LocaleInfo finnish = Us();
  finnish.short_date = "d.M.yyyy";
  finnish.time = "H.mm.ss";
  finnish.date_separator = finnish.time_separator = ".";
  finnish.date_order = 1;
  EXPECT_EQ(Read("13.2.2009 23.31.30", finnish), "2009-02-13 23:31:30");
  LocaleInfo hungarian = finnish;
  hungarian.time_separator = ":";
  hungarian.date_order = 2;
  EXPECT_EQ(Read("2009. 02. 13. 23:31:30", hungarian), "2009-02-13 23:31:30");
  EXPECT_EQ(Read("2009. 02. 13.", hungarian), "2009-02-13 00:00:00");
  EXPECT_EQ(Read("2. Januar 2000", LocaleOf(test::kGerman)), "2000-01-02 00:00:00");
}

TEST(ReadDate, ReadsMarkersWithDots) {
  LocaleInfo locale = Us();
  locale.am = "a.m.";
  locale.pm = "p.m.";
  EXPECT_EQ(Read("02-Jan-1970 03:04 p.m.", locale), "1970-01-02 15:04:00");
}

TEST(ReadDate, ReadsTheUsersOwnSeparatorOfTimes) {
  LocaleInfo french = LocaleOf(test::kUkEnglish);
  french.time_separator = "h";
  EXPECT_EQ(Read("12h30", french), "1899-12-30 12:30:00");
  EXPECT_EQ(Read("21/11/2026 12h30h15", french), "2026-11-21 12:30:15");
  EXPECT_EQ(Read("12:30", french), "1899-12-30 12:30:00");
  EXPECT_EQ(Read("12h30", Us()), "nothing");
  french.time_separator = " Uhr ";
  EXPECT_EQ(Read("12 Uhr 30", french), "nothing")
      << "blanks in front are passed over before it is looked for";
  french.time_separator = "Uhr";
  EXPECT_EQ(Read("12 Uhr 30", french), "1899-12-30 12:30:00");
}

TEST(ReadDate, ReadsTheUsersOwnSeparatorOfDates) {
  LocaleInfo locale = Us();
  locale.date_separator = "de";
  EXPECT_EQ(Read("11 de 21 de 2026", locale), "2026-11-21 00:00:00");
  locale.date_separator = locale.time_separator = "~";
  EXPECT_EQ(Read("11~21~2026 9:05", locale), "2026-11-21 09:05:00") << "it parts dates first";
}

TEST(ReadDate, RefusesTextsOfManyPieces) {
  std::string text = "1/2/2000";
  for (int i = 0; i < 1000; ++i) text += " 1";
  EXPECT_EQ(Read(text), "nothing");
  EXPECT_EQ(Read(std::string(100000, '1')), "nothing");
}

// A second name must not take the first one's place, nor one behind the time be joined to the day in front.
TEST(ReadDate, ReadsNoDateOfTwoNamesOfMonthsOrOfANameBehindTheTime) {
  for (std::string_view text : {"Jan Feb 2", "Jan 2 Feb 2003", "2 3:04 Jan", "2 2003 3:04 Jan"}) {
    EXPECT_EQ(Read(text), "nothing") << text;
  }
  EXPECT_EQ(Read("2 Jan 2003 3:04"), "2003-01-02 03:04:00");
}

TEST(ReadDate, ReadsNoTimeThatEndsInItsSeparatorOrHasMoreThanThreeParts) {
  LocaleInfo finnish = Us();
  finnish.date_separator = finnish.time_separator = ".";
  finnish.date_order = 1;
  for (std::string_view text :
       {"13.2.2009 23.31.", "13.2.2009 1.2.3.", "13.2.2009 1.2.3.4", "1:2:3:4", "1:2:", "1/2/2000 3:04:"}) {
    EXPECT_EQ(Read(text, finnish), "nothing") << text;
  }
  EXPECT_EQ(Read("13.2.2009. 23.31.30", finnish), "2009-02-13 23:31:30") << "a dot may end the date";
}

TEST(ReadDate, PassesOverEveryKindOfBlankAndOverNothingBesideThem) {
  for (const char blank : {' ', '\t', '\n', '\v', '\f', '\r', '\xA0'}) {
    EXPECT_EQ(Read(std::string(1, blank) + "1/2/2000" + blank + "3:04"), "2000-01-02 03:04:00")
        << static_cast<int>(blank);
  }
  for (const char other : {'\b', '\x0E', '\x1F', '\x9F'}) {
    EXPECT_EQ(Read(std::string("1/2/2000") + other + "3:04"), "nothing") << static_cast<int>(other);
  }
}

TEST(ReadDate, ReadsNoDateOfTooFewOrTooManyNumbers) {
  for (std::string_view text : {"", " ", "5", "5 3:04", "Jan", "Jan 3:04", "Jan 1 2 2003", "1 2 3 4"}) {
    EXPECT_EQ(Read(text), "nothing") << text;
  }
}

// What lies in memory behind the text is none of its letters.
TEST(ReadDate, ReadsANameAtTheEndOfAPartOfALongerText) {
  EXPECT_EQ(Read(std::string_view("2 2003 January", 10)), "2003-01-02 00:00:00");
}

TEST(ReadDate, TakesOfTwoMonthsOfOneNameTheFirst) {
  LocaleInfo locale = Us();
  locale.short_month_names[2] = locale.short_month_names[8] = "Mmm";
  EXPECT_EQ(Read("2 Mmm 2003", locale), "2003-03-02 00:00:00");
}

TEST(FormatDate, TakesMAsMinuteBehindAnHourAndAsMonthElsewhere) {
  const Date date = At(2004, 11, 12, 13, 14, 15);
  EXPECT_EQ(FormatDate(date, "hh:mm", Us()), "13:14");
  EXPECT_EQ(FormatDate(date, "mm hh:mm:ss", Us()), "11 13:14:15");
  EXPECT_EQ(FormatDate(date, "h-m d-m", Us()), "13-14 12-11");
  EXPECT_EQ(FormatDate(date, "yyyy-mm-dd hh:nn:ss", Us()), "2004-11-12 13:14:15");
  // Between the two any letter parts them, and nothing else does.
  EXPECT_EQ(FormatDate(date, "hhzmm hhamm", Us()), "13z11 13a11");
  EXPECT_EQ(FormatDate(date, "hh{mm hh`mm", Us()), "13{14 13`14");
}

TEST(FormatDate, KnowsTheFormsOfTheHalfDay) {
  const Date date = At(2004, 11, 12, 13, 14, 15);
  EXPECT_EQ(FormatDate(date, "h AM/PM", Us()), "1 PM");
  EXPECT_EQ(FormatDate(date, "h am/pm", Us()), "1 pm");
  EXPECT_EQ(FormatDate(date, "h A/P", Us()), "1 P");
  EXPECT_EQ(FormatDate(date, "h a/p", Us()), "1 p");
  EXPECT_EQ(FormatDate(date, "ha/p", Us()), "1p");
}

TEST(FormatDate, TakesTheFirstLetterOfAMixedHalfDayForAll) {
  const Date date = At(2004, 11, 12, 13, 14, 15);
  EXPECT_EQ(FormatDate(date, "h Am/pm", Us()), "1 PM");
  EXPECT_EQ(FormatDate(date, "h aM/PM", Us()), "1 pm");
  EXPECT_EQ(FormatDate(date, "h A/p", Us()), "1 P");
  EXPECT_EQ(FormatDate(date, "h a/P", Us()), "1 p");
}

TEST(FormatDate, CountsDaysWeeksAndQuarters) {
  EXPECT_EQ(FormatDate(At(2004, 12, 31), "y ww q w", Us()), "366 53 4 6");
  EXPECT_EQ(FormatDate(At(2004, 1, 1), "y ww q w", Us()), "1 1 1 5");
}

TEST(FormatDate, KeepsQuotedAndEscapedTextAsItIs) {
  const Date date = At(2004, 11, 12);
  EXPECT_EQ(FormatDate(date, "\"day\" d", Us()), "day 12");
  EXPECT_EQ(FormatDate(date, "\\d d", Us()), "d 12");
  EXPECT_EQ(FormatDate(date, "\"open d", Us()), "open d");
  EXPECT_EQ(FormatDate(date, "d\\", Us()), "12");
}

TEST(FormatDate, TakesNamesInAnyCaseAndNothingAsTheGeneralDate) {
  const Date date = At(2004, 11, 12, 13, 14, 15);
  EXPECT_EQ(FormatDate(date, "short date", Us()), "11/12/2004");
  EXPECT_EQ(FormatDate(date, "Medium Date", Us()), "12-Nov-04");
  EXPECT_EQ(FormatDate(date, "Medium Time", Us()), "01:14 PM");
  EXPECT_EQ(FormatDate(date, "", Us()), "11/12/2004 1:14:15 PM");
}

TEST(FormatDate, TakesQuotedTextOfAPictureAsItIs) {
  LocaleInfo locale = Us();
  locale.long_date = "d 'de' MMMM 'o''clock'";
  EXPECT_EQ(FormatDate(At(2004, 11, 2), "Long Date", locale), "2 de November o'clock");
  locale.long_date = "t'open";
  EXPECT_EQ(FormatDate(At(2004, 11, 2), "Long Date", locale), "Aopen");
}

TEST(Calendar, BringsDatesBeyondTheYearsIntoThem) {
  EXPECT_EQ(IsoOf(1e300), "9999-12-31 23:59:59");
  EXPECT_EQ(IsoOf(-1e300), "0100-01-01 00:00:00");
  EXPECT_EQ(IsoOf(std::numeric_limits<double>::quiet_NaN()), "1899-12-30 00:00:00");
  EXPECT_EQ(DateFrom(LocalTime{31, 2, 2000, 0, 0, 0}), 0);
}

TEST(Calendar, KeepsTheTimeOfTheFirstAndOfTheLastDay) {
  EXPECT_EQ(IsoOf(-657434.5), "0100-01-01 12:00:00");
  EXPECT_EQ(IsoOf(-657434.75), "0100-01-01 18:00:00");
  EXPECT_EQ(IsoOf(2958465.5), "9999-12-31 12:00:00");
  EXPECT_EQ(IsoOf(2958466), "9999-12-31 23:59:59");
}

TEST(Calendar, RoundsToTheNearestSecond) {
  EXPECT_EQ(IsoOf(At(2000, 1, 1) + 0.4 / 86400), "2000-01-01 00:00:00");
  EXPECT_EQ(IsoOf(At(2000, 1, 1) - 0.4 / 86400), "2000-01-01 00:00:00");
}

// Properties

std::vector<LocaleInfo> ManyLocales() {
  std::vector<LocaleInfo> locales;
  for (int lcid : kLocaleIds) locales.push_back(LocaleOf(lcid));
  for (const GoldenRow& row : LoadGolden(ZENDRIX_TEST_DATA, "date_pattern.tsv")) {
    LocaleInfo locale = PicturesOf(row);
    const char first = locale.short_date.front();
    locale.date_order = first == 'y' ? 2 : first == 'd' ? 1 : 0;
    if (locales.back().short_date != locale.short_date) locales.push_back(locale);
  }
  return locales;
}

bool ShowsSeconds(const LocaleInfo& locale) {
  return locale.time.find('s') != std::string::npos;
}

TEST(DateProperties, EverySecondSurvivesTheWayToADateAndBack) {
  std::mt19937_64 random(8);
  std::uniform_int_distribution<int> day(-657434, 2958465), second(0, 86399);
  for (int i = 0; i < 100000; ++i) {
    LocalTime local = DateOfDayNumber(day(random));
    const int seconds = second(random);
    local.hour = seconds / 3600;
    local.minute = seconds / 60 % 60;
    local.second = seconds % 60;
    const LocalTime again = LocalTimeOf(DateFrom(local));
    EXPECT_EQ(std::tie(again.year, again.month, again.day, again.hour, again.minute, again.second),
              std::tie(local.year, local.month, local.day, local.hour, local.minute, local.second));
  }
}

TEST(DateProperties, TheConsolesOwnFormReadsBackInEveryLocale) {
  std::mt19937_64 random(9);
  std::uniform_int_distribution<int> day(1, 60000), second(0, 86399);
  for (const LocaleInfo& locale : ManyLocales()) {
    for (int i = 0; i < 2000; ++i) {
      const int seconds = ShowsSeconds(locale) ? second(random) : second(random) / 60 * 60;
      const Date date = DateOf(day(random), seconds / 3600, seconds / 60 % 60, seconds % 60);
      const std::string text = ShortDateLongTime(date, locale);
      EXPECT_EQ(ReadDate(text, locale, kThisYear), date) << text << " by " << locale.short_date;
      EXPECT_EQ(FormatDate(date, "ddddd ttttt", locale), text);
    }
  }
}

TEST(DateProperties, AnyTextIsReadAsADateInRangeOrNotAtAll) {
  std::mt19937 random(10);
  constexpr std::string_view kAlphabet = "0123456789/-:., \tapmJandecM\xE4rz?";
  for (const LocaleInfo& locale : ManyLocales()) {
    for (int i = 0; i < 10000; ++i) {
      std::string text(random() % 20, ' ');
      for (char& character : text) character = kAlphabet[random() % kAlphabet.size()];
      const std::optional<Date> date = ReadDate(text, locale, kThisYear);
      if (!date) continue;
      EXPECT_GT(*date, -657435) << text;
      EXPECT_LT(*date, 2958466) << text;
    }
  }
}

TEST(DateProperties, QuotedTextInAFormatComesOutAsItIs) {
  std::mt19937 random(11);
  constexpr std::string_view kAlphabet = "cdwmqyhnstAMP/:\\' x";
  for (int i = 0; i < 20000; ++i) {
    std::string quoted(random() % 15, ' ');
    for (char& character : quoted) character = kAlphabet[random() % kAlphabet.size()];
    const Date date = static_cast<double>(random() % 100000) + 0.25;
    EXPECT_EQ(FormatDate(date, "d\"" + quoted + "\"hh", Us()),
              FormatDate(date, "d", Us()) + quoted + FormatDate(date, "hh", Us()));
  }
}

}  // namespace
}  // namespace zendrix::core
