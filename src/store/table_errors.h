// The run-time errors of tables, under the numbers that the log shows.
#pragma once

namespace zendrix::store {

inline constexpr int kNoCurrentRow = 3021;  // a cursor before the first or behind the last row was read
inline constexpr int kNoSuchColumn = 3265;  // a column that the table does not have

}  // namespace zendrix::store
