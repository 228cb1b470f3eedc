#include "admin/prepared_query.h"

#include <algorithm>
#include <utility>

namespace zendrix::admin {
namespace {

constexpr std::int64_t kStretchSeconds = 6 * 3600;

std::int64_t StretchOf(std::int64_t key) {
  return key / kStretchSeconds - (key % kStretchSeconds < 0 ? 1 : 0);
}

}  // namespace

PreparedQuery::PreparedQuery(FilterQuery query, const EventRows& rows)
    : query_(std::move(query)), rows_(rows), sources_(rows.source_count()), descriptions_(rows.pool()) {}

bool PreparedQuery::Passes(std::uint32_t row) {
  const EventRow& found = rows_.row(row);
  Answer& source = sources_[found.source];
  if (source == Answer::kUnknown) source = AnswerOfSource(row);
  if (source == Answer::kNo) return false;
  const auto passes = [this](std::string_view text) { return query_.PassesDescription(text); };
  if (query_.HasDescription() && !descriptions_.Of(found.whole, passes)) return false;
  return source == Answer::kYes || KeyPasses(row);
}

PreparedQuery::Answer PreparedQuery::AnswerOfSource(std::uint32_t row) const {
  if (!query_.PassesSource(rows_.Host(row), rows_.Monitor(row), rows_.Code(row))) return Answer::kNo;
  if (!query_.HasDates()) return Answer::kYes;
  const store::TextId time = rows_.source(rows_.row(row).source).time;
  if (time == store::kNoText) return Answer::kAskTheKey;
  return query_.PassesDate(rows_.pool().Text(time)) ? Answer::kYes : Answer::kNo;
}

bool PreparedQuery::KeyPasses(std::uint32_t row) {
  const std::int32_t key = rows_.row(row).time_key;
  const std::int64_t of_key = StretchOf(key);
  const auto number = static_cast<std::uint64_t>(rows_.texts().TimeSettingsOf(row)) << 32 |
                      static_cast<std::uint32_t>(of_key);
  Stretch& stretch = stretches_[static_cast<std::uint64_t>(of_key) % kSlots];
  if (stretch.number != number) stretch = {number, OffsetOf(row, of_key * kStretchSeconds)};
  return query_.PassesMoment(stretch.offset ? key + *stretch.offset : MomentOf(row, key));
}

std::optional<std::int64_t> PreparedQuery::MomentOf(std::uint32_t row, std::int32_t key) const {
  return query_.ReadMoment(rows_.texts().Time(row, key));
}

// No zone changes its distance from UTC within six hours and changes back; the moments in between tell
// whether hours, minutes, seconds and halves of the day come back from their picture.
std::optional<std::int64_t> PreparedQuery::OffsetOf(std::uint32_t row, std::int64_t first_key) const {
  std::optional<std::int64_t> offset;
  for (const int probe : {0, 1, 4271, 9999, 14402, 18059, static_cast<int>(kStretchSeconds) - 1}) {
    const std::int64_t key = first_key + probe;
    if (key < std::numeric_limits<std::int32_t>::min() || key > std::numeric_limits<std::int32_t>::max())
      return std::nullopt;
    const std::optional<std::int64_t> moment = MomentOf(row, static_cast<std::int32_t>(key));
    if (!moment || (offset && *moment - key != *offset)) return std::nullopt;
    offset = *moment - key;
  }
  return offset;
}

}  // namespace zendrix::admin
