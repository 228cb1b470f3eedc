#include "widgets/chart.h"

#include <algorithm>

namespace zendrix::widgets {

namespace {

// More than anybody would listen to.
constexpr std::size_t kMostInWords = 31;

std::string Counted(std::size_t count, const std::string& thing) {
  return std::to_string(count) + " " + thing;
}

}  // namespace

std::string ChartInWords(const ChartTable& table) {
  std::string words;
  std::size_t told = 0, quiet = 0;
  for (const ChartSeries& series : table.series) {
    const auto is_something = [](const auto& value) { return value.value_or(0) != 0; };
    if (std::ranges::none_of(series.values, is_something)) {
      ++quiet;
    } else if (++told <= kMostInWords) {
      std::int32_t highest = series.values.front().value_or(0);
      for (const auto& value : series.values) highest = std::max(highest, value.value_or(0));
      words += series.name + ": now " + std::to_string(series.values.back().value_or(0)) + ", highest " +
               std::to_string(highest) + ". ";
    }
  }
  if (told > kMostInWords) words += Counted(told - kMostInWords, "more are not told. ");
  if (told == 0) return "Nothing to show.";
  if (quiet > 0) words += "At 0 throughout: " + std::to_string(quiet) + ". ";
  return words + Counted(table.labels.size(), "slots, the newest last.");
}

}  // namespace zendrix::widgets
