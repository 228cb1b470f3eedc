// Which rows each monitor has, by its name without regard to case, in ascending order. It is brought up to
// date when it is asked for: one pass over the rows that are new.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "store/text_pool.h"

namespace zendrix::admin {

class EventRows;

class MonitorRows {
 public:
  // Takes in the rows that have come.
  void CatchUp(const EventRows& rows);
  // Valid until the next CatchUp.
  std::span<const std::uint32_t> Find(std::string_view monitor) const;

 private:
  store::TextPool names_;                 // in upper case; a name's number is its monitor's
  std::vector<std::uint32_t> by_source_;  // the monitor of each source
  std::vector<std::vector<std::uint32_t>> rows_of_;
  std::uint32_t rows_ = 0;
};

}  // namespace zendrix::admin
