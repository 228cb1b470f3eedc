// Moments between the UTC seconds of the files, the run-time's dates, and the texts that the user sees.
#pragma once

#include <cstdint>
#include <string>

#include "core/date_rules.h"
#include "platform/clock.h"
#include "platform/family_libraries.h"
#include "platform/locale.h"

namespace zendrix::core {

// The number of the regional setting "short-date order", the text of which is "0", "1" or "2".
inline constexpr int kLocaleDateOrder = 33;

// Value of one regional setting of the user as text; the short-date order is the only one used, any other
// gives the empty text.
std::string GetLocaleValue(int type, platform::LocaleSource& locale);

// A date, and a date with its time, unpadded, date parts in the order of `order` (2 year/month/day, 1
// day/month/year, any other month/day/year): "11/21/2026", "11/21/2026 9:5:0". Meant to be read back by
// ReadDate.
std::string OrderedDate(const platform::LocalTime& local, int order);
std::string OrderedMoment(const platform::LocalTime& local, int order);
// OrderedMoment of a UTC moment in local time.
std::string UTCToText(std::int32_t seconds, int order, platform::FamilyLibraries& family);
// A local date as decimal UTC seconds.
std::string DateToUTC(Date date, platform::FamilyLibraries& family);
// Local date and time now.
Date Now(platform::Clock& clock, platform::FamilyLibraries& family);
// The UTC moment as the console shows it: UTCToText, read as a date, formatted "ddddd ttttt".
std::string DisplayTime(std::int32_t seconds, int order, platform::FamilyLibraries& family,
                        const platform::LocaleInfo& locale);

}  // namespace zendrix::core
