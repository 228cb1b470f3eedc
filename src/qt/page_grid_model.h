// The page of a logical page grid for a view, read on demand. A blank grid has no rows for the view.
#pragma once

#include <QAbstractTableModel>
#include <vector>

#include "widgets/page_grid.h"

namespace zendrix::qt {

class PageGridModel : public QAbstractTableModel {
 public:
  // A line of a log may define millions of columns; the toolkit lays out each, and nobody looks at them.
  static constexpr int kMostColumns = 4096;

  explicit PageGridModel(widgets::PageGrid& grid, QObject* parent = nullptr);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  widgets::PageGrid& grid_;
  // As the view knows them.
  int rows_ = 0, columns_ = 0;
  std::vector<widgets::Connection> links_;
};

}  // namespace zendrix::qt
