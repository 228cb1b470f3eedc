// Binds a logical report list: rows through a model, column widths as shares of the list's width, the
// selection both ways. Only an act of the user counts as a click: pressing a mouse button on a row or Enter
// or the space bar on the current one, also when it is selected already, and moving to another row by the
// keyboard. The menu key opens the list's menu as the right button does.
#pragma once

#include "qt/bind.h"
#include "qt/list_model.h"
#include "qt/table_view.h"

namespace zendrix::qt {

class ListTable : public TableView {
 public:
  ListTable(widgets::ListView& list, const QString& picture_list, const QString& accessible_name,
            const QString& empty_text, const Toolkit& kit);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  void SizeColumns();
  void ShowSelection();
  void TellClick(const QModelIndex& row);

  widgets::ListView& list_;
  Toolkit kit_;
  ListModel* model_;
  bool applying_ = false;
  unsigned clicks_told_ = 0;
};

}  // namespace zendrix::qt
