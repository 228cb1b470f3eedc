// Binds a logical grid: rows through a model, column widths and headings both ways, sort arrows, the scrolled
// place both ways, the marked row and the rows selected with it. Whole rows are selected: one alone stands
// for its cell. A click is the release of the left mouse button, or Enter or the space bar on the current
// row. Ctrl+C copies the selected rows as lines of fields with tabs between them; Ctrl+Enter shows the whole
// text of a row, as the mouse does by resting on it. Ctrl and a digit is a click on the heading with that
// number, counted from the left. While the grid is out of use it takes no key and no mouse act, and looks as
// ever: a load of a few lines is no reason to flicker or to lose the keyboard.
#pragma once

#include <QHeaderView>

#include "qt/bind.h"
#include "qt/grid_model.h"
#include "qt/table_view.h"

namespace zendrix::qt {

// Draws the arrow of a sorted column behind its heading.
class GridHeader : public QHeaderView {
 public:
  GridHeader(widgets::Grid& grid, Pictures& pictures, QWidget* parent);

 protected:
  void paintSection(QPainter* painter, const QRect& rect, int section) const override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  widgets::Grid& grid_;
  Pictures& pictures_;
};

class GridTable : public TableView {
 public:
  GridTable(widgets::Grid& grid, const QString& picture_list, const QString& accessible_name,
            const QString& empty_text, const Toolkit& kit);

 protected:
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool eventFilter(QObject* receiver, QEvent* event) override;

 private:
  void TellFontWidth();
  void CopyRows() const;
  void ShowWholeText();
  void ClickHeader(int place);
  void ShowColumns();
  void ShowRow();
  void ShowTop();
  void ShowLeft();
  void ShowHeights();
  void TellSelection();
  void TellScrolled();
  // The row of a place, none beside the rows.
  void TellClick(const QModelIndex& place);
  widgets::Grid::Cell CellUnderPointer() const;

  widgets::Grid& grid_;
  Toolkit kit_;
  GridModel* model_;
  bool applying_ = false;
  bool scrolling_ = false;
  bool has_heights_ = false;
  int known_columns_ = 0;
};

}  // namespace zendrix::qt
