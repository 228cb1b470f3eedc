// CLog: reads one event-log file into a table, newest line first. One shot: a new CLog reads again.
//   11/21/2026 09:05:00 AM,Host,0,'Initial': Start UI.
//   1700000000,HOST,42,Agent started
// are lines of the console's log and of the Agent's. A row holds the fields that its line has and no more, so
// the memory of the table is proportional to the file, however many columns its first full line defines.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/app_state.h"

namespace zendrix::store {

// Complete once it is handed out, and never changed after that. Its texts live as long as it does.
class EventLogTable {
 public:
  // The columns for a first full line of so many fields, at least four.
  explicit EventLogTable(std::size_t fields);

  // ID, Date_Time, Host, TID, Description, then Descr5, Descr6, ...
  std::size_t ColumnCount() const { return column_count_; }
  std::string ColumnName(std::size_t column) const;
  std::size_t RowCount() const { return rows_.size(); }
  // The number of the row's line in the file, from 1. Row 0 is the newest line of the file.
  std::int32_t ID(std::size_t row) const { return At(row).id; }
  // A column behind ID; empty where the line had no such field. Raises 3265 for any other column.
  std::string_view Text(std::size_t row, std::size_t column) const;
  // Whether nothing was put into the column: the line had no such field, or no date that can be read.
  bool IsNull(std::size_t row, std::size_t column) const;

 private:
  friend class CLog;
  struct Row {
    std::int32_t id;
    std::size_t first;  // place of its first field in ends_
  };

  const Row& At(std::size_t row) const { return rows_[rows_.size() - 1 - row]; }
  // Where the row's fields end in ends_.
  std::size_t EndOf(std::size_t row) const { return row == 0 ? ends_.size() : At(row - 1).first; }
  void AddRow(std::int32_t id, std::string_view date_time, const std::vector<std::string_view>& fields);
  void AddField(std::string_view text, std::size_t column);

  std::size_t column_count_;
  std::vector<Row> rows_;          // in the order of the file
  std::vector<std::size_t> ends_;  // of all fields of all rows in bytes_
  std::string bytes_;
};

class CLog {
 public:
  explicit CLog(core::AppState& state) : state_(state) {}
  // Reads the file; without a full line, without a file or after any failure there is no table.
  void InitClass(const std::string& path);
  // Null when there is none. Stays as it is when the file is read again.
  std::shared_ptr<const EventLogTable> table() const { return table_; }

 private:
  std::shared_ptr<const EventLogTable> Load(const std::string& path);
  std::string DateTime(const std::string& field, bool first) const;

  core::AppState& state_;
  int date_order_ = 0;
  int current_year_ = 0;
  std::shared_ptr<const EventLogTable> table_;
};

}  // namespace zendrix::store
