// EventTable: all events in memory, columnar and append-only. Rows are numbered from 0 in the order of arrival and
// keep their number for the life of the table, so a row number is a bookmark. Repeated texts are stored once; all
// texts live in the table's arena and every view handed out stays valid as long as the table does.
//
// Reading goes through cursors. Each has its own position and filter; the table has one shared cursor, which
// consumers move under the rules that they state, and gives any number of clones. Criteria are texts of the form
//   Column op value [AND Column op value ...]      op: = <> < <= > >=
// with the value a text in single quotes (compared as bytes) or a plain number (the column is then read as a
// number in the user's locale). Nothing escapes a quote: a value that holds one makes the criterion malformed,
// which raises run-time error 3001. Finds and counts by equality go through an index, built when first needed
// and brought up to date as rows arrive.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

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

class EventTable;

class EventCursor {
 public:
  void MoveFirst();
  void MoveLast();
  void MoveNext();
  void MovePrevious();
  // Before the first and behind the last row. An empty (filtered) table is at both.
  bool Bof() const;
  bool Eof() const;

  // Keeps the rows that satisfy the filter and moves to the first of them. The empty text keeps all.
  void SetFilter(std::string_view filter);
  // Rows that pass the filter.
  std::uint32_t RecordCount() const;
  // Starts `skip` rows away from the present one in the given direction and moves to the first row that satisfies the
  // criterion; past the last row (Eof) or before the first (Bof) when there is none.
  void Find(std::string_view criterion, std::uint32_t skip, Direction direction);

  Bookmark bookmark() const;
  // Moves to the row; raises 3001 when the filter leaves it out.
  void GoTo(Bookmark bookmark);

  // Columns of the present row; raise 3021 at Bof or Eof.
  std::int32_t ID() const;
  std::string_view Text(int column) const;
  std::string_view Text(std::string_view column_name) const;

  // A cursor of its own on the same table, without filter, on the first row.
  EventCursor Clone() const;
  // The table this cursor reads.
  const EventTable& table() const;

  // Implementation state: owner of this header's unit fills it in.
};

}  // namespace zendrix::store
