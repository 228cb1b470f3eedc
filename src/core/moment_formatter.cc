#include "core/moment_formatter.h"

#include <algorithm>

#include "core/date_calendar.h"
#include "core/moments.h"

namespace zendrix::core {
namespace {

constexpr std::int64_t kBlockSeconds = 6 * 3600;

std::int64_t FloorDivide(std::int64_t value, std::int64_t by) {
  return value / by - (value % by < 0 ? 1 : 0);
}

// The moment, or the nearest one that has a number of 32 bits.
std::int32_t Within(std::int64_t moment) {
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(moment, std::numeric_limits<std::int32_t>::min(),
                                                            std::numeric_limits<std::int32_t>::max()));
}

std::size_t SlotOf(std::int64_t number, std::size_t slots) {
  return static_cast<std::size_t>(static_cast<std::uint64_t>(number) % slots);
}

}  // namespace

MomentFormatter::MomentFormatter(const platform::LocaleInfo& locale, int order,
                                 platform::FamilyLibraries& family)
    : locale_(locale),
      order_(order),
      family_(family),
      date_picture_(locale.short_date),
      time_picture_(locale.time),
      tells_second_(time_picture_.TellsSecond(locale)) {}

std::string_view MomentFormatter::Format(std::int32_t seconds) {
  const std::int64_t wall = LocalSeconds(seconds);
  const std::int64_t day_number = FloorDivide(wall, kSecondsPerDay);
  const Day& day = DayAt(day_number);
  if (!day.readable) {
    text_ = UTCToText(seconds, order_, family_);
    return text_;
  }
  const int second = static_cast<int>(wall - day_number * kSecondsPerDay);
  CalendarMoment moment = day.moment;
  moment.local.hour = second / 3600;
  moment.local.minute = second / 60 % 60;
  moment.local.second = second % 60;
  text_ = day.short_date;
  time_picture_.Append(moment, locale_, text_);
  return text_;
}

std::optional<MomentFormatter::Told> MomentFormatter::ToldAround(std::int32_t moment) {
  if (!tells_second_) return std::nullopt;
  const Block& block = BlockAt(moment);
  Told told{moment, moment, 0};
  if (block.steady) {
    told.first = Within(block.number * kBlockSeconds);
    told.last = Within(block.number * kBlockSeconds + kBlockSeconds - 1);
  }
  const std::int64_t wall = LocalSeconds(told.first);
  const std::int64_t day = FloorDivide(wall, kSecondsPerDay);
  const std::int64_t last_day = FloorDivide(wall + told.last - told.first, kSecondsPerDay);
  if (!DayAt(day).readable || !DayAt(last_day).readable) return std::nullopt;
  told.second = static_cast<int>(wall - day * kSecondsPerDay);
  return told;
}

const MomentFormatter::Block& MomentFormatter::BlockAt(std::int32_t seconds) {
  const std::int64_t number = FloorDivide(seconds, kBlockSeconds);
  Block& block = blocks_[SlotOf(number, kSlots)];
  if (block.number != number) {
    block.number = number;
    block.offset = OffsetAt(Within(number * kBlockSeconds));
    block.steady = block.offset == OffsetAt(Within(number * kBlockSeconds + kBlockSeconds - 1));
  }
  return block;
}

std::int64_t MomentFormatter::LocalSeconds(std::int32_t seconds) {
  const Block& block = BlockAt(seconds);
  return seconds + (block.steady ? block.offset : OffsetAt(seconds));
}

std::int64_t MomentFormatter::OffsetAt(std::int32_t seconds) {
  return WallSeconds(family_.FromUTC(seconds)) - seconds;
}

const MomentFormatter::Day& MomentFormatter::DayAt(std::int64_t number) {
  Day& day = days_[SlotOf(number, kSlots)];
  if (day.number == number) return day;
  day.number = number;
  // The detour by text is the rule: where the order and the settings disagree, day and month change places.
  const platform::LocalTime date = DateOfDayNumber(static_cast<int>(number + kEpochDay));
  const std::optional<Date> read = ReadDate(OrderedDate(date, order_), locale_, date.year);
  day.readable = read.has_value();
  day.short_date.clear();
  if (read) {
    day.moment = MomentOf(*read);
    date_picture_.Append(day.moment, locale_, day.short_date);
    day.short_date += ' ';
  }
  return day;
}

}  // namespace zendrix::core
