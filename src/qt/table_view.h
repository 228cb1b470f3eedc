// The common look of lists and grids: whole rows, one selected, no grid lines, keyboard navigation by row,
// and a sentence in the middle while there are no rows.
#pragma once

#include <QTableView>

class QLabel;

namespace zendrix::qt {

class TableView : public QTableView {
 public:
  explicit TableView(const QString& empty_text);
  void setModel(QAbstractItemModel* model) override;
  void SetEmptyText(const QString& text);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void PlaceEmptyText();
  QLabel* empty_;
};

}  // namespace zendrix::qt
