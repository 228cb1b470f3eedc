// frmFind: looks for a text in the cells of the event grid, from where the last search ended. It is shown
// modally and stays loaded when it is closed, so that a search can go on without it.
#pragma once

#include <cstddef>

#include "admin/grid_frame.h"
#include "widgets/check_box.h"
#include "widgets/form.h"
#include "widgets/label.h"
#include "widgets/text_box.h"

namespace zendrix::admin {

class frmFind : public widgets::Form {
 public:
  // The frame outlives the form.
  explicit frmFind(GridFrame& frame);
  ~frmFind() override { Unload(); }

  void Find_Click();
  // The cell of the last hit gets its colour back.
  void ResetCellColor();
  // A row was inserted at the top.
  void IncrementFindRow();

  // Where the next search begins. Behind a hit in the hidden whole description FindCol is the column that
  // shows it.
  int FindRow = 1;
  int FindCol = 1;
  std::size_t FindPos = 1;
  widgets::Colour FindCellColor = 0;

  widgets::Label lblFind{"lblFind", "Find what"};
  widgets::TextBox txtFind{"txtFind"};
  widgets::CheckBox StartFB{"StartFB", "Start from beginning"};
  widgets::CheckBox MatchC{"MatchC", "Match Case"};
  widgets::Label Find{"Find", "Find Next"};

 private:
  void OnActivate() override { txtFind.focus.Raise(); }
  bool QueryUnload(widgets::UnloadCause cause) override;
  void BeginAnew();

  GridFrame& frame_;
};

}  // namespace zendrix::admin
