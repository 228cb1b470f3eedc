// What the console writes of moments, read by the console, in the locales of the C library. In one of eight
// it lost them: the log came back without seconds or without dates at all, or split at a comma of its date.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "core/date_calendar.h"
#include "core/legible_locale.h"
#include "core/moments.h"
#include "platform/memory/memory_family.h"
#include "support/built_locales.h"

namespace zendrix::core {
namespace {

using platform::LocaleInfo;
using platform::LocalTime;

constexpr int kCurrentYear = 2026;
constexpr std::int32_t kFirstYear = 1009843200, kLastYear = 1861919999;  // 2002 to 2028

// The first moment that does not survive, in the words of the reader; empty when all do.
std::string Complaint(const LocaleInfo& locale) {
  std::mt19937 random(21);
  std::uniform_int_distribution<std::int32_t> any(kFirstYear, kLastYear);
  platform::MemoryFamily family;
  for (int i = 0; i < 400; ++i) {
    const std::int32_t seconds = any(random);
    const Date date = DateFrom(family.FromUTC(seconds));
    const std::string text = ShortDateLongTime(date, locale);
    if (text.find(',') != std::string::npos) return text + " holds a comma";
    if (ReadDate(text, locale, 1950) != date) return text + " does not come back";
    if (DisplayTime(seconds, locale.date_order, family, locale) != text) return text + " is not displayed";
    const std::string day = FormatDate(date, "Short Date", locale);
    if (ReadDate(day, locale, 1950) != std::floor(date)) return day + " is another day";
  }
  return "";
}

std::string ComplaintAbout(const std::string& source) {
  return Complaint(WithReadableDates(test::SettingsOf(test::BuildLocale(source)), kCurrentYear));
}

class OneLocale : public ::testing::TestWithParam<const char*> {};

TEST_P(OneLocale, MomentsThatTheConsoleWritesComeBack) {
  ASSERT_NE(test::BuildLocale(GetParam()), "") << "packages libc-bin and locales";
  EXPECT_EQ(ComplaintAbout(GetParam()), "");
}

// No seconds and a word; the day of the week; words and a comma; day before month behind the year; four-digit
// and two-digit years; names of other scripts; dots everywhere; halves of the day; no locale of its own time.
INSTANTIATE_TEST_SUITE_P(OwnDates, OneLocale,
                         ::testing::Values("nb_NO", "is_IS", "eu_ES", "ce_RU", "en_GB", "ar_SA", "fi_FI",
                                           "en_HK", "ff_SN", "ms_MY", "ja_JP", "hu_HU", "my_MM", "mt_MT",
                                           "fa_IR", "ko_KR", "zh_CN", "zh_HK", "zh_TW"),
                         [](const auto& locale) { return std::string(locale.param); });

class OfAnotherScript : public ::testing::TestWithParam<const char*> {};

// They were shown and read month first, as in the "C" locale.
TEST_P(OfAnotherScript, DatesAreYearFirst) {
  ASSERT_NE(test::BuildLocale(GetParam()), "") << "packages libc-bin and locales";
  const LocaleInfo locale = WithReadableDates(test::SettingsOf(test::BuildLocale(GetParam())), kCurrentYear);
  platform::MemoryFamily family;
  EXPECT_EQ(DisplayTime(1795225507, locale.date_order, family, locale), "2026/11/21 01:45:07");
  EXPECT_EQ(ReadDate("2026/11/21 01:45:07", locale, 1950), DateFrom(family.FromUTC(1795225507)));
  // The day and the month can be told apart by nothing but the order.
  EXPECT_EQ(ReadDate("26/04/05", locale, 1950), DateFrom(LocalTime{5, 4, 2026, 0, 0, 0}));
}

INSTANTIATE_TEST_SUITE_P(OwnDates, OfAnotherScript,
                         ::testing::Values("ja_JP", "ko_KR", "zh_CN", "zh_HK", "zh_TW"),
                         [](const auto& locale) { return std::string(locale.param); });

#ifndef ZENDRIX_SANITIZED

constexpr std::size_t kShares = 24;

class ShareOfAllLocales : public ::testing::TestWithParam<std::size_t> {};

TEST_P(ShareOfAllLocales, MomentsThatTheConsoleWritesComeBack) {
  const std::vector<std::string> sources = test::LocaleSources();
  ASSERT_GE(sources.size(), kShares) << "package locales";
  std::size_t tried = 0, built = 0;
  for (std::size_t i = GetParam(); i < sources.size(); i += kShares) {
    ++tried;
    if (test::BuildLocale(sources[i]).empty()) continue;
    ++built;
    EXPECT_EQ(ComplaintAbout(sources[i]), "") << sources[i];
  }
  EXPECT_GE(built * 10, tried * 9) << "localedef builds fewer than nine in ten";
}

INSTANTIATE_TEST_SUITE_P(OwnDates, ShareOfAllLocales, ::testing::Range<std::size_t>(0, kShares));

#endif

}  // namespace
}  // namespace zendrix::core
