#include "store/event_table.h"

#include <array>
#include <charconv>

#include "core/letter_case.h"
#include "core/run_time_error.h"
#include "store/event_storage.h"
#include "store/selection.h"

namespace zendrix::store {
namespace {

constexpr int kNoCurrentRow = 3021;
constexpr int kNoSuchColumn = 3265;
constexpr int kFirstDescrNumber = 10;

constexpr std::array<std::string_view, kFirstDescr> kFixedColumns = {
    "ID",       "DateUTC", "DateTime",    "Hostname", "ThreadID", "Monitor",
    "Original", "Change",  "Description", "Reaction", "Code"};

}  // namespace

std::shared_ptr<EventTable> EventTable::CreateEventTable(int last_descr, const platform::LocaleInfo& locale) {
  return std::shared_ptr<EventTable>(new EventTable(last_descr, locale));
}

EventTable::EventTable(int last_descr, const platform::LocaleInfo& locale)
    : last_descr_(last_descr), locale_(locale), storage_(std::make_unique<EventStorage>()), cursor_(*this) {}

EventTable::~EventTable() = default;

std::string EventTable::ColumnName(int column) const {
  if (column < 0 || column >= ColumnCount()) core::Raise(kNoSuchColumn);
  if (column < kFirstDescr) return std::string(kFixedColumns[static_cast<std::size_t>(column)]);
  return "Descr" + std::to_string(column - 1);
}

int EventTable::ColumnIndex(std::string_view name) const {
  for (std::size_t i = 0; i < kFixedColumns.size(); ++i) {
    if (core::EqualNoCase(name, kFixedColumns[i])) return static_cast<int>(i);
  }
  if (name.size() < 6 || !core::EqualNoCase(name.substr(0, 5), "Descr") || name[5] == '0') return -1;
  int number = 0;
  const auto read = std::from_chars(name.data() + 5, name.data() + name.size(), number);
  if (read.ec != std::errc() || read.ptr != name.data() + name.size()) return -1;
  return number >= kFirstDescrNumber && number <= last_descr_ ? number + 1 : -1;
}

std::uint32_t EventTable::RowCount() const {
  return storage_->row_count();
}

std::int32_t EventTable::ID(Bookmark row) const {
  return storage_->row(row).id;
}

std::string_view EventTable::Text(Bookmark row, int column) const {
  if (column < 0 || column >= ColumnCount()) core::Raise(kNoSuchColumn);
  return storage_->Text(row, column);
}

EventCursor EventTable::Clone() const {
  EventCursor clone(*this);
  clone.keep_ = shared_from_this();
  clone.MoveFirst();
  return clone;
}

EventCursor::EventCursor(const EventTable& table) : table_(&table) {}
EventCursor::~EventCursor() = default;
EventCursor::EventCursor(EventCursor&&) noexcept = default;

EventCursor& EventCursor::operator=(EventCursor&& other) noexcept {
  filter_ = std::move(other.filter_);  // before the table that it reads may go
  table_ = other.table_;
  keep_ = std::move(other.keep_);
  place_ = other.place_;
  row_ = other.row_;
  return *this;
}

EventCursor EventCursor::Clone() const {
  return table_->Clone();
}

Selection& EventCursor::Filtered() const {
  filter_->Refresh();
  return *filter_;
}

// Stands on the row, or at the given end when it is -1; nowhere at all when no row passes.
void EventCursor::Land(std::int64_t row, Place otherwise) {
  if (row >= 0) {
    place_ = Place::kRow;
    row_ = static_cast<Bookmark>(row);
    return;
  }
  const bool any = filter_ ? Filtered().AtOrAfter(0) >= 0 : table_->RowCount() > 0;
  place_ = any ? otherwise : Place::kNowhere;
}

void EventCursor::MoveFirst() {
  const std::int64_t first = table_->RowCount() == 0 ? -1 : 0;
  Land(filter_ ? Filtered().AtOrAfter(0) : first, Place::kEof);
}

void EventCursor::MoveLast() {
  const std::int64_t last = std::int64_t{table_->RowCount()} - 1;
  Land(filter_ ? Filtered().AtOrBefore(last) : last, Place::kBof);
}

void EventCursor::MoveNext() {
  if (place_ == Place::kEof) return;
  if (place_ != Place::kRow) return MoveFirst();
  const std::int64_t next = std::int64_t{row_} + 1;
  Land(filter_ ? Filtered().AtOrAfter(next) : next < table_->RowCount() ? next : -1, Place::kEof);
}

void EventCursor::MovePrevious() {
  if (place_ == Place::kBof) return;
  if (place_ != Place::kRow) return MoveLast();
  const std::int64_t previous = std::int64_t{row_} - 1;
  Land(filter_ ? Filtered().AtOrBefore(previous) : previous, Place::kBof);
}

void EventCursor::SetFilter(std::string_view filter) {
  auto comparisons = ParseCriteria(filter, *table_);
  filter_ = comparisons.empty() ? nullptr : std::make_unique<Selection>(*table_, std::move(comparisons));
  MoveFirst();
}

std::uint32_t EventCursor::RecordCount() const {
  return filter_ ? Filtered().Count() : table_->RowCount();
}

void EventCursor::Find(std::string_view criterion, std::uint32_t skip, Direction direction) {
  if (!found_ || criterion != criterion_) {
    auto comparisons = ParseCriteria(criterion, *table_);
    if (comparisons.size() != 1) core::Raise(core::kBadCriterion);
    found_ = std::make_unique<Selection>(*table_, std::move(comparisons));
    criterion_ = criterion;
  }
  const bool forward = direction == Direction::kForward;
  for (; skip > 0 && !(forward ? Eof() : Bof()); --skip) forward ? MoveNext() : MovePrevious();
  if (place_ == Place::kNowhere || place_ == (forward ? Place::kEof : Place::kBof)) return;
  if (place_ != Place::kRow) forward ? MoveFirst() : MoveLast();

  found_->Refresh();
  std::int64_t row = row_;
  do {
    row = forward ? found_->AtOrAfter(row) : found_->AtOrBefore(row);
    if (row < 0 || !filter_ || Filtered().Holds(static_cast<Bookmark>(row))) break;
    row += forward ? 1 : -1;
  } while (row >= 0);
  Land(row, forward ? Place::kEof : Place::kBof);
}

Bookmark EventCursor::bookmark() const {
  if (place_ != Place::kRow) core::Raise(kNoCurrentRow);
  return row_;
}

void EventCursor::GoTo(Bookmark bookmark) {
  const bool held = bookmark < table_->RowCount() && (!filter_ || Filtered().Holds(bookmark));
  if (!held) core::Raise(core::kBadCriterion);
  Land(bookmark, Place::kEof);
}

std::int32_t EventCursor::ID() const {
  return table_->ID(bookmark());
}

std::string_view EventCursor::Text(int column) const {
  return table_->Text(bookmark(), column);
}

std::string_view EventCursor::Text(std::string_view column_name) const {
  return table_->Text(bookmark(), table_->ColumnIndex(column_name));
}

}  // namespace zendrix::store
