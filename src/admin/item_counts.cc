#include "admin/item_counts.h"

#include <algorithm>

namespace zendrix::admin {

ItemCounts::ItemCounts(EventGrid& view)
    : view_(view), rows_(view.rows()), cleared_(view.cleared.Connect([this] { kept_.clear(); })) {}

std::vector<std::int32_t> ItemCounts::At(const std::vector<std::string>& monitors, int row) {
  const SystemState state(view_, row);
  const std::uint32_t selected = view_.RowNumber(state.selected());
  std::vector<std::int32_t> counts;
  for (const std::string& monitor : monitors) counts.push_back(CountOf(monitor, state, selected));
  return counts;
}

std::int32_t ItemCounts::CountOf(const std::string& monitor, const SystemState& state,
                                 std::uint32_t selected) {
  if (view_.NewestFirst()) {
    Kept& kept = kept_[monitor];
    if (!BringForward(kept, monitor, selected)) {
      kept = {};
      if (const SystemState::Stretch rows = state.RowsOfState(monitor); rows.settled)
        Begin(kept, rows, selected);
    }
    if (kept.usable) return IsOnlyEmptyArray(kept) ? 0 : static_cast<std::int32_t>(kept.items);
  }
  return static_cast<std::int32_t>(state.StateofMonitor(monitor).size());
}

bool ItemCounts::BringForward(Kept& kept, const std::string& monitor, std::uint32_t selected) const {
  if (!kept.usable || selected < kept.selected) return false;
  // Whatever is thrown on the way leaves it of no use.
  kept.usable = false;
  const store::TextId start = rows_.pool().Lookup(kStartBaseline);
  const auto all = rows_.RowsOfMonitor(monitor);
  for (auto at = std::ranges::upper_bound(all, kept.selected); at != all.end() && *at <= selected; ++at) {
    const store::TextId text = rows_.row(*at).whole;
    if (text == start) return false;
    if (rows_.Code(*at) == "A") {
      ++kept.times[text];
      ++kept.items;
    } else if (rows_.Code(*at) == "R") {
      const auto found = kept.times.find(text);
      if (found == kept.times.end()) continue;
      --kept.items;
      if (--found->second == 0) kept.times.erase(found);
    }
  }
  kept.selected = selected;
  kept.usable = kept.times.size() <= kMostKept;
  return kept.usable;
}

// Counted in a list of all texts: most of them come and go many times.
void ItemCounts::Begin(Kept& kept, const SystemState::Stretch& rows, std::uint32_t selected) const {
  std::vector<std::uint32_t> times(rows_.pool().size());
  std::size_t different = 0;
  for (auto at = rows.begin; at != rows.end; ++at) {
    std::uint32_t& count = times[rows_.row(*at).whole];
    if (rows_.Code(*at) == "A") {
      if (count++ == 0) ++different;
    } else if (rows_.Code(*at) == "R" && count > 0 && --count == 0) {
      --different;
    }
  }
  if (different > kMostKept) return;
  for (store::TextId text = 0; text < times.size(); ++text) {
    if (times[text] == 0) continue;
    kept.times.emplace(text, times[text]);
    kept.items += times[text];
  }
  kept.selected = selected;
  kept.usable = true;
}

// A list of this one text stands for an empty one.
bool ItemCounts::IsOnlyEmptyArray(const Kept& kept) const {
  return kept.items == 1 && rows_.pool().Text(kept.times.begin()->first) == kEmptyArray;
}

}  // namespace zendrix::admin
