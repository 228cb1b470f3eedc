// The regional settings of the truth tables against the table of the settings themselves.
#include <gtest/gtest.h>

#include "core/number_rules.h"
#include "support/golden_table.h"
#include "support/locales.h"

namespace zendrix::core {
namespace {

using platform::LocaleInfo;

// Numbers of the settings as the platform counts them.
constexpr int kListSeparator = 12, kDecimal = 14, kThousand = 15, kGrouping = 16, kDigits = 17,
              kLeadingZero = 18;
constexpr int kDateSeparator = 29, kTimeSeparator = 30, kLongDate = 32, kDateOrder = 33,
              kTwentyFourHours = 35;
constexpr int kAm = 40, kPm = 41, kDayNames = 42, kShortDayNames = 49, kMonthNames = 56,
              kShortMonthNames = 68;
constexpr int kMonthNamesEnd = 80, kNegativeSign = 81, kTimeFormat = 4099;

// Days count from Monday there.
std::size_t DayIndex(int offset) {
  return static_cast<std::size_t>((offset + 1) % 7);
}

std::string NameSetting(int type, const LocaleInfo& locale) {
  if (type >= kShortMonthNames)
    return locale.short_month_names[static_cast<std::size_t>(type - kShortMonthNames)];
  if (type >= kMonthNames) return locale.month_names[static_cast<std::size_t>(type - kMonthNames)];
  if (type >= kShortDayNames) return locale.short_day_names[DayIndex(type - kShortDayNames)];
  return locale.day_names[DayIndex(type - kDayNames)];
}

// What the program's settings and rules make of a setting.
std::string Setting(int type, const LocaleInfo& locale) {
  if (type >= kDayNames && type < kMonthNamesEnd) return NameSetting(type, locale);
  switch (type) {
    case kDecimal:
      return locale.decimal;
    case kThousand:
      return locale.thousands;
    case kGrouping:
      return locale.grouping;
    case kDateSeparator:
      return locale.date_separator;
    case kTimeSeparator:
      return locale.time_separator;
    case kLongDate:
      return locale.long_date;
    case kTimeFormat:
      return locale.time;
    case kDateOrder:
      return std::to_string(locale.date_order);
    case kAm:
      return locale.am;
    case kPm:
      return locale.pm;
    case kTwentyFourHours:
      return locale.time.find('H') != std::string::npos ? "1" : "0";
    case kNegativeSign:
      return TextOf(-1.0, locale).substr(0, 1);
    case kLeadingZero:
      return FormatNumber(0.5, 2, Tristate::kDefault, Tristate::kDefault, Tristate::kDefault, locale)[0] ==
                     '0'
                 ? "1"
                 : "0";
    case kDigits: {
      const std::string text =
          FormatNumber(0, -1, Tristate::kTrue, Tristate::kDefault, Tristate::kDefault, locale);
      return std::to_string(text.size() - text.find(locale.decimal) - 1);
    }
    default:
      return "unknown setting";
  }
}

TEST(LocaleGolden, SettingsAreThoseOfTheLanguages) {
  test::GoldenReport report;
  for (const test::GoldenRow& row : test::LoadGolden(ZENDRIX_TEST_DATA, "date_locale.tsv")) {
    // lo018, the separator of lists: no rule of the program uses it.
    if (row.Int("lctype") == kListSeparator) continue;
    report.Compare(row, row.Raw("name"), row.Text("value"),
                   Setting(row.Int("lctype"), test::LocaleOf(row.Int("lcid"))));
  }
}

}  // namespace
}  // namespace zendrix::core
