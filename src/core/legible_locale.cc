#include "core/legible_locale.h"

#include <algorithm>
#include <array>
#include <chrono>

#include "core/date_rules.h"
#include "core/moments.h"

namespace zendrix::core {
namespace {

using platform::LocaleInfo;
using platform::LocalTime;

constexpr std::size_t kColumnSize = 50;  // of the tables that hold a moment as text
constexpr int kNoProbesYear = 1950;      // would complete a text that lost its year
// The settings are checked once and then used for as long as the console runs.
constexpr int kYearsBehind = 1;
constexpr int kYearsAhead = 2;

bool IsTextOfAField(const std::string& text) {
  const auto parts_fields = [](char c) { return c == ',' || static_cast<unsigned char>(c) < ' '; };
  return text.size() <= kColumnSize && std::none_of(text.begin(), text.end(), parts_fields);
}

bool ReadsBack(const LocalTime& moment, const LocaleInfo& locale) {
  const auto reads = [&](const std::string& text, const LocalTime& as) {
    return ReadDate(text, locale, kNoProbesYear) == DateFrom(as);
  };
  const Date date = DateFrom(moment);
  const std::string shown = ShortDateLongTime(date, locale);
  const LocalTime day{moment.day, moment.month, moment.year, 0, 0, 0};
  return IsTextOfAField(shown) && reads(shown, moment) &&
         reads(FormatDate(date, "Short Date", locale), day) &&
         reads(OrderedMoment(moment, locale.date_order), moment);
}

// Quoted text needs no special case: no letter in it can be read back, so such a picture fails anyway.
std::string WithFullYears(const std::string& picture) {
  std::string full;
  for (std::size_t i = 0; i < picture.size();) {
    if (picture[i] != 'y') {
      full += picture[i++];
      continue;
    }
    full += "yyyy";
    i = std::min(picture.find_first_not_of('y', i), picture.size());
  }
  return full;
}

char SeparatorFor(const LocaleInfo& locale) {
  const std::size_t usual = locale.date_separator.find_first_of("/.-");
  return usual == std::string::npos ? '/' : locale.date_separator[usual];
}

void UseFullYears(LocaleInfo& locale) {
  locale.short_date = WithFullYears(locale.short_date);
}

void UseDigitsForDates(LocaleInfo& locale) {
  const std::string separator(1, SeparatorFor(locale));
  const std::array<const char*, 3> parts = locale.date_order == 2   ? std::array{"yyyy", "MM", "dd"}
                                           : locale.date_order == 1 ? std::array{"dd", "MM", "yyyy"}
                                                                    : std::array{"MM", "dd", "yyyy"};
  locale.short_date = parts[0] + separator + parts[1] + separator + parts[2];
  locale.date_separator = separator;
}

void UseDigitsForTimes(LocaleInfo& locale) {
  locale.time = "HH:mm:ss";
  locale.time_separator = ":";
}

// A name that looks like a digit or a separator would be read in its place.
void UseDefaultNames(LocaleInfo& locale) {
  const LocaleInfo defaults;
  locale.am = defaults.am;
  locale.pm = defaults.pm;
  locale.month_names = defaults.month_names;
  locale.short_month_names = defaults.short_month_names;
}

}  // namespace

bool ReadsItsOwnDates(const LocaleInfo& locale, int year) {
  // Every month of the years around, with ever different days and times: days that can and cannot be a month,
  // both ends of each half of the day.
  constexpr std::array kDays = {1, 2, 9, 12, 13, 21, 28};
  constexpr std::array<std::array<int, 3>, 9> kTimes = {{{0, 0, 0},
                                                         {0, 0, 1},
                                                         {1, 2, 3},
                                                         {10, 20, 30},
                                                         {11, 59, 59},
                                                         {12, 0, 0},
                                                         {12, 34, 56},
                                                         {13, 14, 15},
                                                         {23, 59, 59}}};
  std::size_t next = 0;
  for (int probed = year - kYearsBehind; probed <= year + kYearsAhead; ++probed) {
    for (int month = 1; month <= 12; ++month, ++next) {
      const auto& [hour, minute, second] = kTimes[next % kTimes.size()];
      if (!ReadsBack({kDays[next % kDays.size()], month, probed, hour, minute, second}, locale)) return false;
    }
  }
  return true;
}

LocaleInfo WithReadableDates(const LocaleInfo& locale, int year) {
  const auto as_it_is = [](LocaleInfo&) {};
  for (const auto use_dates : {+as_it_is, &UseFullYears, &UseDigitsForDates}) {
    for (const auto use_times : {+as_it_is, &UseDigitsForTimes}) {
      LocaleInfo changed = locale;
      use_dates(changed);
      use_times(changed);
      if (ReadsItsOwnDates(changed, year)) return changed;
    }
  }
  LocaleInfo plain = locale;
  UseDigitsForDates(plain);
  UseDigitsForTimes(plain);
  UseDefaultNames(plain);
  return plain;
}

LegibleLocale::LegibleLocale(platform::LocaleSource& source, platform::Clock& clock)
    : source_(source), clock_(clock) {
  Take(source.Current());
}

const LocaleInfo& LegibleLocale::Current() {
  const LocaleInfo& now = source_.Current();
  if (now != seen_) Take(now);
  return legible_;
}

void LegibleLocale::Take(const LocaleInfo& settings) {
  seen_ = settings;
  const std::chrono::sys_seconds now{std::chrono::seconds{clock_.NowUtc()}};
  const std::chrono::year_month_day today{std::chrono::floor<std::chrono::days>(now)};
  legible_ = WithReadableDates(settings, static_cast<int>(today.year()));
}

}  // namespace zendrix::core
