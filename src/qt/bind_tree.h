// Binds a logical tree: nodes through a model, which of them are open both ways. What is filled anew keeps
// its scrolled place. Arrow keys move, open and close; Ctrl+C copies the current node's text.
#pragma once

#include <QTreeView>

#include "qt/bind.h"
#include "qt/tree_model.h"

namespace zendrix::qt {

class TreeView : public QTreeView {
 public:
  TreeView(widgets::Tree& tree, const QString& picture_list, const QString& accessible_name,
           const Toolkit& kit);

 private:
  void ShowNodes();
  void TellOpen(const QModelIndex& node, bool open);

  widgets::Tree& tree_;
  TreeModel* model_;
  int scrolled_ = 0;
  bool applying_ = false;
};

}  // namespace zendrix::qt
