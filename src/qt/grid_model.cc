#include "qt/grid_model.h"

#include <algorithm>

#include "qt/text_edge.h"

namespace zendrix::qt {

GridModel::GridModel(widgets::Grid& grid, Pictures& pictures, QString picture_list, QObject* parent)
    : QAbstractTableModel(parent),
      grid_(grid),
      pictures_(pictures),
      picture_list_(std::move(picture_list)),
      shown_(grid.DataRows()),
      columns_(grid.Cols()) {
  links_.push_back(grid_.rows_added.Connect([this] {
    const int added = grid_.DataRows() - shown_;
    if (added <= 0) return;
    beginInsertRows({}, 0, added - 1);
    shown_ += added;
    endInsertRows();
  }));
  links_.push_back(grid_.cleared.Connect([this] {
    beginResetModel();
    shown_ = 0;
    endResetModel();
  }));
  links_.push_back(grid_.rows_sorted.Connect([this] {
    emit layoutAboutToBeChanged();
    emit layoutChanged();
  }));
  links_.push_back(grid_.columns_changed.Connect([this] {
    if (grid_.Cols() != columns_) {
      beginResetModel();
      columns_ = grid_.Cols();
      shown_ = grid_.DataRows();
      endResetModel();
    } else if (columns_ > 0) {
      emit headerDataChanged(Qt::Horizontal, 0, columns_ - 1);
    }
  }));
}

int GridModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : shown_;
}

int GridModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : columns_;
}

QString GridModel::Words(int row, int col) const {
  return ToQt(grid_.Text(row, col)).trimmed();
}

QVariant GridModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const int row = GridRow(index.row());
  const int col = index.column();
  switch (role) {
    case Qt::DisplayRole:
      return Words(row, col);
    case Qt::DecorationRole: {
      const int picture = grid_.Picture(row, col);
      return picture > 0 ? QVariant(pictures_.Numbered(picture_list_, picture)) : QVariant();
    }
    case Qt::ToolTipRole:
      return ToolTipText(grid_.Tip(row, col));
    case kWholeTextRole:
    case Qt::AccessibleTextRole:
      return ToQt(grid_.Tip(row, col));
    case Qt::TextAlignmentRole:
      return QVariant((grid_.column(col).align == widgets::Align::kRight ? Qt::AlignRight : Qt::AlignLeft) |
                      Qt::AlignVCenter);
    default:
      return {};
  }
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= std::min(columns_, grid_.Cols())) return {};
  const widgets::GridColumn& column = grid_.column(section);
  if (role == Qt::DisplayRole) return ToQt(column.heading);
  if (role == Qt::TextAlignmentRole)
    return QVariant((column.align == widgets::Align::kRight ? Qt::AlignRight : Qt::AlignLeft) |
                    Qt::AlignVCenter);
  return {};
}

}  // namespace zendrix::qt
