#include "admin/system_state.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <optional>
#include <string>

#include "core/date_calendar.h"
#include "core/letter_case.h"

namespace zendrix::admin {

namespace {

// Tells rows that show a time from those that do not. Nearly all are told apart by their time keys: of those
// that tell their seconds one after the other, only one can show the time.
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
    settings_ = rows.texts().TimeSettingsOf(known);
    const auto told = rows.texts().ToldAround(known, row.time_key);
    if (told) second_ = told->SecondOf(row.time_key);
  }

  bool operator()(std::uint32_t number) {
    const EventRow& row = rows_.row(number);
    if (raw_[row.source] != store::kNoText)
      return core::EqualNoCase(rows_.pool().Text(raw_[row.source]), text_);
    if (second_ && rows_.texts().TimeSettingsOf(number) == settings_) {
      if (row.time_key < told_first_ || row.time_key > told_last_) LookAround(number, row.time_key);
      if (row.time_key != candidate_) return false;
    }
    return core::EqualNoCase(rows_.Time(number), text_);
  }

 private:
  void LookAround(std::uint32_t number, std::int32_t time_key) {
    const auto told = rows_.texts().ToldAround(number, time_key);
    told_first_ = told ? told->first : time_key;
    told_last_ = told ? told->last : time_key;
    candidate_ = told ? told->first + (*second_ - told->second + core::kSecondsPerDay) % core::kSecondsPerDay
                      : time_key;
  }

  const EventRows& rows_;
  const std::string text_;
  std::vector<store::TextId> raw_;  // the time of each source that is no number
  std::size_t settings_ = 0;
  std::optional<int> second_;
  // Of the time keys from the first to the last this one alone can show the time; none yet.
  std::int64_t told_first_ = 1, told_last_ = 0, candidate_ = 0;
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
// there in the end: counted on the way up, listed on the way down. Neither way has a branch that only chance
// decides, and counts are fetched from memory some rows ahead: without baselines a state is half the file.
std::vector<store::TextId> SystemState::Replayed(Stretch stretch) const {
  constexpr std::ptrdiff_t kAhead = 16;
  std::uint32_t left = 0;
  for (auto at = stretch.begin; at != stretch.end; ++at) {
    if (stretch.end - at > kAhead) __builtin_prefetch(&times_[RowAt(at[kAhead]).whole]);
    const EventRow& row = RowAt(*at);
    const Change change = changes_[row.source];
    std::uint32_t& times = times_[row.whole];
    const std::uint32_t came = change == Change::kCame;
    const std::uint32_t went = static_cast<std::uint32_t>(change == Change::kWent) & (times > 0);
    times += came - went;
    left += came - went;
  }
  std::vector<store::TextId> items;
  try {
    items.resize(left);
  } catch (const std::bad_alloc&) {
    std::ranges::fill(times_, 0U);
    throw;
  }
  for (auto at = stretch.end; left > 0;) {
    if (at - stretch.begin > kAhead) __builtin_prefetch(&times_[RowAt(at[-kAhead - 1]).whole]);
    const EventRow& row = RowAt(*--at);
    std::uint32_t& times = times_[row.whole];
    const std::uint32_t listed =
        static_cast<std::uint32_t>(changes_[row.source] == Change::kCame) & (times > 0);
    // What is not listed is written over.
    items[left - 1] = row.whole;
    times -= listed;
    left -= listed;
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
