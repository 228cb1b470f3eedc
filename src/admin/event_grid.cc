#include "admin/event_grid.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>

#include "admin/text_ranks.h"
#include "alerts/monitor_catalogue.h"

namespace zendrix::admin {

namespace {

// The texts of rows that a column is sorted by, where they are kept texts.
std::optional<EventRows::Key> KeyOfColumn(int col) {
  switch (col) {
    case kColHostname:
      return EventRows::Key::kHost;
    case kColMonitor:
      return EventRows::Key::kMonitor;
    case kColCode:
      return EventRows::Key::kCode;
    case kColWhole:
      return EventRows::Key::kWhole;
    default:
      return std::nullopt;
  }
}

// Equal for rows whose made texts of this column are equal because they are made of the same things.
std::uint64_t Making(const EventRows& rows, std::uint32_t number, int col) {
  const EventRow& row = rows.row(number);
  if (col == kColDescription)
    return static_cast<std::uint64_t>(rows.texts().WidthSettingsOf(number)) << 32 | row.whole;
  const store::TextId time = rows.source(row.source).time;
  if (time != store::kNoText) return std::uint64_t{1} << 63 | time;
  return static_cast<std::uint64_t>(rows.texts().TimeSettingsOf(number)) << 32 |
         static_cast<std::uint32_t>(row.time_key);
}

std::string MadeText(const EventRows& rows, std::uint32_t number, int col) {
  return col == kColDescription ? rows.Fitted(number) : rows.Time(number);
}

}  // namespace

EventGrid::EventGrid(std::string name, const EventRows& rows) : Grid(std::move(name)), rows_(rows) {}

void EventGrid::HideInnerColumns() {
  for (int column = 0; column < Cols(); ++column) {
    if (IsInner(column)) SetColWidth(column, 0);
  }
}

void EventGrid::Clear() {
  order_.Clear();
  fresh_ = 0;
  TellCleared();
}

void EventGrid::Insert(int place, std::uint32_t row_number) {
  const auto at = static_cast<std::size_t>(place);
  order_.Insert(at, row_number);
  if (at <= fresh_ + 1)
    ++fresh_;
  else
    sorted_col_ = -1;
  TellRowsInserted(place, 1);
}

std::string EventGrid::Text(int row, int col) const {
  const std::uint32_t number = RowNumber(row);
  switch (col) {
    case kColEventID:
      return std::to_string(rows_.row(number).event_id);
    case kColDateTime:
      return rows_.Time(number);
    case kColHostname:
      return std::string(rows_.Host(number));
    case kColMonitor:
      return std::string(kPictureRoom).append(rows_.Monitor(number));
    case kColCode:
      return std::string(rows_.Code(number));
    case kColWhole:
      return std::string(rows_.Whole(number));
    case kColTimeKey:
      return std::to_string(rows_.row(number).time_key);
    case kColDescription:
      return rows_.Fitted(number);
    default:
      return {};
  }
}

int EventGrid::Picture(int row, int col) const {
  if (col == kColMonitor) return alerts::GridPicture(kColMonitor, Monitor(row));
  if (col == kColChange) return alerts::GridPicture(kColChange, Code(row));
  return 0;
}

std::string EventGrid::Tip(int row, int col) const {
  if (col == kColMonitor) return std::string(Monitor(row));
  if (col == kColDescription) return std::string(WholeDescription(row));
  if (col != kColChange) return Text(row, col);
  const std::string_view code = Code(row);
  if (code == "A") return "Added";
  if (code == "R") return "Removed";
  return code == "N" ? "Notable" : std::string(code);
}

// Rows share most of what decides about their lengths, so that few cells have to be made.
std::size_t EventGrid::LongestText(int col) const {
  std::size_t longest = 0;
  const auto note = [&](std::size_t length) { longest = std::max(longest, length); };
  if (const auto key = KeyOfColumn(col); key && *key != EventRows::Key::kWhole) {
    std::vector<bool> seen(rows_.source_count());
    for (int row = 1; row <= DataRows(); ++row) {
      const std::uint32_t number = RowNumber(row);
      if (const auto source = rows_.row(number).source; !seen[source]) {
        seen[source] = true;
        note(rows_.TextOf(*key, number).size() + (col == kColMonitor ? kPictureRoom.size() : 0));
      }
    }
  } else if (col == kColEventID || col == kColTimeKey) {
    std::int32_t least = std::numeric_limits<std::int32_t>::max();
    std::int32_t most = std::numeric_limits<std::int32_t>::min();
    for (int row = 1; row <= DataRows(); ++row) {
      const EventRow& found = rows_.row(RowNumber(row));
      const std::int32_t value = col == kColEventID ? found.event_id : found.time_key;
      least = std::min(least, value);
      most = std::max(most, value);
    }
    if (DataRows() > 0) note(std::max(std::to_string(least).size(), std::to_string(most).size()));
  } else if (col != kColChange) {
    std::optional<std::uint64_t> before;
    for (int row = 1; row <= DataRows(); ++row) {
      const std::uint32_t number = RowNumber(row);
      if (col == kColWhole) {
        note(rows_.Whole(number).size());
      } else if (const std::uint64_t making = Making(rows_, number, col); making != before) {
        before = making;
        note(MadeText(rows_, number, col).size());
      }
    }
  }
  return longest;
}

bool EventGrid::CanMerge(int col, bool ascending) const {
  return sorted_col_ == col && sorted_ascending_ == ascending && fresh_ <= order_.size() / 4 &&
         (col == kColTimeKey || KeyOfColumn(col));
}

bool EventGrid::Before(int col, std::uint32_t one, std::uint32_t other) const {
  if (col == kColTimeKey) return rows_.row(one).time_key < rows_.row(other).time_key;
  const std::string_view left = rows_.TextOf(*KeyOfColumn(col), one);
  const std::string_view right = rows_.TextOf(*KeyOfColumn(col), other);
  return left.data() != right.data() && CompareNoCase(left, right) < 0;
}

void EventGrid::Sort(int col, bool ascending) {
  if (CanMerge(col, ascending)) {
    if (fresh_ == 0) return;
    MergeFresh(order_.Cells(), fresh_, [&](std::uint32_t one, std::uint32_t other) {
      return ascending ? Before(col, one, other) : Before(col, other, one);
    });
  } else {
    SortAll(col, ascending);
  }
  sorted_col_ = col;
  sorted_ascending_ = ascending;
  fresh_ = 0;
  TellRowsSorted();
}

void EventGrid::SortAll(int col, bool ascending) {
  std::vector<KeyedRow> keyed(order_.size());
  for (std::size_t i = 0; i < keyed.size(); ++i) keyed[i].row = order_.At(i + 1);
  if (const auto key = KeyOfColumn(col)) {
    const EventRows::Ranks ranks = rows_.RanksOf(*key);
    for (KeyedRow& row : keyed) row.key = ranks.Of(rows_.row(row.row));
  } else if (col == kColTimeKey) {
    // The sign bit turned: numbers below zero come first.
    for (KeyedRow& row : keyed)
      row.key = static_cast<std::uint32_t>(rows_.row(row.row).time_key) ^ 0x80000000;
  } else {
    KeyByMadeText(col, keyed);
  }
  if (!ascending) {
    for (KeyedRow& row : keyed) row.key = ~row.key;
  }
  SortByKey(keyed);
  const std::span<std::uint32_t> cells = order_.Cells();
  for (std::size_t i = 0; i < keyed.size(); ++i) cells[i] = keyed[i].row;
}

void EventGrid::KeyByMadeText(int col, std::vector<KeyedRow>& keyed) const {
  struct Made {
    std::uint64_t making;
    std::uint32_t row;
  };
  std::vector<Made> made;
  made.reserve(keyed.size());
  for (const KeyedRow& row : keyed) made.push_back({Making(rows_, row.row, col), row.row});
  std::ranges::sort(made, {}, &Made::making);
  const auto same = std::unique(made.begin(), made.end(), [](const Made& one, const Made& other) {
    return one.making == other.making;
  });
  made.erase(same, made.end());
  store::TextPool pool;
  std::vector<store::TextId> texts;
  texts.reserve(made.size());
  for (const Made& one : made) texts.push_back(pool.Intern(MadeText(rows_, one.row, col)));
  const std::vector<std::uint32_t> ranks = RanksNoCase(pool, texts);
  for (KeyedRow& row : keyed) {
    const auto found = std::ranges::lower_bound(made, Making(rows_, row.row, col), {}, &Made::making);
    row.key = ranks[static_cast<std::size_t>(found - made.begin())];
  }
}

}  // namespace zendrix::admin
