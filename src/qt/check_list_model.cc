#include "qt/check_list_model.h"

#include "qt/text_edge.h"

namespace zendrix::qt {

CheckListModel::CheckListModel(widgets::CheckList& list, const Toolkit& kit, QObject* parent)
    : QAbstractListModel(parent),
      list_(list),
      guard_(kit.guard),
      shown_(static_cast<int>(list.entries().size())) {
  links_.push_back(list_.filled.Connect([this] {
    beginResetModel();
    shown_ = static_cast<int>(list_.entries().size());
    endResetModel();
  }));
  links_.push_back(list_.clicked.Connect([this](std::size_t entry) {
    const QModelIndex at = index(static_cast<int>(entry));
    emit dataChanged(at, at, {Qt::CheckStateRole});
  }));
}

int CheckListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : shown_;
}

QVariant CheckListModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  switch (role) {
    case Qt::DisplayRole:
      return ToQt(At(index).text);
    case Qt::ToolTipRole:
      return ToolTipText(At(index).text);
    case Qt::CheckStateRole:
      return At(index).checked ? Qt::Checked : Qt::Unchecked;
    default:
      return {};
  }
}

bool CheckListModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::CheckStateRole || !checkIndex(index, CheckIndexOption::IndexIsValid)) return false;
  if (At(index).checked == (value.toInt() == Qt::Checked)) return true;
  guard_(list_.name(), [&] { list_.Click(static_cast<std::size_t>(index.row())); });
  return true;
}

Qt::ItemFlags CheckListModel::flags(const QModelIndex& index) const {
  const Qt::ItemFlags own = QAbstractListModel::flags(index);
  return index.isValid() ? own | Qt::ItemIsUserCheckable | Qt::ItemNeverHasChildren : own;
}

}  // namespace zendrix::qt
