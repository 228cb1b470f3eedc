// KorvessaFundamentalTypes: the system's numeric date, as flat functions that any language can call. The
// numeric date is a signed 32-bit count of seconds since 1970-01-01 00:00:00 UTC; the calendar values are the
// local time of the process's time zone (TZ, or the host's own setting), Gregorian throughout. Both functions
// may be called from several threads. Nothing here throws.
#pragma once

#include <cstdint>

namespace zendrix::family {

extern "C" {

// The local date and time of a moment: month 1 to 12, day 1 to 31.
void FromUTC(std::int32_t seconds, std::int32_t* day, std::int32_t* month, std::int32_t* year,
             std::int32_t* hour, std::int32_t* minute, std::int32_t* second);

// The moment of a local date and time. A local time that occurs twice (clocks set back) is its first
// occurrence; one that does not occur (clocks set forward) is read with the offset in force before the
// change, so that it lands as far behind the change as it was written behind it. Values outside their ranges
// carry over (day 32 is the first of the next month); a moment that does not fit in 32 bits becomes the
// nearest one that does.
void ToUTC(std::int32_t day, std::int32_t month, std::int32_t year, std::int32_t hour, std::int32_t minute,
           std::int32_t second, std::int32_t* result);

}  // extern "C"

}  // namespace zendrix::family
