// Dates as the run-time reads and writes them: a date is a count of days since 1899-12-30, the time of day
// its fraction, in local time. The rules are those of VarDateFromStr, VarFormat and VarFormatDateTime for the
// given regional settings; tests hold them to tables made with those functions.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/family_libraries.h"
#include "platform/locale.h"

namespace zendrix::core {

using Date = double;

// What can be read as a date in these regional settings; nothing when the text cannot. `current_year`
// completes texts that name no year.
std::optional<Date> ReadDate(std::string_view text, const platform::LocaleInfo& locale, int current_year);

// Formats by a picture or a named format ("ddddd ttttt", "Short Date", "Long Date", "mm/dd", "Hh:Nn AMPM",
// ...).
std::string FormatDate(Date date, std::string_view format, const platform::LocaleInfo& locale);

// "ddddd ttttt": the user's short date and long time, the form in which the console shows every moment.
std::string ShortDateLongTime(Date date, const platform::LocaleInfo& locale);

// A date converted to text without a format: the time is left out at midnight, the date on day 0.
std::string TextOfDate(Date date, const platform::LocaleInfo& locale);

// Calendar value to date and back. `DateFrom` is exact for years 100 to 9999; what is no day of the calendar
// gives 0. `LocalTimeOf` rounds to the nearest second and clamps any value to these years.
Date DateFrom(const platform::LocalTime& local);
platform::LocalTime LocalTimeOf(Date date);

}  // namespace zendrix::core
