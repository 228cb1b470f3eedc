#include "admin/system_state.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <optional>
#include <string>

#include "core/letter_case.h"

namespace zendrix::admin {

namespace {

// Tells rows that show a time from those that do not. Most are told apart by the second of the day, without
// making their texts.
class TimeMatch {
 public:
  TimeMatch(const EventRows& rows, std::string_view text) : rows_(rows), text_(text) {
    raw_.reserve(rows.source_count());
    for (std::uint32_t i = 0; i < rows.source_count(); ++i) raw_.push_back(rows.source(i).time);
  }
  // The text is that of this row.
  TimeMatch(const EventRows& rows, std::uint32_t known) : TimeMatch(rows, rows.Time(known)) {
    const EventRow& row = rows.row(known);
    if (raw_[row.source] != store::kNoText) return;
    second_ = rows.texts().SecondShown(known, row.time_key);
    settings_ = rows.texts().TimeSettingsOf(known);
  }

  bool operator()(std::uint32_t number) {
    const EventRow& row = rows_.row(number);
    if (raw_[row.source] != store::kNoText)
      return core::EqualNoCase(rows_.pool().Text(raw_[row.source]), text_);
    const std::size_t settings = rows_.texts().TimeSettingsOf(number);
    // Neighbours often share their second.
    if (last_key_ == row.time_key && last_settings_ == settings) return last_;
    last_key_ = row.time_key;
    last_settings_ = settings;
    last_ = !TellsAnother(number, row.time_key, settings) && core::EqualNoCase(rows_.Time(number), text_);
    return last_;
  }

 private:
  bool TellsAnother(std::uint32_t number, std::int32_t time_key, std::size_t settings) const {
    if (!second_ || settings != settings_) return false;
    const std::optional<int> second = rows_.texts().SecondShown(number, time_key);
    return second && *second != *second_;
  }

