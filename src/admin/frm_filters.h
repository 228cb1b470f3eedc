// frmFilters: which rows of the event grid are shown. Its criteria are asked as they stand whenever rows are
// filtered, also while it is minimised; closing it in any way ends the filter. It is shown beside the window,
// once for each object.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "admin/filter_query.h"
#include "core/app_state.h"
#include "store/ulist.h"
#include "widgets/combo_box.h"
#include "widgets/date_time_box.h"
#include "widgets/form.h"
#include "widgets/label.h"
#include "widgets/screen.h"
#include "widgets/text_box.h"

namespace zendrix::admin {

// Everything outlives the form.
struct FiltersNeeds {
  core::AppState& state;
  widgets::Screen& screen;
  // What the grid has met.
  const store::CUList& GridHostList;
  const store::CUList& GridMonitorList;
  const store::CUList& GridChangeList;
  std::function<void()> ApplyFilter;
  // Both end the filter: the first forgets it, the second shows the grid again.
  std::function<void()> ResetFilterItems;
  std::function<void()> RestoreGrids;
};

class frmFilters : public widgets::Form {
 public:
  explicit frmFilters(FiltersNeeds needs);
  ~frmFilters() override { Unload(); }

  // The criteria as they stand.
  FilterCriteria Criteria() const;
  // Another number whenever they have changed.
  unsigned CriteriaNumber() const { return criteria_number_; }
  // Whether any is set.
  bool SelQry() const { return Criteria().Any(); }
  // Whether a row with these five texts is shown. Completes the dates in the dialog as well.
  bool CheckQuery(const RowValues& row);
  // The same for many rows.
  FilterQuery Query();
  // Clears all criteria.
  void ResetFilters();

  void Apply_Click();
  void ResetCommand_Click() { Unload(); }

  widgets::Label lblHost{"lblHost", "Host"};
  widgets::ComboBox HostCombo{"HostCombo"};
  widgets::Label lblMonitor{"lblMonitor", "Monitor"};
  widgets::ComboBox MonitorCombo{"MonitorCombo"};
  widgets::Label lblChange{"lblChange", "Change"};
  widgets::ComboBox ChangeCombo{"ChangeCombo"};
  widgets::Label lblDesc{"lblDesc", "Description"};
  widgets::TextBox Desc{"Desc"};
  widgets::Label lblDescNote{"lblDescNote", "? one character, * any text, # a digit, [a-z] one of these"};
  widgets::Label lblFrom{"lblFrom", "From"};
  widgets::DateTimeBox FromDate{"FromDate"};
  widgets::Label lblTo{"lblTo", "To"};
  widgets::DateTimeBox ToDate{"ToDate"};
  widgets::Label Apply{"Apply", "Filter"};
  widgets::Label ResetCommand{"ResetCommand", "Reset"};

 private:
  void OnLoad() override;
  void OnUnload() override;
  void ConnectControls();
  std::int64_t Now() const;

  FiltersNeeds needs_;
  unsigned criteria_number_ = 0;
};

}  // namespace zendrix::admin
