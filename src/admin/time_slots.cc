#include "admin/time_slots.h"

#include <algorithm>
#include <limits>

#include "admin/displayed_monitors.h"
#include "core/moments.h"
#include "core/run_time_error.h"

namespace zendrix::admin {

namespace {

constexpr int kLabelledSlots = 4;

// What rows of one source have in common.
struct SourceFacts {
  static constexpr int kUnknown = -1;
  int monitor = kUnknown;  // index among the displayed ones, or kNotDisplayed
  int step = 0;            // by which a row changes what is there
};

int StepOf(std::string_view code) {
  if (code == "A" || code == "N") return 1;
  return code == "R" ? -1 : 0;
}

// The rows of the grid as the timeline sees them. Rows share their sources, so that few texts are looked at.
class SlottedRows {
 public:
  SlottedRows(const EventGrid& grid, const core::Settings& settings, std::int32_t slot_seconds)
      : grid_(grid),
        indexes_(settings),
        slot_seconds_(slot_seconds),
        top_(At(1).time_key),
        facts_(grid.rows().source_count()) {}

  std::int32_t top() const { return top_; }
  // Raises 9 where there is no such row.
  const EventRow& At(int row) const {
    if (row < 1 || row > grid_.DataRows()) core::Raise(core::kSubscriptOutOfRange);
    return grid_.rows().row(grid_.RowNumber(row));
  }
  // Below 0 for a row that is newer than row 1 by a slot or more.
  int SlotOf(const EventRow& row) const {
    const std::int64_t seconds = std::int64_t{top_} - row.time_key;
    using Long = std::numeric_limits<std::int32_t>;
    if (seconds > Long::max() || seconds < Long::min()) core::Raise(core::kOverflow);
    return static_cast<int>(seconds / slot_seconds_);
  }
  const SourceFacts& FactsOf(const EventRow& row) {
    SourceFacts& facts = facts_[row.source];
    if (facts.monitor == SourceFacts::kUnknown) {
      const EventRows& rows = grid_.rows();
      const RowSource source = rows.source(row.source);
      facts = {indexes_.Of(rows.pool().Text(source.monitor)), StepOf(rows.pool().Text(source.code))};
    }
    return facts;
  }

 private:
  const EventGrid& grid_;
  DisplayedMonitorIndexes indexes_;
  std::int32_t slot_seconds_;
  std::int32_t top_;
  std::vector<SourceFacts> facts_;
};

std::vector<std::string> Labels(std::int32_t top, std::size_t count, const FillNeeds& needs) {
  const std::string text = core::UTCToText(top, needs.date_order, needs.family);
  constexpr int kAnyYear = 1970;  // the text names its own
  const std::optional<core::Date> first = core::ReadDate(text, needs.locale, kAnyYear);
  if (!first) core::Raise(core::kTypeMismatch);
  std::vector<std::string> labels(count, " ");
  for (std::size_t i = 0; i < count; i += kLabelledSlots) {
    const core::Date date = MovedBack(*first, needs.unit.SlotInterval, static_cast<int>(i));
    labels[i] = core::FormatDate(date, needs.unit.SlotFormat, needs.locale);
  }
  return labels;
}

// The row at which the count stopped.
int Count(SlottedRows& rows, int last_slot, SlotTable& counts) {
  for (int row = 1;; ++row) {
    const EventRow& event = rows.At(row);
    const int slot = rows.SlotOf(event);
    if (slot >= last_slot) return row;
    const int monitor = rows.FactsOf(event).monitor;
    if (monitor == kNotDisplayed) continue;
    if (slot < 0) core::Raise(core::kSubscriptOutOfRange);
    auto& count = counts[static_cast<std::size_t>(monitor)][static_cast<std::size_t>(slot)];
    count = count.value_or(0) + 1;
  }
}

// Totals at the far end, in all slots: the state at the row behind the one where the count stopped.
void FillFarEnd(const SlottedRows& rows, int stop, const FillNeeds& needs, SlotTable& totals) {
  const std::vector<std::string> monitors = DisplayedMonitors(needs.settings);
  if (monitors.empty()) return;
  const auto end = static_cast<std::size_t>(rows.SlotOf(rows.At(stop)));
  if (end >= needs.settings.NSlots) core::Raise(core::kSubscriptOutOfRange);
  rows.At(stop + 1);
  const std::vector<std::int32_t> alive = needs.items_alive(monitors, stop + 1);
  for (std::size_t i = 0; i < monitors.size(); ++i) std::ranges::fill(totals[i], alive[i]);
}

// The slots from the newest to `slot` hold one value, which is written when the walk leaves it: rows mostly
// come slot by slot, and each would else be written into all the newer ones.
struct Level {
  std::size_t slot = 0;
  std::int32_t value = 0;
};

void WalkTowardsNow(SlottedRows& rows, int stop, SlotTable& totals) {
  std::vector<Level> levels;
  for (const auto& total : totals) levels.push_back({total.size() - 1, total.front().value_or(0)});
  const auto write = [&](std::size_t monitor, std::size_t from) {
    for (std::size_t slot = from; slot <= levels[monitor].slot; ++slot)
      totals[monitor][slot] = levels[monitor].value;
  };
  for (int row = stop; row > 0; --row) {
    const EventRow& event = rows.At(row);
    const SourceFacts& facts = rows.FactsOf(event);
    if (facts.monitor == kNotDisplayed) continue;
    const auto monitor = static_cast<std::size_t>(facts.monitor);
    const auto slot = static_cast<std::size_t>(rows.SlotOf(event));
    Level& level = levels[monitor];
    if (slot > level.slot)
      level.value = totals[monitor][slot].value_or(0);
    else
      write(monitor, slot + 1);
    level = {slot, level.value + facts.step};
  }
  // The last row of the tables stands for no monitor.
  for (std::size_t monitor = 0; monitor + 1 < totals.size(); ++monitor) write(monitor, 0);
}

}  // namespace

void TimeSlots::Fill(const EventGrid& grid, const FillNeeds& needs) {
  const std::size_t slots = needs.settings.NSlots;
  const auto monitors = static_cast<std::size_t>(DisplayedMonitorCount(needs.settings)) + 1;
  SlotCounts.assign(monitors, std::vector<std::optional<std::int32_t>>(slots));
  SlotTotals = SlotCounts;
  SlotLabels.assign(slots, {});
  if (slots == 0) core::Raise(core::kSubscriptOutOfRange);
  SlottedRows rows(grid, needs.settings, needs.unit.SlotSeconds);
  SlotLabels = Labels(rows.top(), slots, needs);
  const int stop = Count(rows, static_cast<int>(slots) - 1, SlotCounts);
  FillFarEnd(rows, stop, needs, SlotTotals);
  WalkTowardsNow(rows, stop, SlotTotals);
}

}  // namespace zendrix::admin
