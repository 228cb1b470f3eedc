#include "qt/page_grid_model.h"

#include <algorithm>

#include "qt/text_edge.h"

namespace zendrix::qt {

PageGridModel::PageGridModel(widgets::PageGrid& grid, QObject* parent)
    : QAbstractTableModel(parent), grid_(grid) {
  const auto take = [this] {
    beginResetModel();
    rows_ = grid_.blank() ? 0 : grid_.Rows() - 1;
    columns_ = std::min(grid_.Cols(), kMostColumns);
    endResetModel();
  };
  take();
  links_.push_back(grid_.page_changed.Connect(take));
  links_.push_back(grid_.columns_changed.Connect([this] {
    if (columns_ > 0) emit headerDataChanged(Qt::Horizontal, 0, columns_ - 1);
  }));
}

int PageGridModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rows_;
}

int PageGridModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : columns_;
}

QVariant PageGridModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const auto text = [&] { return grid_.Text(index.row() + 1, index.column()); };
  if (role == Qt::DisplayRole) return ToQt(text());
  if (role == Qt::ToolTipRole) return ToolTipText(text());
  return {};
}

QVariant PageGridModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= columns_) return {};
  if (role == Qt::DisplayRole) return ToQt(grid_.Text(0, section));
  if (role == Qt::TextAlignmentRole)
    return QVariant((grid_.HeadingCentred(section) ? Qt::AlignHCenter : Qt::AlignLeft) | Qt::AlignVCenter);
  return {};
}

}  // namespace zendrix::qt
