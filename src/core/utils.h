// Small shared procedures of the console: lines, dates, paths, versions.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "core/app_state.h"
#include "core/date_rules.h"

namespace zendrix::core {

// Every character with a code below 32 becomes a blank; the length does not change.
std::string CleanLine(std::string_view text);

// Value of one regional setting of the user as text; 33 (the short-date order, "0", "1" or "2") is the only
// one used, any other gives the empty text.
std::string GetLocaleValue(int type, platform::LocaleSource& locale);

// Local date and time of a UTC moment, unpadded, date parts in the order of `order` (2 year/month/day, 1
// day/month/year, any other month/day/year): "11/21/2026 9:5:0". Meant to be read back by ReadDate.
std::string UTCToText(std::int32_t seconds, int order, platform::FamilyLibraries& family);
// A local date as decimal UTC seconds.
std::string DateToUTC(Date date, platform::FamilyLibraries& family);
// Local date and time now.
Date Now(platform::Clock& clock, platform::FamilyLibraries& family);
// The UTC moment as the console shows it: UTCToText, read as a date, formatted "ddddd ttttt".
std::string DisplayTime(std::int32_t seconds, int order, platform::FamilyLibraries& family,
                        const platform::LocaleInfo& locale);

// Text behind the last "\"; the whole text if there is none. A view into `path`.
std::string_view FileNamePart(std::string_view path);
// Occurrences of `part` in `text`; 0 for an empty text.
int CountOf(std::string_view text, std::string_view part);
// "1.0.0.1" for 1, 0, 1; stops behind the minor ("1.0") when no revision is given (negative).
std::string FormatVersion(int major, int minor, int revision = -1);
// Column code of a grid header: "Date/Time" 1, "Hostname" 2, "Monitor" 3, "Change" 4, "Description" 8, else
// 999.
int ColumnCodeOfHeader(std::string_view header);

// Width in pixels of a text in the font at hand.
using MeasureText = std::function<int(std::string_view)>;
// PathCompactPath: the path fitted into `width` pixels with "..." (the platform function's results).
std::string CompactPath(std::string_view path, int width, const MeasureText& measure);
// Shortens a text for a control of `limit` twips: a path by CompactPath, any other text by "..." in its
// middle. `twips` measures in twips, `pixels` in pixels, `twips_per_pixel` (above 0) is the screen's.
std::string FitTextToWidth(std::string_view text, int limit, const MeasureText& twips,
                           const MeasureText& pixels, int twips_per_pixel);

// What the consoles show where a description is missing.
inline constexpr char kDescriptionNotAvailable[] = "Description Not Available";

// The text of a description line: the first line that contains `key` (case-sensitive), what stands behind the
// key in it. False, and `text` as it was, when the array is empty or nothing matches.
bool DescLookup(const DescArray& lines, std::string_view key, std::string& text);
// By position: what stands behind the number n-1 and a comma in element `n` (from 0); empty when the element
// does not hold them. An empty array gives kDescriptionNotAvailable; one that is only too short raises 9.
std::string DescAt(const DescArray& lines, std::size_t n);

}  // namespace zendrix::core
