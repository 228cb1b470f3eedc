#include "admin/grid_find.h"

#include <utility>

namespace zendrix::admin {

GridFind::GridFind(GridFrame& frame, std::function<bool()> filter_shown)
    : frame_(frame), filter_shown_(std::move(filter_shown)) {
  MnEFind.shortcut = "Ctrl+F";
  MnEFindN.shortcut = "F3";
  MnEFind.clicked.ConnectForever([this] { MnEFind_Click(); });
  TbarFind.clicked.ConnectForever([this] { MnEFind_Click(); });
  MnEFindN.clicked.ConnectForever([this] { MnEFindN_Click(); });
}

frmFind* GridFind::Dialog() const {
  frmFind* const dialog = dialog_.get();
  return dialog && dialog->loaded() ? dialog : nullptr;
}

void GridFind::MnEFind_Click() {
  if (!MaySearch()) return;
  frame_.app.host().ShowModal(dialog_.Open(frame_.app.host(), frame_), &frame_.window);
}

void GridFind::MnEFindN_Click() {
  if (!MaySearch()) return;
  if (frmFind* const dialog = Dialog())
    dialog->Find_Click();
  else
    frame_.screen.beep.Raise();
}

void GridFind::IncrementFindRow() {
  if (frmFind* const dialog = Dialog()) dialog->IncrementFindRow();
}

void GridFind::ResetCellColor() {
  if (frmFind* const dialog = Dialog()) dialog->ResetCellColor();
}

}  // namespace zendrix::admin
