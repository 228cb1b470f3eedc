// A table of text cells with one fixed header row. Row 0 is the header; data rows count from 1. The widget
// knows the columns, what is shown of them, and what single rows look like; the cells belong to a store that
// derives from it, and views read them on demand.
//
// Painting can be paused, any number of times over. While it is, no signal is raised but `cleared`; when the
// last pause ends, views are told of all changes at once. Until then a view that reads rows by the places it
// knows asks RowOfKnown where they stand by now.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "widgets/control.h"
#include "widgets/row_looks.h"

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
  explicit Grid(std::string name);
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

  // Colours and heights belong to the row and go with it wherever it moves. Colour 0 is none of its own; the
  // colour of a row is that of all its cells.
  void SetRowColor(int row, Colour colour);
  void SetCellColor(int row, int col, Colour colour);
  Colour CellColor(int row, int col) const { return looks_.CellColor(RowKey(row), col); }
  // Twips; 0 hides the row, kDefaultHeight is that of all rows.
  void SetRowHeight(int row, int twips);
  int RowHeight(int row) const { return looks_.Height(RowKey(row)); }
  // Whether any row has a height of its own.
  bool has_heights() const { return looks_.has_heights(); }

  // Nested: each false needs a true.
  void SetRedraw(bool on);
  bool redraw() const { return paused_ == 0; }
  // The row that a view knows under this number, or one below 1 or above DataRows() when it is gone.
  int RowOfKnown(int known) const;

  // The cursor's cell, and the other corner of what is selected; told by the view and by the logic. A cursor
  // that moves to another row or column ends the selection there. Column 0 to Cols() - 1.
  Observed<int> Row{0};
  Observed<int> Col{0};
  Observed<int> RowSel{0};
  Observed<int> ColSel{0};
  void Select(int row, int col, int row_sel, int col_sel);
  bool OneCellSelected() const { return Row == RowSel && Col == ColSel; }
  // The first row and column in sight.
  Observed<int> TopRow{1};
  Observed<int> LeftCol{0};
  // Average width of a character of the grid's font, in tens of twips; told by the view.
  double FontWidth = 9.0;

  // The cell that the mouse pointer is over, asked at the moment; the view answers it. Row 0 where it is over
  // no data row, or no view is there.
  struct Cell {
    int row = 0;
    int col = 0;
  };
  std::function<Cell()> cell_under_pointer = [] { return Cell{}; };
  // Of that cell; 0 where there is none.
  Colour ColourUnderPointer() const;

  Signal<int> header_clicked;  // column
  // The user clicked a row, or pressed Enter or the space bar on it; 0: the place beside the rows.
  Signal<int> row_clicked;
  Signal<> scrolled;
  Signal<> mouse_used;  // any mouse act that may have moved a column's edge

  Signal<int, int> rows_inserted;  // place of the first, from 1, and how many
  Signal<> rows_sorted;            // any row may have changed its place
  Signal<> rows_changed;           // rows were inserted in several places
  Signal<> looks_changed;
  Signal<> cleared;
  Signal<> columns_changed;

 protected:
  // What a row keeps wherever it moves.
  virtual std::uint32_t RowKey(int row) const { return static_cast<std::uint32_t>(row); }
  // `count` rows were inserted at `place`.
  void TellRowsInserted(int place, int count);
  void TellRowsSorted();
  void TellCleared();

 private:
  void TellColumns();
  void TellLooks();
  void EndPause();

  std::vector<GridColumn> columns_;
  RowLooks looks_;
  int paused_ = 0;
  // What views have not been told of: one run of inserted rows, or any number of runs.
  int pending_place_ = 0, pending_count_ = 0;
  bool pending_rows_ = false, pending_sort_ = false, pending_columns_ = false, pending_looks_ = false;
};

// Pauses the painting of a grid for as long as it lives.
class PaintingPause {
 public:
  explicit PaintingPause(Grid& grid) : grid_(grid) { grid_.SetRedraw(false); }
  ~PaintingPause() { grid_.SetRedraw(true); }
  PaintingPause(const PaintingPause&) = delete;
  PaintingPause& operator=(const PaintingPause&) = delete;

 private:
  Grid& grid_;
};

}  // namespace zendrix::widgets
