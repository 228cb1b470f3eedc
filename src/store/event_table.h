// EventTable: all events in memory, append-only. Rows are numbered from 0 in the order of arrival and keep
// their number for the life of the table, so a row number is a bookmark. Repeated texts are stored once; all
// texts live in the table's arena and every view handed out stays valid as long as the table does. A table is
// held by shared_ptr, and so is everything that reads it: clones and the handle of the shared cursor keep it
// alive, so whoever holds one goes on reading the old events when the reader has replaced its table.
//
// Reading goes through cursors. Each has its own position, filter and order; the table has one shared cursor,
// which consumers move under the rules that they state, and gives any number of clones. Criteria are texts of
// the form
//   Column op value [AND Column op value ...]      op: = <> < <= > >=
// with the value a text in single quotes (compared as bytes) or a plain number (the column is then read as a
// number in the user's locale; a text that is no number never matches). ID is always compared as a number.
// Nothing escapes a quote: a value that holds one makes the criterion malformed, which raises run-time error
// 3001. Finds and counts by equality go through an index, built when first needed and brought up to date as
// rows arrive.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace zendrix::platform {
struct LocaleInfo;
}

namespace zendrix::store {

enum Column : int {
  kID,
  kDateUTC,
  kDateTime,
  kHostname,
  kThreadID,
  kMonitor,
  kOriginal,
  kChange,
  kDescription,
  kReaction,
  kCode,
  kFirstDescr,  // Descr10; Descr(k) is column k + 1
};

// The position of a row; stays valid across appends.
using Bookmark = std::uint32_t;

enum class Direction { kForward, kBackward };
enum class SortOrder { kAscending, kDescending };

class EventTable;
class EventStorage;
class RowOrder;
class Selection;

// Bound to the table that it was made on, and so neither movable nor assignable.
class EventCursor {
 public:
  ~EventCursor();
  EventCursor(EventCursor&&) = delete;
  EventCursor& operator=(EventCursor&&) = delete;

  void MoveFirst();
  void MoveLast();
  void MoveNext();
  void MovePrevious();
  // Before the first and behind the last row. An empty (filtered) table is at both.
  bool Bof() const { return place_ == Place::kBof || place_ == Place::kNowhere; }
  bool Eof() const { return place_ == Place::kEof || place_ == Place::kNowhere; }

  // Keeps the rows that satisfy the filter and moves to the first of them. The empty text keeps all. A
  // malformed filter raises 3001 and leaves the cursor as it was.
  void SetFilter(std::string_view filter);
  // Rows that pass the filter.
  std::uint32_t RecordCount() const;
  // Walks the rows in the order of this column from now on, and moves to the first of them. ID is compared as
  // a number, every other column as the bytes of its text; equal rows stay in their order of arrival,
  // descending too. Rows that arrive later take their places. Raises 3265 for a column that the table does
  // not have.
  void SetSort(int column, SortOrder order);
  // Back to the order of arrival, on the first row.
  void ClearSort();
  // Starts `skip` rows away from the present one in the given direction and moves to the first row that
  // satisfies the criterion; past the last row (Eof) or before the first (Bof) when there is none. The
  // criterion is one comparison; anything else raises 3001.
  void Find(std::string_view criterion, std::uint32_t skip, Direction direction);

  // The present row; raises 3021 at Bof or Eof.
  Bookmark bookmark() const;
  // Moves to the row; raises 3001 when the filter leaves it out or there is no such row.
  void GoTo(Bookmark bookmark);

  // Columns of the present row; raise 3021 at Bof or Eof, 3265 for a column that the table does not have.
  std::int32_t ID() const;
  std::string_view Text(int column) const;

  // A cursor of its own on the same table, without filter and sort, on the first row.
  EventCursor Clone() const;
  // The table this cursor reads.
  const EventTable& table() const { return *table_; }

 private:
  friend class EventTable;
  enum class Place : std::uint8_t { kBof, kRow, kEof, kNowhere };

  explicit EventCursor(const EventTable& table);
  explicit EventCursor(std::shared_ptr<const EventTable> table);
  // The filter's rows and the order, up to date with the table.
  Selection& Filtered() const;
  const RowOrder& Ordered() const;
  std::int64_t Here() const;
  std::int64_t Nearest(std::int64_t place, Direction direction) const;
  std::int64_t NearestInOrder(std::int64_t place, Direction direction, const Selection* also) const;
  std::int64_t NearestFound(Direction direction) const;
  void Land(std::int64_t row, Place otherwise);

  const std::shared_ptr<const EventTable> keep_;  // empty for the table's own cursor
  const EventTable* const table_;
  Place place_ = Place::kNowhere;
  Bookmark row_ = 0;
  std::unique_ptr<Selection> filter_;  // null: all rows
  std::unique_ptr<RowOrder> order_;    // null: the order of arrival
  // The last criterion of Find: callers repeat the same one many times.
  std::string criterion_;
  std::unique_ptr<Selection> found_;
};

class EventTable : public std::enable_shared_from_this<EventTable> {
 public:
  // An empty table: the eleven fixed columns, then Descr10 to Descr<last_descr> (9: none). The locale says
  // how texts are read as numbers and must outlive the table.
  static std::shared_ptr<EventTable> CreateEventTable(int last_descr, const platform::LocaleInfo& locale);
  ~EventTable();

  int ColumnCount() const { return last_descr_ + 2; }
  // "ID", "DateUTC", ..., "Descr10", ...
  std::string ColumnName(int column) const;
  // The column of this name, without regard to case; -1 when there is none.
  int ColumnIndex(std::string_view name) const;

  std::uint32_t RowCount() const;
  // Any row by its bookmark, past every filter. The row must exist; Text raises 3265 for a column that does
  // not.
  std::int32_t ID(Bookmark row) const;
  std::string_view Text(Bookmark row, int column) const;

  // The shared cursor. The handle keeps the table alive.
  std::shared_ptr<EventCursor> cursor() { return {shared_from_this(), &cursor_}; }
  // A cursor of its own, without filter and sort, on the first row.
  EventCursor Clone() const;

  const platform::LocaleInfo& locale() const { return locale_; }
  // The rows themselves; only the reader adds to it.
  EventStorage& storage() const { return *storage_; }

 private:
  EventTable(int last_descr, const platform::LocaleInfo& locale);

  int last_descr_;
  const platform::LocaleInfo& locale_;
  std::unique_ptr<EventStorage> storage_;
  EventCursor cursor_;
};

}  // namespace zendrix::store
