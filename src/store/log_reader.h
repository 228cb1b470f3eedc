// CLog: reads one event-log file into a table, newest line first. One shot: a new CLog reads again.
//   11/21/2026 09:05:00 AM,Host,0,'Initial': Start UI.
//   1700000000,HOST,42,Agent started
// are lines of the console's log and of the Agent's.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "core/app_state.h"

namespace zendrix::store {

struct LogRow {
  std::int32_t ID = 0;  // number of the line in the file, from 1
  std::vector<std::string>
      texts;  // Date_Time, Host, TID, Description, Descr5, ...: as many as columns behind ID
};

struct EventLogTable {
  std::vector<std::string> columns;  // "ID", "Date_Time", "Host", "TID", "Description", "Descr5", ...
  std::vector<LogRow> rows;          // newest line of the file first
};

class LineReader;

class CLog {
 public:
  explicit CLog(core::AppState& state) : state_(state) {}
  // Reads the file; without a full line, without a file or after any failure there is no table.
  void InitClass(const std::string& path);
  const EventLogTable* table() const { return table_.get(); }

 private:
  void Load(const std::string& path);
  void CreateEventLogTable(std::size_t fields);
  void AddRow(std::int32_t id, const std::vector<std::string_view>& fields, bool first);
  std::string DateTime(const std::string& field, bool first) const;

  core::AppState& state_;
  int date_order_ = 0;
  int current_year_ = 0;
  std::unique_ptr<EventLogTable> table_;
};

}  // namespace zendrix::store
