#include "widgets/grid.h"

#include <utility>

namespace zendrix::widgets {

void Grid::SetFormatString(const std::string& format) {
  std::vector<GridColumn> columns;
  std::size_t begin = 0;
  while (true) {
    const std::size_t bar = format.find('|', begin);
    std::string heading = format.substr(begin, bar == std::string::npos ? bar : bar - begin);
    GridColumn column;
    // The alignment mark may stand behind blanks of the piece in front ("Date/Time |<Hostname").
    const std::size_t mark = heading.find_first_of("<>");
    if (mark != std::string::npos) {
      column.align = heading[mark] == '>' ? Align::kRight : Align::kLeft;
      heading.erase(mark, 1);
    }
    while (!heading.empty() && heading.back() == ' ') heading.pop_back();
    while (!heading.empty() && heading.front() == ' ') heading.erase(0, 1);
    column.heading = std::move(heading);
    if (columns.size() < columns_.size()) column.width = columns_[columns.size()].width;
    columns.push_back(std::move(column));
    if (bar == std::string::npos) break;
    begin = bar + 1;
  }
  if (columns == columns_) return;
  columns_ = std::move(columns);
  TellColumns();
}

void Grid::SetColWidth(int index, int twips) {
  auto& column = columns_[static_cast<std::size_t>(index)];
  if (column.width == twips) return;
  column.width = twips;
  TellColumns();
}

void Grid::SetColWidths(const std::vector<int>& twips) {
  int index = 0;
  for (const int width : twips) SetColWidth(index++, width);
}

void Grid::SetHeading(int index, const std::string& text, Align align) {
  auto& column = columns_[static_cast<std::size_t>(index)];
  if (column.heading == text && column.align == align) return;
  column.heading = text;
  column.align = align;
  TellColumns();
}

void Grid::SetArrow(int index, SortArrow arrow) {
  auto& column = columns_[static_cast<std::size_t>(index)];
  if (column.arrow == arrow) return;
  column.arrow = arrow;
  TellColumns();
}

std::vector<int> Grid::ColWidths() const {
  std::vector<int> widths;
  for (const GridColumn& column : columns_) widths.push_back(column.width);
  return widths;
}

void Grid::SetRedraw(bool on) {
  redraw_ = on;
  if (!on) return;
  if (std::exchange(pending_columns_, false)) columns_changed.Raise();
  if (std::exchange(pending_rows_, false)) rows_added.Raise();
  if (std::exchange(pending_sort_, false)) rows_sorted.Raise();
}

void Grid::TellRowsAdded() {
  if (redraw_)
    rows_added.Raise();
  else
    pending_rows_ = true;
}

void Grid::TellRowsSorted() {
  if (redraw_)
    rows_sorted.Raise();
  else
    pending_sort_ = true;
}

void Grid::TellColumns() {
  if (redraw_)
    columns_changed.Raise();
  else
    pending_columns_ = true;
}

}  // namespace zendrix::widgets
