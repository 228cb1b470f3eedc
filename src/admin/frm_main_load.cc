// Loading of the event grid: the whole file, what was added to it, and all of it again when it has shrunk.
#include <new>

#include "admin/frm_main.h"
#include "control/agent_sight.h"
#include "core/guards.h"
#include "core/letter_case.h"
#include "core/path_text.h"

namespace zendrix::admin {

namespace {

constexpr char kNoDataFound[] =
    "No Zendrix Data Found.  Please ensure that the Zendrix Product is properly installed.";
constexpr int kFewRows = 3;

// A notable row of one of these makes the icon in the notification area flash while the window is hidden.
bool IsFlashing(std::string_view monitor) {
  for (const char* name : {"Monitor Analysis Agent #1", "Monitoring Agent", "Monitor Analysis Agent #2",
                           "Test Monitoring Agent"})
    if (core::EqualNoCase(monitor, name)) return true;
  return false;
}

}  // namespace

void frmMain::DisplayData(const std::string& status_text) {
  const GridsAtWork work(*this, {&EventList});
  const bool loaded_all = core::OrLog(log, "frmMain : DisplayData", [&] {
    for (auto* list : {&GridMonitorList, &GridHostList, &GridChangeList}) list->Clear();
    GridFileSize = 0;
    GridLineCount = 0;
    if (!FileIsThere()) return FileMissing();
    GridLoad load = NewLoad();
    try {
      GridFileSize = core::ValueOrRaise(app.seams.files.Size(GridFilePath));
      load.opened = [this] { ShowPath(); };
      load.serve = [&] {
        RecCnt.text =
            status_text.empty() ? "Loading... " + std::to_string(load.lines) + " records" : status_text;
        ServeMessages(load.bytes, GridFileSize);
      };
      loader_.ReadAll(load);
    } catch (const core::RunTimeError& error) {
      if (error.number != core::kOutOfMemory) throw;
      GridIsFull();
    } catch (const std::bad_alloc&) {
      GridIsFull();
    }
    GridLineCount = load.lines;
    RegisterMonitors(load);
    ShowRecordCount();
  });
  if (loaded_all) DrawTimeline();
}

GridLoad frmMain::NewLoad() {
  GridLoad load;
  load.path = GridFilePath;
  load.settings = {app.seams.locale.Current(), DateOrder, EventList.column(kColDescription).width};
  load.is_displayed = [this](const std::string& monitor) { return IsMonitorDisplayed(monitor); };
  return load;
}

std::optional<bool> frmMain::IsMonitorDisplayed(const std::string& monitor) const {
  for (const auto& [name, value] : app.settings.MonitorStates)
    if (core::EqualNoCase(name, monitor)) return value != "0";
  return std::nullopt;
}

// Once for a whole load: each of thousands of names would have the settings read and verified twice.
void frmMain::RegisterMonitors(const GridLoad& load) {
  if (load.unknown_monitors.empty()) return;
  reg_ini.RegisterMonitors(load.unknown_monitors);
  reg_ini.ReadRegInfo();
}

void frmMain::RedisplayData(bool filter_active) {
  bool reload = false;
  {
    const GridsAtWork work(*this, {&EventList});
    const bool added_all = core::OrLog(log, "frmMain : RedisplayData", [&] {
      if (!FileIsThere()) return FileMissing();
      const std::int64_t new_size = core::ValueOrRaise(app.seams.files.Size(GridFilePath));
      reload = new_size < GridFileSize;
      if (!reload) AddNewLines(new_size, filter_active);
    });
    if (added_all && !reload) DrawTimeline();
  }
  if (!reload) return;
  Reload();
  BackgroundUpdate = false;
  if (filter.Shown()) filter.FilterData(true);
}

void frmMain::AddNewLines(std::int64_t new_size, bool filter_active) {
  const int rows_before = EventList.Rows();
  GridLoad load = NewLoad();
  load.lines = GridLineCount;
  load.before_line = [this] {
    replay.LineComes();
    find.IncrementFindRow();
  };
  load.behind_line = [this] { NoteArrival(); };
  load.serve = [&] { ServeMessages(load.bytes, new_size - GridFileSize); };
  try {
    if (new_size > GridFileSize) loader_.ReadAdded(load);
  } catch (const core::RunTimeError& error) {
    if (error.number != core::kOutOfMemory) throw;
    return GridIsFull();
  } catch (const std::bad_alloc&) {
    return GridIsFull();
  }
  GridFileSize = new_size;
  GridLineCount = load.lines;
  RegisterMonitors(load);
  ShowPath();
  if (sort.SortColumn > 0) SortAgain();
  if (!BackgroundUpdate) return;
  if (filter_active && filter.Shown())
    filter.OfferNewRows(EventList.Rows() - rows_before);
  else
    ShowRecordCount();
}

void frmMain::DrawTimeline() {
  DynamicPictureBox.Show(0);
  timeline.FillMiniChart();
  timeline.DrawMiniChart();
}

void frmMain::NoteArrival() {
  if (EventList.Rows() < 2 || visible) return;
  TrayFlashPhase = true;
  NotablePending = true;
  if (IsFlashing(EventList.Monitor(1)) && !Timer2->Running()) Timer2->Start(1000);
}

void frmMain::Reload() {
  RecCnt.text = std::string("file shortened, reloading");
  const bool first_fill = EventList.Rows() < kFewRows;
  const std::vector<int> widths = EventList.ColWidths();
  const int left_col = SavedLeftCol;
  HeadAndEmptyGrid();
  if (first_fill) {
    EventList.SetColWidth(kColDescription, kFirstDescriptionWidth);
  } else {
    EventList.SetColWidths(widths);
    EventList.LeftCol = left_col;
  }
  DisplayData("Event View is full, Reloading...");
  replay.RowsHaveGone();
  if (first_fill) AutoSizeColumns();
  ApplyColumnSettings();
  ClearHeaderPictures();
  ShowSortArrow(EventList, kColDateTime, false);
}

void frmMain::HeadAndEmptyGrid() {
  filter.ForgetRows();
  EventList.Clear();
  rows.Clear();
  EventList.SetFormatString(kGridFormat);
}

void frmMain::UpgradeGrid() {
  if (LoadRuns()) return;
  Timer1->Stop();
  UpdateBusy = true;
  RedisplayData(filter.SelQry());
  ApplyColumnSettings();
  if (SavedLeftCol > 0) EventList.LeftCol = SavedLeftCol;
  UpdateBusy = false;
  Timer1->Start(kTimer1Ms);
}

void frmMain::ResetClick() {
  if (LoadRuns()) return;
  RefreshBusy = true;
  Timer1->Stop();
  screen.MousePointer = widgets::kPointerHourglass;
  const bool first_fill = EventList.Rows() < kFewRows;
  const std::vector<int> widths = EventList.ColWidths();
  replay.ClearShape();
  filter.ResetFilterItems();
  HeadAndEmptyGrid();
  if (first_fill) EventList.SetColWidth(kColDescription, kFirstDescriptionWidth);
  DisplayData("");
  if (first_fill) {
    AutoSizeColumns();
  } else {
    EventList.SetColWidths(widths);
    EventList.LeftCol = SavedLeftCol;
  }
  ApplyColumnSettings();
  ClearHeaderPictures();
  ShowSortArrow(EventList, kColDateTime, false);
  replay.InitSessionCursor();
  screen.MousePointer = widgets::kPointerDefault;
  RefreshBusy = false;
  Timer1->Start(kTimer1Ms);
}

bool frmMain::FileIsThere() {
  return app.seams.files.Exists(GridFilePath);
}

void frmMain::FileMissing() {
  const bool is_agents = GridFilePath == AgentFilePath();
  const std::string why = is_agents ? control::WhyNothingIsSeen(app) : std::string();
  const std::string text = is_agents ? kNoDataFound : "File " + core::PathText(GridFilePath) + " not found.";
  if (why.empty())
    app.seams.message_boxes.Show({app.ProductName, text, platform::BoxIcon::kStop});
  else
    app.seams.message_boxes.Show({app.ProductName, why, platform::BoxIcon::kInformation});
  path_shown_ = false;
  Msg.text = std::string("No Zendrix Data Found");
}

void frmMain::GridIsFull() {
  const std::string text = "The Event View grid is full. The size of the kvl file: \r\n" +
                           core::PathText(GridFilePath) + "\r\nneeds to be reduced.";
  app.seams.message_boxes.Show({app.ProductName, text, platform::BoxIcon::kInformation});
}

}  // namespace zendrix::admin
