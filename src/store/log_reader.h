// CLog: reads one event-log file into a table, newest line first. One shot: a new CLog reads again.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "core/app_state.h"

namespace zendrix::store {

struct LogRow {
  std::int32_t ID = 0;             // number of the line in the file, from 1
  std::vector<std::string> texts;  // Date_Time, Host, TID, Description, Descr5, ...
};

struct EventLogTable {
  std::vector<std::string> columns;  // "ID", "Date_Time", "Host", "TID", "Description", "Descr5", ...
  std::vector<LogRow> rows;          // newest line of the file first
};

class CLog {
 public:
  explicit CLog(core::AppState& state) : state_(state) {}
  // Reads the file; without a full line, without a file or after any failure there is no table.
  void InitClass(const std::string& path);
  const EventLogTable* table() const { return table_.get(); }

 private:
  core::AppState& state_;
  std::unique_ptr<EventLogTable> table_;
};

}  // namespace zendrix::store
