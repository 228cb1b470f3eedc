#include "core/legible_locale.h"

#include <gtest/gtest.h>

#include <random>

#include "core/date_rules.h"
#include "core/moments.h"
#include "platform/memory/fake_clock.h"
#include "platform/memory/fixed_locale.h"
#include "support/locales.h"

namespace zendrix::core {
namespace {

using platform::LocaleInfo;

constexpr int kNowYear = 2026;

LocaleInfo Locale(const std::string& short_date, const std::string& time, int order,
                  const std::string& date_separator = "/", const std::string& time_separator = ":") {
  LocaleInfo locale;
  locale.short_date = short_date;
  locale.time = time;
  locale.date_order = order;
  locale.date_separator = date_separator;
  locale.time_separator = time_separator;
  return locale;
}

// The two pictures of the settings with readable dates: "MM/dd/yyyy | HH:mm:ss".
std::string Readable(const LocaleInfo& locale, int year = kNowYear) {
  const LocaleInfo readable = WithReadableDates(locale, year);
  return readable.short_date + " | " + readable.time;
}

TEST(WithReadableDatesTest, SettingsThatReadTheirOwnDatesStayAsTheyAre) {
  for (const int year : {1970, 1999, 2026, 2037, 2100}) {
    EXPECT_EQ(WithReadableDates(LocaleInfo(), year), LocaleInfo()) << "the plain locale";
    for (const int lcid : {test::kUsEnglish, test::kGerman, test::kUkEnglish, test::kJapanese}) {
      EXPECT_EQ(WithReadableDates(test::LocaleOf(lcid), year), test::LocaleOf(lcid)) << lcid;
    }
  }
}

TEST(WithReadableDatesTest, TimeWithoutSecondsGetsThem) {
  const LocaleInfo readable = WithReadableDates(Locale("dd/MM/yyyy", "HH.mm", 1, "/", "."), kNowYear);
  EXPECT_EQ(readable.short_date, "dd/MM/yyyy");
  EXPECT_EQ(readable.time, "HH:mm:ss");
  EXPECT_EQ(readable.time_separator, ":");
}

TEST(WithReadableDatesTest, TimeWithAWordBecomesDigits) {
  EXPECT_EQ(Readable(Locale("dd.MM.yyyy", "'kl.' HH:mm:ss", 1, ".")), "dd.MM.yyyy | HH:mm:ss");
}

TEST(WithReadableDatesTest, HalvesOfTheDayThatCannotBeToldApartBecomeAWholeDay) {
  LocaleInfo locale = Locale("MM/dd/yyyy", "hh:mm:ss tt", 0);
  locale.pm = locale.am = "M";
  EXPECT_EQ(Readable(locale), "MM/dd/yyyy | HH:mm:ss");
  locale.am = locale.pm = "";
  EXPECT_EQ(Readable(locale), "MM/dd/yyyy | HH:mm:ss");
}

TEST(WithReadableDatesTest, DateWithWordsBecomesDigitsInTheLocalesOrder) {
  EXPECT_EQ(Readable(Locale("MMMM d'th' yyyy", "HH:mm:ss", 0, " ")), "MM/dd/yyyy | HH:mm:ss");
  EXPECT_EQ(Readable(Locale("d 'de' MMMM yyyy", "HH:mm:ss", 1, " ")), "dd/MM/yyyy | HH:mm:ss");
  EXPECT_EQ(Readable(Locale("yyyy.'eko' MMM'ren' dd'a'", "HH:mm:ss", 2, ".")), "yyyy.MM.dd | HH:mm:ss");
}

TEST(WithReadableDatesTest, DayOfTheWeekIsLeftOut) {
  EXPECT_EQ(Readable(Locale("ddd d.MMM yyyy", "HH:mm:ss", 1, " ")), "dd/MM/yyyy | HH:mm:ss");
  EXPECT_EQ(Readable(Locale("dddd dd MMM yyyy", "hh:mm:ss tt", 1, " ")), "dd/MM/yyyy | hh:mm:ss tt");
}

// The date's comma parted the fields of the log's line.
TEST(WithReadableDatesTest, CommaOfADateOrTimeIsLeftOut) {
  EXPECT_EQ(Readable(Locale("dd MMM, yyyy", "hh:mm:ss tt", 1, " ")), "dd/MM/yyyy | hh:mm:ss tt");
  EXPECT_EQ(Readable(Locale("dd/MM/yyyy,", "HH:mm:ss", 1)), "dd/MM/yyyy | HH:mm:ss");
}

TEST(WithReadableDatesTest, DigitsAreJoinedByTheLocalesOwnSeparatorWhereItIsAUsualOne) {
  const auto readable = [](const std::string& separator) {
    return WithReadableDates(Locale("ddd", "HH:mm:ss", 1, separator), kNowYear);
  };
  EXPECT_EQ(readable("-").short_date, "dd-MM-yyyy");
  EXPECT_EQ(readable(". ").short_date, "dd.MM.yyyy");
  EXPECT_EQ(readable(". ").date_separator, ".");
  EXPECT_EQ(readable(" de ").short_date, "dd/MM/yyyy");
  EXPECT_EQ(readable("").short_date, "dd/MM/yyyy");
  EXPECT_EQ(readable("").date_separator, "/");
}

TEST(WithReadableDatesTest, NamesOfMonthsThatAreReadStay) {
  LocaleInfo german = test::LocaleOf(test::kGerman);
  german.short_date = "d. MMMM yyyy";
  EXPECT_EQ(Readable(german), "d. MMMM yyyy | HH:mm:ss");
}

TEST(WithReadableDatesTest, NamesOfMonthsThatCannotBeToldApartBecomeDigits) {
  LocaleInfo locale = Locale("dd MMM yyyy", "HH:mm:ss", 1, " ");
  locale.short_month_names[10] = locale.short_month_names[0];
  EXPECT_EQ(Readable(locale), "dd/MM/yyyy | HH:mm:ss");
}

TEST(WithReadableDatesTest, NameOfTheLastMonthIsCheckedAsTheOthersAre) {
  LocaleInfo locale = Locale("dd MMM yyyy", "HH:mm:ss", 1, " ");
  locale.short_month_names[11] = locale.short_month_names[0];
  EXPECT_EQ(Readable(locale), "dd/MM/yyyy | HH:mm:ss");
}

TEST(WithReadableDatesTest, PartsInAnotherOrderThanTheLocalesAreBroughtIntoIt) {
  EXPECT_EQ(Readable(Locale("yyyy.dd.MM", "HH:mm:ss", 2, ".")), "yyyy.MM.dd | HH:mm:ss");
}

TEST(WithReadableDatesTest, TwoDigitsOfAYearStayWhileTheyMeanThisCentury) {
  const LocaleInfo locale = Locale("dd/MM/yy", "HH:mm:ss", 1);
  EXPECT_EQ(Readable(locale, 2026), "dd/MM/yy | HH:mm:ss");
  EXPECT_EQ(Readable(locale, 2027), "dd/MM/yy | HH:mm:ss");
}

// From 2030 on two digits are read as years of the century before; a console may run for years.
TEST(WithReadableDatesTest, TwoDigitsOfAYearBecomeFourBeforeTheyMeanAnotherCentury) {
  EXPECT_EQ(Readable(Locale("dd/MM/yy", "HH:mm:ss", 1), 2028), "dd/MM/yyyy | HH:mm:ss");
  EXPECT_EQ(Readable(Locale("d.M.y", "H.mm.ss", 1, ".", "."), 2037), "d.M.yyyy | H.mm.ss");
  EXPECT_EQ(Readable(Locale("yy-MM-dd", "HH:mm:ss", 2, "-"), 2030), "yyyy-MM-dd | HH:mm:ss");
}

TEST(WithReadableDatesTest, NumbersNamesAndLongDateStayTheUsers) {
  LocaleInfo locale = test::LocaleOf(test::kGerman);
  locale.short_date = "dddd";
  locale.time = "mm";
  LocaleInfo expected = locale;
  expected.short_date = "dd.MM.yyyy";
  expected.time = "HH:mm:ss";
  EXPECT_EQ(WithReadableDates(locale, kNowYear), expected);
}

TEST(ReadsItsOwnDatesTest, LineBreakInADateWouldEndTheLogsLine) {
  EXPECT_FALSE(ReadsItsOwnDates(Locale("dd\nMM\nyyyy", "HH:mm:ss", 1), kNowYear));
}

TEST(ReadsItsOwnDatesTest, MomentMustFitItsColumn) {
  const auto wide = [](std::size_t blanks) {
    return Locale("dd/MM/yyyy" + std::string(blanks, ' '), "HH:mm:ss", 1);
  };
  EXPECT_TRUE(ReadsItsOwnDates(wide(50 - 19), kNowYear));
  EXPECT_FALSE(ReadsItsOwnDates(wide(51 - 19), kNowYear));
}

TEST(ReadsItsOwnDatesTest, DateAloneMustReadAsThatDay) {
  EXPECT_FALSE(ReadsItsOwnDates(Locale("HH:mm:ss dd/MM/yyyy", "", 1), kNowYear));
}

TEST(ReadsItsOwnDatesTest, PicturesWithoutADateOrATimeAreNotEnough) {
  EXPECT_FALSE(ReadsItsOwnDates(Locale("", "HH:mm:ss", 1), kNowYear));
  EXPECT_FALSE(ReadsItsOwnDates(Locale("dd/MM", "HH:mm:ss", 1), kNowYear));
  EXPECT_FALSE(ReadsItsOwnDates(Locale("dd/MM/yyyy", "", 1), kNowYear));
}

// The event table's moments take the way by "11/21/2026 9:5:0", whatever the pictures are.
TEST(ReadsItsOwnDatesTest, TextOfUtcMomentsMustBeReadAsWell) {
  LocaleInfo locale = Locale("yyyy-MM-dd", "HH:mm:ss", 2, "-");
  EXPECT_TRUE(ReadsItsOwnDates(locale, kNowYear));
  locale.month_names[4] = "/";
  EXPECT_FALSE(ReadsItsOwnDates(locale, kNowYear));
  EXPECT_EQ(WithReadableDates(locale, kNowYear).month_names, LocaleInfo().month_names);
}

class AnySettingsTest : public ::testing::TestWithParam<unsigned> {};
INSTANTIATE_TEST_SUITE_P(Seeds, AnySettingsTest, ::testing::Range(22U, 26U));

TEST_P(AnySettingsTest, CanBeMadeToReadTheirOwnDates) {
  std::mt19937 random(GetParam());
  constexpr std::string_view kPictures = "dMyhHmst'/.-:, \n";
  constexpr std::string_view kNames = "aAmpM/.-: 1,'";
  const auto text = [&](std::string_view alphabet, std::size_t longest) {
    std::string made(random() % (longest + 1), ' ');
    for (char& character : made) character = alphabet[random() % alphabet.size()];
    return made;
  };
  for (int i = 0; i < 750; ++i) {
    LocaleInfo locale = Locale(text(kPictures, 12), text(kPictures, 10), static_cast<int>(random() % 4),
                               text(kPictures, 2), text(kPictures, 2));
    if (i % 2 == 0) {
      for (std::string& name : locale.month_names) name = text(kNames, 3);
      for (std::string& name : locale.short_month_names) name = text(kNames, 2);
      locale.am = text(kNames, 2);
      locale.pm = text(kNames, 2);
    }
    const LocaleInfo readable = WithReadableDates(locale, kNowYear);
    ASSERT_TRUE(ReadsItsOwnDates(readable, kNowYear)) << locale.short_date << " | " << locale.time;
    ASSERT_EQ(readable.date_order, locale.date_order);
  }
}

class LegibleLocaleTest : public ::testing::Test {
 protected:
  static constexpr std::int64_t kIn2026 = 1795225500, kIn2031 = 1926000000;