  const EventRows& rows_;
  const std::string text_;
  std::vector<store::TextId> raw_;  // the time of each source that is no number
  std::optional<int> second_;
  std::size_t settings_ = 0;
  std::optional<std::int32_t> last_key_;
  std::size_t last_settings_ = 0;
  bool last_ = false;
};

int FirstMatch(const EventGrid& view, TimeMatch shows, int last) {
  for (int row = 1; row <= last; ++row)
    if (shows(view.RowNumber(row))) return row;
  return 0;
}

}  // namespace

int FirstRowShowing(const EventGrid& view, std::string_view date_text) {
  return FirstMatch(view, {view.rows(), date_text}, view.DataRows());
}

int SystemState::FirstRowLike(const EventGrid& view, int row) {
  return FirstMatch(view, {view.rows(), view.RowNumber(row)}, row);
}

SystemState::SystemState(const EventGrid& view, Selected selected)
    : view_(view),
      rows_(view.rows()),
      count_(static_cast<std::uint32_t>(view.DataRows())),
      selected_(selected.row),
      start_text_(rows_.pool().Lookup(kStartBaseline)),
      end_text_(rows_.pool().Lookup(kEndBaseline)),
      times_(rows_.pool().size()) {
  ReadSources();
  ReadOrder();
}

void SystemState::ReadSources() {
  const store::TextId came = rows_.pool().Lookup("A"), went = rows_.pool().Lookup("R");
  changes_.resize(rows_.source_count(), Change::kOther);
  for (std::uint32_t i = 0; i < changes_.size(); ++i) {
    const store::TextId code = rows_.source(i).code;
    if (code == came) changes_[i] = Change::kCame;
    if (code == went) changes_[i] = Change::kWent;
  }
}

void SystemState::ReadOrder() {
  if (view_.NewestFirst()) return;
  const auto number = [this](std::uint32_t height) {
    return view_.RowNumber(static_cast<int>(count_ - height));
  };
  // A sort by time may have left the rows as they came.
  std::uint32_t as_they_came = 0;
  while (as_they_came < count_ && number(as_they_came) == as_they_came) ++as_they_came;
  if (as_they_came == count_) return;
  numbers_.resize(count_);
  sources_.resize(count_);
  for (std::uint32_t height = 0; height < count_; ++height) {
    numbers_[height] = number(height);
    sources_[height] = rows_.row(numbers_[height]).source;
  }
}

const EventRow& SystemState::RowAt(std::uint32_t height) const {
  return rows_.row(numbers_.empty() ? height : numbers_[height]);
}

SystemState::Heights SystemState::HeightsOf(std::string_view monitor) const {
  if (numbers_.empty()) {
    const Heights all = rows_.RowsOfMonitor(monitor);
    return {all.begin(), std::ranges::lower_bound(all, count_)};
  }
  std::vector<bool> is_of(rows_.source_count());
  for (std::uint32_t i = 0; i < is_of.size(); ++i)
    is_of[i] = core::EqualNoCase(rows_.pool().Text(rows_.source(i).monitor), monitor);
  listed_.clear();
  for (std::uint32_t height = 0; height < count_; ++height)
    if (is_of[sources_[height]]) listed_.push_back(height);
  return listed_;
}

// From the selected row down to the start of a baseline, then up to its end and, where that has been reached,
// on to the selected row. Without a baseline everything from above the last row up to the selected one; a
// baseline that never ends takes in everything up to row 1, and so does a moment that no row shows.
SystemState::Stretch SystemState::StretchOf(Heights rows) const {
  const std::uint32_t selected = count_ - static_cast<std::uint32_t>(selected_);
  const auto behind_selected = std::ranges::upper_bound(rows, selected);
  const auto says = [&](store::TextId text) {
    return [this, text](std::uint32_t height) { return RowAt(height).whole == text; };
  };
  if (start_text_ != store::kNoText) {
    const auto start =
        std::find_if(std::make_reverse_iterator(behind_selected), rows.rend(), says(start_text_));
    if (start != rows.rend()) {
      const auto begin = start.base();
      const auto end =
          end_text_ == store::kNoText ? rows.end() : std::find_if(begin, rows.end(), says(end_text_));
      if (end == rows.end()) return {begin, end, false};
      return {begin, std::max(end + 1, behind_selected), end < behind_selected};
    }
  }
  return {std::ranges::upper_bound(rows, 0U), behind_selected, true};
}

// What went takes the oldest of equal items with it. So of each text the newest are left, as many as were
// there in the end: counted on the way up, listed on the way down.
std::vector<store::TextId> SystemState::Replayed(Stretch stretch) const {
  std::size_t left = 0;
  for (auto at = stretch.begin; at != stretch.end; ++at) {
    const EventRow& row = RowAt(*at);
    const Change change = ChangeOf(row);
    if (change == Change::kCame) {
      ++times_[row.whole];
      ++left;
    } else if (change == Change::kWent && times_[row.whole] > 0) {
      --times_[row.whole];
      --left;
    }
  }
  std::vector<store::TextId> items;
  try {
    items.resize(left);
  } catch (const std::bad_alloc&) {
    std::ranges::fill(times_, 0U);
    throw;
  }
  for (auto at = stretch.end; left > 0;) {
    const EventRow& row = RowAt(*--at);
    if (ChangeOf(row) != Change::kCame || times_[row.whole] == 0) continue;
    --times_[row.whole];
    items[--left] = row.whole;
  }
  return items;
}

std::vector<store::TextId> SystemState::StateofMonitor(std::string_view monitor) const {
  std::vector<store::TextId> items = Replayed(StretchOf(HeightsOf(monitor)));
  if (items.size() == 1 && rows_.pool().Text(items[0]) == kEmptyArray) items.clear();
  return items;
}

std::vector<store::TextId> StateofMonitor(const EventGrid& view, std::string_view monitor,
                                          std::string_view date_text) {
  return SystemState(view, date_text).StateofMonitor(monitor);
}

}  // namespace zendrix::admin
