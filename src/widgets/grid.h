// A table of text cells with one fixed header row. Row 0 is the header; data rows count from 1. The widget
// knows the columns and what is shown of them; the cells belong to a store that derives from it, and views
// read them on demand.
//
// While `redraw` is off no signal is raised; when it comes on, views are told of all changes at once. The
// store keeps its rows oldest first, so that rows a view knows stay where they are while new ones are pushed
// on top.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "widgets/control.h"

namespace zendrix::widgets {

enum class Align { kLeft, kRight };
enum class SortArrow { kNone, kUp, kDown };

struct GridColumn {
  std::string heading;
  Align align = Align::kLeft;
  int width = 960;  // twips; 0 hides the column
  SortArrow arrow = SortArrow::kNone;
  bool operator==(const GridColumn&) const = default;
};

class Grid : public Control {
 public:
  explicit Grid(std::string name) : Control(std::move(name)) {}
  virtual ~Grid() = default;

  // Columns from a format string: headings between "|", each with "<" or ">" in front for its alignment.
  // Widths of columns that were there already are kept.
  void SetFormatString(const std::string& format);
  int Cols() const { return static_cast<int>(columns_.size()); }
  const GridColumn& column(int index) const { return columns_[static_cast<std::size_t>(index)]; }
  void SetColWidth(int index, int twips);
  // One for each column, from the first.
  void SetColWidths(const std::vector<int>& twips);
  void SetHeading(int index, const std::string& text, Align align);
  void SetArrow(int index, SortArrow arrow);
  std::vector<int> ColWidths() const;

  // Rows with the header.
  int Rows() const { return DataRows() + 1; }
  virtual int DataRows() const = 0;
  // Text and picture (from 1; 0 none) of a data row.
  virtual std::string Text(int row, int col) const = 0;
  virtual int Picture(int row, int col) const = 0;
  // What a cell stands for in full words: for a tip, and for those who do not see its picture.
  virtual std::string Tip(int row, int col) const { return Text(row, col); }

  void SetRedraw(bool on);
  bool redraw() const { return redraw_; }

  // The row that is marked and the first row and column in sight; told by the view and by the logic.
  Observed<int> Row{0};
  Observed<int> TopRow{1};
  Observed<int> LeftCol{0};
  // Average width of a character of the grid's font, in tens of twips; told by the view.
  double FontWidth = 9.0;

  Signal<int> header_clicked;  // column
  Signal<> scrolled;
  Signal<> mouse_used;  // any mouse act that may have moved a column's edge

  Signal<> rows_added;   // on top
  Signal<> rows_sorted;  // any row may have changed its place
  Signal<> cleared;
  Signal<> columns_changed;

 protected:
  void TellRowsAdded();
  void TellRowsSorted();
  void TellCleared() { cleared.Raise(); }

 private:
  void TellColumns();

  std::vector<GridColumn> columns_;
  bool redraw_ = true;
  bool pending_rows_ = false, pending_sort_ = false, pending_columns_ = false;
};

}  // namespace zendrix::widgets
