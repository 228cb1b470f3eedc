// The filter of the event grid: FEvnList, which takes the place of EventList while a filter is shown and
// holds the rows that pass, in the order of EventList; the dialog frmFilters with the menu entry and the
// button that open it. Only one of the two grids is visible. Filter mode lasts from ChangeGrids to
// RestoreGrids. The views share the rows: whoever clears the rows calls ForgetRows first.
#pragma once

#include <functional>
#include <string>

#include "admin/frm_filters.h"
#include "admin/grid_frame.h"
#include "admin/prepared_query.h"
#include "widgets/menu.h"
#include "widgets/reopened_window.h"

namespace zendrix::admin {

class GridFilter {
 public:
  // What filter mode takes out of use is told to `set_usable`. The frame outlives the filter.
  explicit GridFilter(
      GridFrame& frame, std::function<void(bool usable)> set_usable = [](bool) {});
  ~GridFilter();
  GridFilter(const GridFilter&) = delete;
  GridFilter& operator=(const GridFilter&) = delete;

  // Whether filter mode is on.
  bool Shown() const { return FEvnList.visible; }
  // Whether the dialog is open with a criterion set.
  bool SelQry() const;

  // Null unless the dialog is open.
  frmFilters* OpenDialog() const;

  // Opens the dialog, or brings the open one to the front.
  void MnTQuery_Click();
  void TbarFilter_Click();
  void ApplyFilter();
  // Puts what passes into FEvnList. Serves messages; ends early when filter mode ends meanwhile.
  void FilterData(bool filter_on);
  // The first `count` rows of EventList are new: those that pass are inserted at the top of FEvnList.
  void OfferNewRows(int count);
  void ChangeGrids();
  void RestoreGrids();
  // Leaves filter mode, and closes the dialog.
  void ResetFilterItems();
  void CloseDialog();
  void ForgetRows() { FEvnList.Clear(); }

  EventGrid FEvnList;
  int FilterSelectedCount = 0;
  // What RecCnt showed before the button was pressed.
  std::string SavedRecCntText;
  widgets::MenuItem MnTQuery{"MnTQuery", "Filter..."};
  // Stays down while the dialog is open.
  widgets::MenuItem TbarFilter{"Filter", "Filter"};

 private:
  void ConnectControls();
  void FilterRows();
  FilterQuery Query() const;
  void ShowSelected(int count);

  GridFrame& frame_;
  std::function<void(bool)> set_usable_;
  widgets::Reopened<frmFilters> dialog_;
};

}  // namespace zendrix::admin
