// A grid of texts that shows one page of a longer table. Row 0 is the fixed header, the page's rows count
// from
// 1. All that it shows is replaced at once and told once; cells are read on demand, so that a page costs no
// more memory than the table behind it. Widths and heights are in twips. How many rows can be seen is known
// to the view alone, which tells it.
#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <utility>

#include "widgets/control.h"

namespace zendrix::widgets {

class PageGrid : public Control {
 public:
  static constexpr int kDefaultColWidth = 960;
  // The text of a cell of the page, of row 0 for a heading.
  using CellText = std::function<std::string(int row, int col)>;

  explicit PageGrid(std::string name) : Control(std::move(name)) {}

  // Replaces all that is shown, from the first row on; without `text` the grid is blank. Rows count with the
  // header. `text` is held, with all that it holds, until the next Show.
  void Show(int cols, int rows, CellText text = {}) {
    cols_ = cols;
    rows_ = rows;
    text_ = std::move(text);
    TopRow = 1;
    page_changed.Raise();
  }
  int Cols() const { return cols_; }
  int Rows() const { return rows_; }
  std::string Text(int row, int col) const { return text_ ? text_(row, col) : std::string(); }
  bool blank() const { return !text_; }

  // What is set of a column stays with its place, whatever the grid shows there.
  int ColWidth(int col) const {
    const auto set = widths_.find(col);
    return set == widths_.end() ? kDefaultColWidth : set->second;
  }
  void SetColWidth(int col, int twips) {
    if (twips == ColWidth(col)) return;
    widths_[col] = twips;
    columns_changed.Raise();
  }
  void ResetColWidths() {
    widths_.clear();
    columns_changed.Raise();
  }
  bool HeadingCentred(int col) const { return centred_.contains(col); }
  void CentreHeading(int col) {
    centred_.insert(col);
    columns_changed.Raise();
  }

  // At least; a view takes more where its font asks for it. 0 leaves it to the view.
  Observed<int> HeaderHeight{0}, RowHeightMin{0};
  // The first row in sight, told by the view and by the logic.
  Observed<int> TopRow{1};
  // How many rows have room under the header, none of them cut; told by the view.
  Observed<int> RowsInSight{0};

  Signal<> page_changed;     // any text, the number of rows, the number of columns
  Signal<> columns_changed;  // a width, how a heading stands

 private:
  int cols_ = 0, rows_ = 1;
  CellText text_;
  std::map<int, int> widths_;
  std::set<int> centred_;
};

}  // namespace zendrix::widgets
