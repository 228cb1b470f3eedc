// Binds a logical page grid: texts through a model, column widths both ways, the rows that the window has
// room for. The pages are turned by a scroll bar beside it; the wheel and the keys that lead out of the page
// go there: the arrow keys at its ends, the page keys, Ctrl+Home and Ctrl+End. Rows of a page are copied as
// lines of fields with tabs between them. Enter shows the whole text of a cell, as the mouse does by resting
// on it.
#pragma once

#include "qt/bind.h"
#include "qt/page_grid_model.h"
#include "qt/table_view.h"

class QScrollBar;

namespace zendrix::qt {

class PageTable : public TableView {
 public:
  // `pages` lives as long as the table.
  PageTable(widgets::PageGrid& grid, QScrollBar& pages, const QString& accessible_name,
            const QString& empty_text, const Toolkit& kit);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  void ShowColumns();
  void ShowHeights();
  void KeepPlace();
  void TellRoom();
  bool TurnPage(const QKeyEvent& event);
  void CopyRows() const;
  void ShowWholeText();

  widgets::PageGrid& grid_;
  QScrollBar& pages_;
  Toolkit kit_;
  PageGridModel* model_;
  int row_ = -1, column_ = 0;  // of the cursor
  bool applying_ = false;
};

}  // namespace zendrix::qt
