#include "qt/list_model.h"

#include <QApplication>
#include <QPalette>

#include "qt/text_edge.h"

namespace zendrix::qt {

ListModel::ListModel(widgets::ListView& list, Pictures& pictures, QString picture_list, QObject* parent)
    : QAbstractTableModel(parent),
      list_(list),
      pictures_(pictures),
      picture_list_(std::move(picture_list)),
      shown_(static_cast<int>(list.size())) {
  links_.push_back(list_.rows_added.Connect([this] {
    const int added = static_cast<int>(list_.size()) - shown_;
    if (added <= 0) return;
    beginInsertRows({}, 0, added - 1);
    shown_ += added;
    endInsertRows();
  }));
  links_.push_back(list_.cleared.Connect([this] {
    beginResetModel();
    shown_ = 0;
    endResetModel();
  }));
  links_.push_back(list_.row_changed.Connect([this](widgets::ListView::Slot slot) {
    const int row = RowOf(slot);
    if (row >= 0) emit dataChanged(index(row, 0), index(row, columnCount() - 1));
  }));
  links_.push_back(list_.columns.changed.Connect([this] {
    beginResetModel();
    endResetModel();
  }));
}

int ListModel::RowOf(widgets::ListView::Slot slot) const {
  const int row = shown_ - 1 - static_cast<int>(slot);
  return row < 0 ? -1 : row;
}

int ListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : shown_;
}

int ListModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(list_.columns.Get().size());
}

QVariant ListModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const widgets::ListRow& row = list_.in_slot(SlotOf(index.row()));
  const auto column = static_cast<std::size_t>(index.column());
  std::string text = row.text;
  int picture = row.picture;
  if (column > 0) {
    if (column > row.sub_items.size()) return {};
    text = row.sub_items[column - 1].text;
    picture = row.sub_items[column - 1].picture;
  }
  switch (role) {
    case Qt::DisplayRole:
      return ToQt(text);
    case Qt::DecorationRole:
      return picture > 0 ? QVariant(Picture(picture, row.ghosted)) : QVariant();
    case Qt::ForegroundRole:
      // The palette's grey, which reads on its paper, light or dark.
      return row.ghosted ? QVariant(QApplication::palette().brush(QPalette::PlaceholderText)) : QVariant();
    case Qt::AccessibleDescriptionRole:
      return row.ghosted ? QVariant(QStringLiteral("Marked as deleted")) : QVariant();
    case Qt::ToolTipRole:
      return ToolTipText(text);
    case Qt::AccessibleTextRole:
      return text.empty() && picture > 0 ? headerData(index.column(), Qt::Horizontal, Qt::DisplayRole)
                                         : QVariant(ToQt(text));
    default:
      return {};
  }
}

QIcon ListModel::Picture(int number, bool dimmed) const {
  const QIcon icon = pictures_.Numbered(picture_list_, number);
  constexpr int kEdge = 16;
  return dimmed ? QIcon(icon.pixmap(QSize(kEdge, kEdge), qApp->devicePixelRatio(), QIcon::Disabled)) : icon;
}

QVariant ListModel::headerData(int section, Qt::Orientation orientation, int role) const {
  const auto& columns = list_.columns.Get();
  if (orientation != Qt::Horizontal || section < 0 || section >= static_cast<int>(columns.size())) return {};
  if (role == Qt::DisplayRole) return ToQt(columns[static_cast<std::size_t>(section)].heading);
  if (role == Qt::TextAlignmentRole) return QVariant(Qt::AlignLeft | Qt::AlignVCenter);
  return {};
}

}  // namespace zendrix::qt
