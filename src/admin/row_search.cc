#include "admin/row_search.h"

#include <string>
#include <utility>

namespace zendrix::admin {

RowSearch::RowSearch(const EventGrid& grid, TextSearch text)
    : grid_(grid),
      rows_(grid.rows()),
      text_(std::move(text)),
      every_cell_(TakesPart(kColCode) || TakesPart(kColTimeKey)),
      times_(TakesPart(kColDateTime) && text_.MayConsistOf(rows_.texts().TimeCharacters())),
      sources_(rows_.source_count()),
      descriptions_(rows_.pool()) {}

bool RowSearch::TakesPart(int col) const {
  if (col == kColWhole) return true;
  return col != kColDescription && grid_.column(col).width > 0;
}

std::optional<CellPlace> RowSearch::Find(const CellPlace& from) {
  CellPlace place = from;
  for (; place.row < grid_.Rows(); place = {place.row + 1}) {
    if (grid_.has_heights() && grid_.RowHeight(place.row) == 0) continue;
    if (!every_cell_ && !MayHold(grid_.RowNumber(place.row))) continue;
    if (const auto hit = FindInRow(place)) return hit;
  }
  return std::nullopt;
}

std::optional<CellPlace> RowSearch::FindInRow(CellPlace from) const {
  for (; from.col < grid_.Cols(); ++from.col) {
    if (!TakesPart(from.col)) continue;
    const std::size_t found = text_.Find(grid_.Text(from.row, from.col), from.position - 1);
    if (found != TextSearch::kNowhere) return CellPlace{from.row, from.col, found + 1};
    from.position = 1;
  }
  return std::nullopt;
}

bool RowSearch::MayHold(std::uint32_t row) {
  const EventRow& found = rows_.row(row);
  const auto holds = [this](std::string_view text) { return text_.IsIn(text); };
  if (descriptions_.Of(found.whole, holds)) return true;
  Answer& source = sources_[found.source];
  if (source == Answer::kUnknown) source = SourceHolds(row) ? Answer::kYes : Answer::kNo;
  return source == Answer::kYes || (times_ && TimeHolds(row));
}

bool RowSearch::SourceHolds(std::uint32_t row) const {
  const store::TextId time = rows_.source(rows_.row(row).source).time;
  return (time != store::kNoText && text_.IsIn(rows_.pool().Text(time))) || text_.IsIn(rows_.Host(row)) ||
         text_.IsIn(std::string(kPictureRoom).append(rows_.Monitor(row)));
}

// Neighbours often share their time. Where a row shows a text in its place, looking at its cells does no
// harm.
bool RowSearch::TimeHolds(std::uint32_t row) {
  const std::uint64_t time = static_cast<std::uint64_t>(rows_.texts().TimeSettingsOf(row)) << 32 |
                             static_cast<std::uint32_t>(rows_.row(row).time_key);
  if (last_answer_ == Answer::kUnknown || time != last_time_) {
    last_time_ = time;
    last_answer_ = text_.IsIn(rows_.texts().Time(row, rows_.row(row).time_key)) ? Answer::kYes : Answer::kNo;
  }
  return last_answer_ == Answer::kYes;
}

}  // namespace zendrix::admin