  platform::FixedLocale source_;
  platform::FakeClock clock_;
};

TEST_F(LegibleLocaleTest, HandsOutReadableSettings) {
  clock_.SetUtc(kIn2026);
  source_.info = Locale("dd MMM, yyyy", "HH:mm", 1);
  LegibleLocale legible(source_, clock_);
  EXPECT_EQ(legible.Current(), WithReadableDates(source_.info, 2026));
  EXPECT_EQ(legible.Current().short_date, "dd/MM/yyyy");
}

TEST_F(LegibleLocaleTest, FollowsAChangeOfTheSourceUnderTheSameReference) {
  clock_.SetUtc(kIn2026);
  LegibleLocale legible(source_, clock_);
  const LocaleInfo& settings = legible.Current();
  EXPECT_EQ(settings, LocaleInfo());
  source_.info.short_date = "yyyy-MM-dd";
  source_.info.date_order = 2;
  EXPECT_EQ(&legible.Current(), &settings);
  EXPECT_EQ(settings.short_date, "yyyy-MM-dd");
  source_.info.thousands = "'";
  legible.Current();
  EXPECT_EQ(settings.thousands, "'");
}

TEST_F(LegibleLocaleTest, ChecksForTheYearOfItsClock) {
  source_.info = Locale("dd/MM/yy", "HH:mm:ss", 1);
  clock_.SetUtc(kIn2026);
  EXPECT_EQ(LegibleLocale(source_, clock_).Current().short_date, "dd/MM/yy");
  clock_.SetUtc(kIn2031);
  EXPECT_EQ(LegibleLocale(source_, clock_).Current().short_date, "dd/MM/yyyy");
}

TEST_F(LegibleLocaleTest, SettingsDoNotChangeInTheMiddleOfARun) {
  source_.info = Locale("dd/MM/yy", "HH:mm:ss", 1);
  clock_.SetUtc(kIn2026);
  LegibleLocale legible(source_, clock_);
  clock_.SetUtc(kIn2031);
  EXPECT_EQ(legible.Current().short_date, "dd/MM/yy");
}

}  // namespace
}  // namespace zendrix::core
