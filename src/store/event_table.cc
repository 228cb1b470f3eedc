#include "store/event_table.h"

#include <array>
#include <charconv>

#include "core/letter_case.h"
#include "core/run_time_error.h"
#include "store/event_storage.h"
#include "store/row_order.h"
#include "store/selection.h"
#include "store/table_errors.h"

namespace zendrix::store {
namespace {

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
  return EventCursor(shared_from_this());
}

EventCursor::EventCursor(const EventTable& table) : table_(&table) {}
EventCursor::EventCursor(std::shared_ptr<const EventTable> table)
    : keep_(std::move(table)), table_(keep_.get()) {
  MoveFirst();
}
EventCursor::~EventCursor() = default;

EventCursor EventCursor::Clone() const {
  return table_->Clone();
}

Selection& EventCursor::Filtered() const {
  filter_->Refresh();
  return *filter_;
}

const RowOrder& EventCursor::Ordered() const {
  order_->Refresh();
  return *order_;
}

// The place of the present row in the cursor's order.
inline std::int64_t EventCursor::Here() const {
  return order_ ? std::int64_t{Ordered().PlaceOf(row_)} : row_;
}

// The row at this place, or the nearest one on that side of it, that passes the filter; -1 when there is
// none.
inline std::int64_t EventCursor::Nearest(std::int64_t place, Direction direction) const {
  if (order_) return NearestInOrder(place, direction, nullptr);
  if (filter_)
    return direction == Direction::kForward ? Filtered().AtOrAfter(place) : Filtered().AtOrBefore(place);
  return place >= 0 && place < table_->RowCount() ? place : -1;
}

// The same in a sorted cursor; the row must be one of `also` too, if that is given.
std::int64_t EventCursor::NearestInOrder(std::int64_t place, Direction direction,
                                         const Selection* also) const {
  const RowOrder& order = Ordered();
  const Selection* const filter = filter_ ? &Filtered() : nullptr;
  const int step = direction == Direction::kForward ? 1 : -1;
  for (; place >= 0 && place < table_->RowCount(); place += step) {
    const Bookmark row = order.RowAt(static_cast<std::uint32_t>(place));
    if ((!filter || filter->Holds(row)) && (!also || also->Holds(row))) return row;
  }
  return -1;
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
  Land(Nearest(0, Direction::kForward), Place::kEof);
}

void EventCursor::MoveLast() {
  Land(Nearest(std::int64_t{table_->RowCount()} - 1, Direction::kBackward), Place::kBof);
}

void EventCursor::MoveNext() {
  if (place_ == Place::kEof) return;
  if (place_ != Place::kRow) return MoveFirst();
  Land(Nearest(Here() + 1, Direction::kForward), Place::kEof);
}

void EventCursor::MovePrevious() {
  if (place_ == Place::kBof) return;
  if (place_ != Place::kRow) return MoveLast();
  Land(Nearest(Here() - 1, Direction::kBackward), Place::kBof);
}

void EventCursor::SetSort(int column, SortOrder order) {
  if (column < 0 || column >= table_->ColumnCount()) core::Raise(kNoSuchColumn);
  order_ = std::make_unique<RowOrder>(table_->storage(), column, order);
  MoveFirst();
}

void EventCursor::ClearSort() {
  order_.reset();
  MoveFirst();
}

void EventCursor::SetFilter(std::string_view filter) {
  auto comparisons = ParseCriteria(filter, *table_);
  filter_ = comparisons.empty() ? nullptr : std::make_unique<Selection>(*table_, std::move(comparisons));
  MoveFirst();
}

std::uint32_t EventCursor::RecordCount() const {
  return filter_ ? Filtered().Count() : table_->RowCount();
}

// The row that satisfies the criterion found last, from the present one on.
inline std::int64_t EventCursor::NearestFound(Direction direction) const {
  found_->Refresh();
  if (order_) return NearestInOrder(Here(), direction, found_.get());
  const bool forward = direction == Direction::kForward;
  std::int64_t row = row_;
  do {
    row = forward ? found_->AtOrAfter(row) : found_->AtOrBefore(row);
    if (row < 0 || !filter_ || Filtered().Holds(static_cast<Bookmark>(row))) return row;
    row += forward ? 1 : -1;
  } while (row >= 0);
  return -1;
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

  Land(NearestFound(direction), forward ? Place::kEof : Place::kBof);
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

}  // namespace zendrix::store
