#include "admin/grid_filter.h"

#include <utility>

#include "core/date_calendar.h"
#include "core/guards.h"
#include "core/moments.h"
#include "widgets/wait_pointer.h"

namespace zendrix::admin {
namespace {

constexpr int kRowsPerStep = 50;

std::string Selected(int count) {
  return std::to_string(count) + " records selected";
}

}  // namespace

GridFilter::GridFilter(GridFrame& frame, std::function<void(bool)> set_usable)
    : FEvnList("FEvnList", frame.rows), frame_(frame), set_usable_(std::move(set_usable)) {
  FEvnList.visible = false;
  TbarFilter.checkable = true;
  ConnectControls();
}

// What else belongs to the window may be gone by now; the dialog, which is still there, tells only this.
GridFilter::~GridFilter() {
  set_usable_ = [](bool) {};
}

void GridFilter::ConnectControls() {
  MnTQuery.shortcut = "Ctrl+Shift+F";
  MnTQuery.clicked.ConnectForever([this] { MnTQuery_Click(); });
  TbarFilter.clicked.ConnectForever([this] { TbarFilter_Click(); });
  FEvnList.header_clicked.ConnectForever([this](int column) { frame_.HeaderClick(FEvnList, column); });
  FEvnList.mouse_used.ConnectForever([this] { FEvnList.HideInnerColumns(); });
}

frmFilters* GridFilter::OpenDialog() const {
  frmFilters* const dialog = dialog_.get();
  return dialog && dialog->loaded() ? dialog : nullptr;
}

bool GridFilter::SelQry() const {
  const frmFilters* const dialog = OpenDialog();
  return dialog && dialog->SelQry();
}

void GridFilter::MnTQuery_Click() {
  if (!frame_.TakesCommands()) return;
  TbarFilter.checked = true;
  frmFilters& dialog = dialog_.Open(
      frame_.app.host(), FiltersNeeds{frame_.app, frame_.screen, frame_.GridHostList, frame_.GridMonitorList,
                                      frame_.GridChangeList, [this] { ApplyFilter(); },
                                      [this] { ResetFilterItems(); }, [this] { RestoreGrids(); }});
  frame_.app.host().Show(dialog);
  dialog.BringUp();
}

void GridFilter::TbarFilter_Click() {
  if (!frame_.TakesCommands()) return;
  TbarFilter.checked = !TbarFilter.checked;
  if (TbarFilter.checked) {
    SavedRecCntText = frame_.RecCnt.text;
    MnTQuery_Click();
  } else {
    // Closing it ends the filter, and empties the counter.
    CloseDialog();
    frame_.RecCnt.text = SavedRecCntText;
  }
}

void GridFilter::CloseDialog() {
  if (frmFilters* const dialog = OpenDialog()) dialog->Unload();
}

void GridFilter::ApplyFilter() {
  if (frame_.LoadRuns()) return;
  frame_.Timer1->Stop();
  frame_.UpdateBusy = true;
  if (SelQry()) {
    ChangeGrids();
    FilterData(true);
    if (frame_.SavedLeftCol > 0) FEvnList.LeftCol = frame_.SavedLeftCol;
  } else {
    frame_.EventList.visible = true;
    FEvnList.visible = false;
  }
  frame_.UpdateBusy = false;
  frame_.Timer1->Start(kTimer1Ms);
}

void GridFilter::ChangeGrids() {
  EventGrid& all = frame_.EventList;
  FEvnList.Clear();
  FEvnList.SetFormatString(kGridFormat);
  FEvnList.SetColWidths(all.ColWidths());
  for (int i = 0; i < all.Cols(); ++i) {
    FEvnList.SetArrow(i, all.column(i).arrow);
    FEvnList.SetHeading(i, all.column(i).heading, all.column(i).align);
  }
  frame_.sort.SortColumnCopy = 0;
  set_usable_(false);
  all.visible = false;
  FEvnList.visible = true;
  FEvnList.focus.Raise();
}

void GridFilter::RestoreGrids() {
  if (!Shown()) return;
  EventGrid& all = frame_.EventList;
  all.SetColWidths(FEvnList.ColWidths());
  if (frame_.sort.SortColumnCopy > 0) {
    const widgets::WaitPointer wait(frame_.screen);
    const widgets::PaintingPause pause(all);
    frame_.SortGrid(all, frame_.sort.SortColumnCopy);
  }
  set_usable_(true);
  all.visible = true;
  all.focus.Raise();
  FEvnList.visible = false;
  FEvnList.Clear();
}

void GridFilter::ResetFilterItems() {
  CloseDialog();
  frame_.sort.SortColumn = 0;
  TbarFilter.checked = false;
  frame_.RecCnt.text = std::string();
  RestoreGrids();
}

void GridFilter::FilterData(bool filter_on) {
  const GridsAtWork work(frame_, {&frame_.EventList, &FEvnList});
  core::OrLog(frame_.log, "frmMain : FilterData", [&] {
    if (frame_.EventList.Rows() < 2) return;
    if (filter_on)
      FilterRows();
    else
      frame_.ShowRecordCount();
  });
}

FilterQuery GridFilter::Query() const {
  if (frmFilters* const dialog = OpenDialog()) return dialog->Query();
  return {{}, frame_.app.seams.locale.Current(), 0};
}

// The criteria are those of the dialog at each row, and the user may change them meanwhile.
void GridFilter::FilterRows() {
  EventGrid& all = frame_.EventList;
  const int rows = all.Rows();
  FilterSelectedCount = 0;
  std::optional<PreparedQuery> query(std::in_place, Query(), frame_.rows);
  const auto criteria_number = [this] { return OpenDialog() ? OpenDialog()->CriteriaNumber() : 0; };
  unsigned number = criteria_number();
  for (int i = 1; i < rows; ++i) {
    if (all.has_heights()) all.SetRowHeight(i, widgets::kDefaultHeight);
    const std::uint32_t row = all.RowNumber(i);
    if (query->Passes(row)) {
      FEvnList.InsertBottom(row);
      ++FilterSelectedCount;
    }
    if (i % kRowsPerStep != 0) continue;
    frame_.RecCnt.text =
        std::to_string(i) + " records : " + std::to_string(FilterSelectedCount) + " selected";
    frame_.ServeMessages(i, rows);
    if (!Shown()) return;
    if (criteria_number() == number) continue;
    query.emplace(Query(), frame_.rows);
    number = criteria_number();
  }
  ShowSelected(FilterSelectedCount);
}

void GridFilter::OfferNewRows(int count) {
  const widgets::PaintingPause pause(FEvnList);
  PreparedQuery query(Query(), frame_.rows);
  int passed = 0;
  for (int i = 1; i <= count; ++i) {
    const std::uint32_t row = frame_.EventList.RowNumber(i);
    if (query.Passes(row)) FEvnList.Insert(++passed, row);
    if (i % kRowsPerStep == 0) frame_.RecCnt.text = Selected(FEvnList.DataRows());
  }
  ShowSelected(FEvnList.DataRows());
}

void GridFilter::ShowSelected(int count) {
  frame_.RecCnt.text = (count < 1 ? std::string() : Selected(count)) + " (Filtered)";
}

}  // namespace zendrix::admin
