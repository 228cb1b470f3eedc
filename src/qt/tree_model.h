// The nodes of a logical tree for a view, read on demand.
#pragma once

#include <QAbstractItemModel>
#include <vector>

#include "qt/pictures.h"
#include "widgets/tree.h"

namespace zendrix::qt {

class TreeModel : public QAbstractItemModel {
 public:
  // Pictures of branches are those of the numbered list `picture_list` ("h3").
  TreeModel(widgets::Tree& tree, Pictures& pictures, QString picture_list, QObject* parent = nullptr);

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& child) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

  // The root, invalid while there is none, and its branches.
  QModelIndex Root() const { return index(0, 0); }
  QModelIndex Branch(int number) const { return index(number, 0, Root()); }
  bool IsRoot(const QModelIndex& node) const { return node.isValid() && node.internalId() == kRoot; }
  bool IsBranch(const QModelIndex& node) const { return node.isValid() && node.internalId() == kBranch; }

 private:
  // What stands in a node's internal number: its level, and of an item also its branch.
  static constexpr quintptr kRoot = 0, kBranch = 1, kFirstItem = 2;

  std::string TextOf(const QModelIndex& node) const;
  const widgets::Tree::Branch& BranchAt(quintptr number) const {
    return tree_.branches()[static_cast<std::size_t>(number)];
  }

  widgets::Tree& tree_;
  Pictures& pictures_;
  QString picture_list_;
  widgets::Connection link_;
};

}  // namespace zendrix::qt
