#include "widgets/grid.h"

#include <utility>

namespace zendrix::widgets {

Grid::Grid(std::string name) : Control(std::move(name)) {
  const auto collapse = [this] {
    RowSel = Row.Get();
    ColSel = Col.Get();
  };
  Row.changed.ConnectForever(collapse);
  Col.changed.ConnectForever(collapse);
}

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

void Grid::SetRowColor(int row, Colour colour) {
  if (looks_.SetRowColor(RowKey(row), colour)) TellLooks();
}

void Grid::SetCellColor(int row, int col, Colour colour) {
  if (looks_.SetCellColor(RowKey(row), col, colour)) TellLooks();
}

Colour Grid::ColourUnderPointer() const {
  const Cell cell = cell_under_pointer();
  if (cell.row < 1 || cell.row > DataRows() || cell.col < 0 || cell.col >= Cols()) return 0;
  return CellColor(cell.row, cell.col);
}

void Grid::SetRowHeight(int row, int twips) {
  if (looks_.SetHeight(RowKey(row), twips)) TellLooks();
}

void Grid::Select(int row, int col, int row_sel, int col_sel) {
  Row = row;
  Col = col;
  RowSel = row_sel;
  ColSel = col_sel;
}

void Grid::SetRedraw(bool on) {
  if (!on) {
    ++paused_;
  } else if (paused_ > 0 && --paused_ == 0) {
    EndPause();
  }
}

// A view moves the cursor along with rows that come above it. A sort has put it where it is to stay.
void Grid::EndPause() {
  const int row = Row, col = Col, row_sel = RowSel, col_sel = ColSel;
  if (std::exchange(pending_columns_, false)) columns_changed.Raise();
  const int count = std::exchange(pending_count_, 0);
  if (std::exchange(pending_rows_, false))
    rows_changed.Raise();
  else if (count > 0)
    rows_inserted.Raise(pending_place_, count);
  if (std::exchange(pending_sort_, false)) {
    Select(row, col, row_sel, col_sel);
    rows_sorted.Raise();
  }
  if (std::exchange(pending_looks_, false)) looks_changed.Raise();
}

int Grid::RowOfKnown(int known) const {
  if (pending_rows_ || pending_count_ == 0 || known < pending_place_) return known;
  return known + pending_count_;
}

void Grid::TellRowsInserted(int place, int count) {
  if (redraw()) return rows_inserted.Raise(place, count);
  if (pending_count_ == 0) {
    pending_place_ = place;
  } else if (place < pending_place_ || place > pending_place_ + pending_count_) {
    pending_rows_ = true;
  }
  pending_count_ += count;
}

void Grid::TellRowsSorted() {
  if (redraw())
    rows_sorted.Raise();
  else
    pending_sort_ = true;
}

void Grid::TellCleared() {
  looks_.Clear();
  pending_count_ = 0;
  pending_rows_ = pending_sort_ = pending_looks_ = false;
  cleared.Raise();
}

void Grid::TellColumns() {
  if (redraw())
    columns_changed.Raise();
  else
    pending_columns_ = true;
}

void Grid::TellLooks() {
  if (redraw())
    looks_changed.Raise();
  else
    pending_looks_ = true;
}

}  // namespace zendrix::widgets
