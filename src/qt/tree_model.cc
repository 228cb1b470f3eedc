#include "qt/tree_model.h"

#include <algorithm>
#include <limits>

#include "qt/text_edge.h"

namespace zendrix::qt {

TreeModel::TreeModel(widgets::Tree& tree, Pictures& pictures, QString picture_list, QObject* parent)
    : QAbstractItemModel(parent),
      tree_(tree),
      pictures_(pictures),
      picture_list_(std::move(picture_list)),
      link_(tree.filled.Connect([this] {
        beginResetModel();
        endResetModel();
      })) {}

QModelIndex TreeModel::index(int row, int column, const QModelIndex& parent) const {
  if (!hasIndex(row, column, parent)) return {};
  if (!parent.isValid()) return createIndex(row, column, kRoot);
  if (IsRoot(parent)) return createIndex(row, column, kBranch);
  return createIndex(row, column, kFirstItem + static_cast<quintptr>(parent.row()));
}

QModelIndex TreeModel::parent(const QModelIndex& child) const {
  if (!child.isValid() || IsRoot(child)) return {};
  if (IsBranch(child)) return createIndex(0, 0, kRoot);
  return createIndex(static_cast<int>(child.internalId() - kFirstItem), 0, kBranch);
}

int TreeModel::rowCount(const QModelIndex& parent) const {
  if (!parent.isValid()) return tree_.empty() ? 0 : 1;
  if (parent.column() > 0) return 0;
  if (IsRoot(parent)) return static_cast<int>(tree_.branches().size());
  if (!IsBranch(parent)) return 0;
  const std::size_t count = BranchAt(static_cast<quintptr>(parent.row())).items.count;
  return static_cast<int>(std::min<std::size_t>(count, std::numeric_limits<int>::max()));
}

int TreeModel::columnCount(const QModelIndex&) const {
  return 1;
}

std::string TreeModel::TextOf(const QModelIndex& node) const {
  if (IsRoot(node)) return tree_.root();
  if (IsBranch(node)) return BranchAt(static_cast<quintptr>(node.row())).text;
  return BranchAt(node.internalId() - kFirstItem).items.text(static_cast<std::size_t>(node.row()));
}

QVariant TreeModel::data(const QModelIndex& index, int role) const {
  // More than any window shows of a line; measuring a text of megabytes would stall it.
  constexpr std::size_t kShown = 2000;
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  switch (role) {
    case Qt::DisplayRole:
      return ToQt(std::string_view(TextOf(index)).substr(0, kShown));
    case Qt::ToolTipRole:
      return ToolTipText(TextOf(index));
    case Qt::AccessibleTextRole:
      return ToQt(TextOf(index));
    case Qt::DecorationRole: {
      const int picture = IsBranch(index) ? BranchAt(static_cast<quintptr>(index.row())).picture : 0;
      return picture > 0 ? QVariant(pictures_.Numbered(picture_list_, picture)) : QVariant();
    }
    default:
      return {};
  }
}

Qt::ItemFlags TreeModel::flags(const QModelIndex& index) const {
  const Qt::ItemFlags own = QAbstractItemModel::flags(index);
  return index.isValid() && index.internalId() >= kFirstItem ? own | Qt::ItemNeverHasChildren : own;
}

}  // namespace zendrix::qt
