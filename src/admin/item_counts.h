// How many items monitors have at a moment, as many as SystemState lists, for a moment that mostly moves on a
// little from one question to the next. What was there is kept and brought forward by the rows that have come
// since: behind a poll that is a few of a million. A baseline, a moment further back and a sorted view cost
// the whole state again.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "admin/event_grid.h"
#include "admin/system_state.h"
#include "widgets/signal.h"

namespace zendrix::admin {

class ItemCounts {
 public:
  // No more different items of a monitor are kept; one with more costs its whole state every time.
  static constexpr std::size_t kMostKept = 1U << 18;

  // `view` outlives this object; when it is cleared nothing is kept.
  explicit ItemCounts(EventGrid& view);

  // At the moment that a data row of the view shows.
  std::vector<std::int32_t> At(const std::vector<std::string>& monitors, int row);

 private:
  // What is there behind row number `selected`, by text.
  struct Kept {
    std::uint32_t selected = 0;
    bool usable = false;
    std::uint32_t items = 0;
    std::unordered_map<store::TextId, std::uint32_t> times;
  };

  std::int32_t CountOf(const std::string& monitor, const SystemState& state, std::uint32_t selected);
  bool BringForward(Kept& kept, const std::string& monitor, std::uint32_t selected) const;
  void Begin(Kept& kept, const SystemState::Stretch& rows, std::uint32_t selected) const;
  bool IsOnlyEmptyArray(const Kept& kept) const;

  const EventGrid& view_;
  const EventRows& rows_;
  std::unordered_map<std::string, Kept> kept_;
  widgets::Connection cleared_;
};

}  // namespace zendrix::admin
