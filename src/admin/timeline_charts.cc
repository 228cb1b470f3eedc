#include "admin/timeline_charts.h"

#include <algorithm>

#include "admin/displayed_monitors.h"

namespace zendrix::admin {

namespace {

constexpr char kCounts[] = "D";
constexpr char kTotals[] = "T";

std::string AxisText(const core::Settings& settings) {
  return std::string(SlotUnitOf(settings.TSlots).axis_text);
}

// The slots of a monitor, the oldest first; an empty one counts as 0.
std::vector<std::optional<std::int32_t>> ColumnOf(const SlotTable& table, std::size_t monitor,
                                                  std::size_t slots) {
  std::vector<std::optional<std::int32_t>> column(slots, 0);
  if (monitor >= table.size()) return column;
  const auto& values = table[monitor];
  for (std::size_t slot = 0; slot < std::min(slots, values.size()); ++slot)
    column[slots - 1 - slot] = values[slot].value_or(0);
  return column;
}

std::vector<widgets::ChartSeries> SeriesOf(const core::Settings& settings, const TimeSlots& time_slots) {
  std::vector<widgets::ChartSeries> series;
  for (const std::string& monitor : DisplayedMonitors(settings)) {
    const std::size_t index = series.size(), count = settings.NSlots;
    series.push_back({monitor, std::vector<std::optional<std::int32_t>>(count)});
    if (settings.TChart == kTotals)
      series.back().values = ColumnOf(time_slots.SlotTotals, index, count);
    else if (settings.TChart == kCounts)
      series.back().values = ColumnOf(time_slots.SlotCounts, index, count);
  }
  return series;
}

}  // namespace

widgets::ChartTable SmallChartTable(const core::Settings& settings, const TimeSlots& time_slots) {
  widgets::ChartTable table;
  for (int number = settings.NSlots; number > 0; --number)
    table.labels.push_back('"' + std::to_string(number) + '"');
  table.series = SeriesOf(settings, time_slots);
  return table;
}

widgets::ChartTable LargeChartTable(const core::Settings& settings, const TimeSlots& time_slots) {
  widgets::ChartTable table;
  for (std::size_t slot = settings.NSlots; slot-- > 0;)
    table.labels.push_back(slot < time_slots.SlotLabels.size() ? time_slots.SlotLabels[slot] : std::string());
  table.series = SeriesOf(settings, time_slots);
  return table;
}

std::string ChartCaption(const core::Settings& settings) {
  constexpr std::size_t kSeventh = 6;
  std::string unit = AxisText(settings).substr(kSeventh);
  std::erase(unit, ')');
  return "Events x " + unit;
}

std::string ChartAxisTitle(const core::Settings& settings) {
  const std::string axis = AxisText(settings);
  if (settings.TChart == kCounts) return axis + " / number of events in each time slot";
  if (settings.TChart == kTotals) return axis + " / total events across time";
  return axis;
}

}  // namespace zendrix::admin
