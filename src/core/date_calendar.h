// The calendar behind dates: day numbers count from 1899-12-30.
#pragma once

#include <cstdint>
#include <optional>

#include "core/date_picture.h"
#include "core/date_rules.h"

namespace zendrix::core {

inline constexpr int kSecondsPerDay = 86400;
// The day number of 1970-01-01.
inline constexpr int kEpochDay = 25569;

int DaysInMonth(int year, int month);
// Day number of a calendar date; nothing when there is no such day or the year is not within 100 to 9999.
std::optional<int> DayNumber(int year, int month, int day);
// The calendar date (time of day zero) of a day number, clamped to the years 100 to 9999.
platform::LocalTime DateOfDayNumber(int day_number);
// Date value of a day and the time on it. The time is added hour, minute and second one after the other, away
// from zero, so that the result is the platform's to the last bit.
Date DateOf(int day_number, int hour, int minute, int second);

// What a clock on the wall shows, as seconds since it showed the beginning of 1970, and back. Days that no
// calendar has count as day number 0.
std::int64_t WallSeconds(const platform::LocalTime& local);
platform::LocalTime WallTime(std::int64_t seconds);

CalendarMoment MomentOf(Date date);
CalendarMoment MomentOf(const platform::LocalTime& local);

}  // namespace zendrix::core
