// The commands that look for a text in the event grid: they open the dialog frmFind, or search on without it.
// While a filter is shown they rest.
#pragma once

#include <functional>

#include "admin/frm_find.h"
#include "admin/grid_frame.h"
#include "widgets/menu.h"
#include "widgets/reopened_window.h"

namespace zendrix::admin {

class GridFind {
 public:
  // `filter_shown` tells whether the filtered grid is. The frame outlives this object.
  GridFind(GridFrame& frame, std::function<bool()> filter_shown);
  GridFind(const GridFind&) = delete;
  GridFind& operator=(const GridFind&) = delete;

  void MnEFind_Click();
  // Searches on; beeps where the dialog was never opened.
  void MnEFindN_Click();
  // Both do nothing unless the dialog is loaded: a row comes in at the top; the mark of the last hit goes.
  void IncrementFindRow();
  void ResetCellColor();
  // The dialog while it is loaded, shown or not; else null.
  frmFind* Dialog() const;

  widgets::MenuItem MnEFind{"MnEFind", "&Find..."};
  widgets::MenuItem MnEFindN{"MnEFindN", "Find &Next"};
  widgets::MenuItem TbarFind{"Find", "Find"};

 private:
  bool MaySearch() const { return frame_.TakesCommands() && !filter_shown_(); }

  GridFrame& frame_;
  std::function<bool()> filter_shown_;
  widgets::Reopened<frmFind> dialog_;
};

}  // namespace zendrix::admin
