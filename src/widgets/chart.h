// A chart of several series over the same row of places: a table whose first column labels its rows and whose
// other columns are the series. It is only looked at; a click on it leads somewhere, if anywhere, as a whole.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "widgets/control.h"

namespace zendrix::widgets {

struct ChartSeries {
  std::string name;
  std::vector<std::optional<std::int32_t>> values;  // a row's value; nothing where the column is empty
  bool operator==(const ChartSeries&) const = default;
};

struct ChartTable {
  std::vector<std::string> labels;  // of the rows
  std::vector<ChartSeries> series;
  bool operator==(const ChartTable&) const = default;
};

class Chart : public Control {
 public:
  explicit Chart(std::string name) : Control(std::move(name)) {}

  Observed<ChartTable> table;
  // Of the axis along which the rows stand.
  Observed<std::string> axis_title;
  // Whether the series are listed with their names, and whether a click leads somewhere; settled before a
  // view is made of the chart.
  bool legend = false;
  bool clickable = false;
  Signal<> clicked;
};

// What a chart shows, in a few words for those who do not see it: the last and the highest value of each
// series that is not 0 throughout, and how many others there are.
std::string ChartInWords(const ChartTable& table);

}  // namespace zendrix::widgets
