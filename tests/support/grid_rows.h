// Rows of the event grid put in by hand.
#pragma once

#include <cstdint>
#include <string_view>

#include "admin/event_grid.h"
#include "admin/event_rows.h"

namespace zendrix::testing {

struct GridRow {
  std::int32_t event_id = 0;
  std::string_view time = {};  // empty: by the key
  std::string_view host = "HOST";
  std::string_view monitor = "System";
  std::string_view code = "A";
  std::string_view whole = "whole";
  std::int32_t time_key = 0;
};

// The number of the new row.
inline std::uint32_t Append(admin::EventRows& rows, const GridRow& row) {
  std::uint32_t source = rows.AddSource(row.host, row.monitor, row.code);
  if (!row.time.empty()) source = rows.AddSourceWithTime(source, row.time);
  rows.Append({row.event_id, row.time_key, source, rows.AddDescription(row.whole)});
  return rows.size() - 1;
}

inline void InsertTop(admin::EventRows& rows, admin::EventGrid& grid, const GridRow& row) {
  grid.MakeRoom();
  grid.InsertTop(Append(rows, row));
}

}  // namespace zendrix::testing
