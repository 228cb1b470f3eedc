#include "qt/bind_tree.h"

#include <QScrollBar>

namespace zendrix::qt {

TreeView::TreeView(widgets::Tree& tree, const QString& picture_list, const QString& accessible_name,
                   const Toolkit& kit)
    : tree_(tree), model_(new TreeModel(tree, kit.pictures, picture_list, this)) {
  BindControl(tree, this, accessible_name);
  setModel(model_);
  setHeaderHidden(true);
  setUniformRowHeights(true);
  setEditTriggers(NoEditTriggers);
  setIconSize(QSize(16, 16));
  connect(model_, &QAbstractItemModel::modelAboutToBeReset, this,
          [this] { scrolled_ = verticalScrollBar()->value(); });
  connect(model_, &QAbstractItemModel::modelReset, this, [this] { ShowNodes(); });
  connect(this, &QTreeView::expanded, this, [this](const QModelIndex& node) { TellOpen(node, true); });
  connect(this, &QTreeView::collapsed, this, [this](const QModelIndex& node) { TellOpen(node, false); });
  ShowNodes();
}

void TreeView::ShowNodes() {
  applying_ = true;
  setExpanded(model_->Root(), tree_.root_expanded());
  int number = 0;
  for (const widgets::Tree::Branch& branch : tree_.branches())
    setExpanded(model_->Branch(number++), branch.expanded);
  // The current node may lie anywhere; what the user was looking at stays in sight.
  setAutoScroll(false);
  if (number > 0) setCurrentIndex(model_->Branch(number - 1));
  setAutoScroll(true);
  executeDelayedItemsLayout();
  verticalScrollBar()->setValue(scrolled_);
  applying_ = false;
}

void TreeView::TellOpen(const QModelIndex& node, bool open) {
  if (applying_) return;
  if (model_->IsRoot(node)) tree_.ExpandRoot(open);
  if (model_->IsBranch(node)) tree_.Expand(static_cast<std::size_t>(node.row()), open);
}

}  // namespace zendrix::qt
