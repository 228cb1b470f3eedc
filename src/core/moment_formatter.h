// The display text of many UTC moments: what UTCToText, ReadDate and ShortDateLongTime make of each, in a
// fraction of the time, since neighbouring events share their day and their distance from UTC. The locale and
// the library must outlive the formatter. Not for use by two threads.
#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include "core/date_calendar.h"
#include "core/date_picture.h"
#include "platform/family_libraries.h"
#include "platform/locale.h"

namespace zendrix::core {

class MomentFormatter {
 public:
  // `order` is the order of the date in which UTCToText would write it.
  MomentFormatter(const platform::LocaleInfo& locale, int order, platform::FamilyLibraries& family);

  // The text is valid until the next call.
  std::string_view Format(std::int32_t seconds);
  // Moments that tell the second of their local day without doubt, and one second after the other, in a
  // circle of a day. Texts that tell different seconds are not equal, whatever their case.
  struct Told {
    std::int32_t first, last;
    int second;  // of the first
    int SecondOf(std::int32_t moment) const {
      return static_cast<int>((std::int64_t{moment} - first + second) % kSecondsPerDay);
    }
  };
  // Those around a moment; nothing where the settings leave a doubt. To ask for them is far cheaper than to
  // make texts.
  std::optional<Told> ToldAround(std::int32_t moment);

 private:
  // A quarter of a day of UTC: no zone changes its distance from UTC within one and changes back.
  struct Block {
    std::int64_t number = kNone;
    bool steady = false;  // one distance from UTC for all of it
    std::int64_t offset = 0;
  };
  struct Day {
    std::int64_t number = kNone;
    bool readable = false;
    CalendarMoment moment;
    std::string short_date;  // with the blank behind it
  };
  static constexpr std::int64_t kNone = std::numeric_limits<std::int64_t>::min();
  static constexpr std::size_t kSlots = 64;

  // Seconds of the local wall clock, counted as if it were UTC.
  std::int64_t LocalSeconds(std::int32_t seconds);
  const Block& BlockAt(std::int32_t seconds);
  std::int64_t OffsetAt(std::int32_t seconds);
  const Day& DayAt(std::int64_t number);

  const platform::LocaleInfo& locale_;
  int order_;
  platform::FamilyLibraries& family_;
  DatePicture date_picture_;
  DatePicture time_picture_;
  bool tells_second_;
  std::array<Block, kSlots> blocks_;
  std::array<Day, kSlots> days_;
  std::string text_;
};

}  // namespace zendrix::core
