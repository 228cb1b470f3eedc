#include "admin/frm_main.h"

#include <algorithm>
#include <cmath>

#include "admin/header_codes.h"
#include "control/agent_control.h"
#include "core/about_window.h"
#include "core/fit_text.h"
#include "core/guards.h"
#include "core/path_text.h"

namespace zendrix::admin {

using widgets::WindowState;

namespace {

constexpr char kMonitoringFile[] = "KorvessaMonitoring.kvl";
constexpr char kSplitter[] = "lblHDrag";
constexpr int kFirstDescriptionWidth = 3945;
// Twips that the path keeps clear of the panel's edge, and a heading of its cell's.
constexpr int kPanelMargin = 115;
constexpr int kHeadingMargin = 300;
constexpr int kUnhandledHeader = 999;

// Columns that are never seen, whatever their widths would be.
bool IsInner(int column) {
  return column == kColCode || column == kColWhole || column == kColTimeKey;
}

std::string Swapped(std::string path, char from, char to) {
  std::replace(path.begin(), path.end(), from, to);
  return path;
}

}  // namespace

frmMain::frmMain(AdminParts parts)
    : Form(parts.state.forms, "frmMain"),
      rows(parts.state.seams.family, parts.metrics, parts.grid_capacity),
      EventList("EventList", rows),
      parts_(std::move(parts)),
      app_(parts_.state),
      loader_(app_.seams.files, {rows, EventList, GridMonitorList, GridHostList, GridChangeList}) {
  Msg.width = 6000;
  lblRootWarning.visible = app_.seams.host.RunsAsRoot();
  ConnectControls();
}

void frmMain::ConnectControls() {
  EventList.header_clicked.ConnectForever([this](int column) { EventList_HeaderClick(column); });
  EventList.mouse_used.ConnectForever([this] { HideInnerColumns(); });
  EventList.scrolled.ConnectForever([this] {
    SavedTopRow = EventList.TopRow;
    SavedLeftCol = EventList.LeftCol;
  });
  Msg.width.changed.ConnectForever([this] {
    if (path_shown_) ShowPath();
  });
  tray.mouse.ConnectForever([this](int message) { Tray_Mouse(message); });
  MnFExit.clicked.ConnectForever([this] { MnFExit_Click(); });
  mPopExit.clicked.ConnectForever([this] { MnFExit_Click(); });
  MnVLogs.clicked.ConnectForever([this] { MnVLogs_Click(); });
  TbarVLogs.clicked.ConnectForever([this] { MnVLogs_Click(); });
  MnVRefresh.clicked.ConnectForever([this] { MnVRefresh_Click(); });
  TbarRefresh.clicked.ConnectForever([this] { MnVRefresh_Click(); });
  MnTOptions.clicked.ConnectForever([this] { MnTOptions_Click(); });
  TbarOptions.clicked.ConnectForever([this] { MnTOptions_Click(); });
  MnHAbout.clicked.ConnectForever([this] { MnHAbout_Click(); });
  mPopRestore.clicked.ConnectForever([this] { mPopRestore_Click(); });
  mPopMinimize.clicked.ConnectForever([this] { mPopMinimize_Click(); });
  mPopMaximize.clicked.ConnectForever([this] { mPopMaximize_Click(); });
  // A desktop may open the icon's menu itself, without an event that the form could refuse.
  enabled.changed.ConnectForever([this] {
    for (widgets::MenuItem* item : mPopupSys.items) item->enabled = enabled.Get();
  });
  Timer1_ = app_.seams.timers.MakeTimer([this] { Timer1_Timer(); });
  Timer2_ = app_.seams.timers.MakeTimer([this] { Timer2_Timer(); });
}

std::string frmMain::DefaultPath() const {
  return platform::JoinPath(app_.ProgramFolder, kMonitoringFile);
}

void frmMain::Form_Load() {
  core::OrLog(parts_.log, "frmMain : Form_Load", [&] {
    parts_.reg_ini.LoadWindowState(*this);
    parts_.reg_ini.LoadFormPlace(kSplitter, lblHDrag);
  });
  DateOrder = app_.DateOrder;
  GridFilePath = DefaultPath();
  Timer1_->Stop();
  title = app_.ProductName;
  MnHAbout.caption = "About " + app_.ProductName;
  HeadAndEmptyGrid();
  bool saved_widths = false;
  core::OrLog(parts_.log, "frmMain : Form_Load", [&] {
    std::vector<int> widths = EventList.ColWidths();
    saved_widths = parts_.reg_ini.LoadColWidths(EventList.name(), widths);
    if (saved_widths) EventList.SetColWidths(widths);
  });
  if (!saved_widths) EventList.SetColWidth(kColDescription, kFirstDescriptionWidth);
  DisplayData("");
  if (!saved_widths) AutoSizeColumns();
  ApplyColumnSettings();
  ClearHeaderPictures();
  ShowSortArrow(EventList, kColDateTime, false);
  SavedTopRow = SavedLeftCol = 1;
  NotablePending = false;
  Timer1_->Start(kTimer1Ms);
  tray.SetTip(app_.ProductName);
  tray.shown = true;
  if (Form* splash = app_.forms.Find("frmSplash")) splash->Unload();
}

void frmMain::ShowPath() {
  path_shown_ = true;
  const int pixels = (Msg.width - kPanelMargin) / parts_.metrics.twips_per_pixel;
  // Paths are compacted by the rules of the other separator.
  const std::string path = Swapped(core::PathText(GridFilePath), '/', '\\');
  Msg.text = Swapped(core::CompactPath(path, pixels, parts_.metrics.pixels), '\\', '/');
}

void frmMain::AutoSizeColumns() {
  const std::string count = RecCnt.text;
  RecCnt.text = std::string("Adjusting...");
  parts_.screen.MousePointer = widgets::kPointerHourglass;
  {
    const widgets::PaintingPause pause(EventList);
    for (int column = 0; column <= EventList.Cols() - 3; ++column) {
      if (!IsInner(column)) SizeColumn(column);
    }
    HideInnerColumns();
    RecCnt.text = count;
  }
  parts_.screen.MousePointer = widgets::kPointerDefault;
}

void frmMain::SizeColumn(int column) {
  const int unit = static_cast<int>(std::floor(EventList.FontWidth)) + 1;
  const std::size_t longest =
      std::max(EventList.column(column).heading.size(), EventList.LongestText(column));
  EventList.SetColWidth(column, (static_cast<int>(longest) + 1) * unit * 10);
}

void frmMain::HideInnerColumns() {
  for (int column = 0; column < EventList.Cols(); ++column) {
    if (IsInner(column)) EventList.SetColWidth(column, 0);
  }
}

void frmMain::ApplyColumnSettings() {
  for (const auto& [name, value] : app_.settings.ColumnStates) {
    const int column = ColumnCodeOfHeader(name);
    if (column == kUnhandledHeader) continue;
    if (value == "0")
      EventList.SetColWidth(column, 0);
    else if (EventList.column(column).width == 0)
      SizeColumn(column);
  }
  HideInnerColumns();
}

void frmMain::ShowSortArrow(EventGrid& grid, int column, bool up) {
  grid.SetHeading(kColDateTime, "Date/Time", widgets::Align::kLeft);
  grid.SetHeading(kColHostname, "Hostname", widgets::Align::kLeft);
  grid.SetHeading(kColMonitor, "Monitor", widgets::Align::kLeft);
  grid.SetHeading(kColChange, "Change", widgets::Align::kLeft);
  grid.SetHeading(kColDescription, "Description", widgets::Align::kLeft);
  std::string text = grid.column(column).heading;
  const int room = grid.column(column).width - kHeadingMargin;
  const std::size_t length = text.size();
  while (!text.empty() && parts_.metrics.twips(text) > room) text.resize(text.size() / 2);
  if (text.size() < length) text += "...";
  grid.SetHeading(column, text, widgets::Align::kLeft);
  for (int i = 0; i < grid.Cols(); ++i) {
    using widgets::SortArrow;
    grid.SetArrow(i, i != column ? SortArrow::kNone : up ? SortArrow::kUp : SortArrow::kDown);
  }
}

void frmMain::ClearHeaderPictures() {
  for (int i = 0; i < EventList.Cols(); ++i) EventList.SetArrow(i, widgets::SortArrow::kNone);
}

void frmMain::SortGrid(EventGrid& grid, int column) {
  const bool up = sort.Sort(grid, column);
  ShowSortArrow(grid, HeaderColumn, up);
  if (grid.Rows() >= 2) grid.Row = 1;
}

// After lines have come; the direction stays.
void frmMain::SortAgain() {
  ShowSortArrow(EventList, HeaderColumn, sort.SortAgain(EventList));
  if (EventList.Rows() >= 2) EventList.Row = 1;
}

void frmMain::EventList_HeaderClick(int column) {
  if (column < 1 || UpdateBusy || RefreshBusy) return;
  HeaderColumn = column;
  SortGrid(EventList, GridSort::KeyOfHeader(column));
}

void frmMain::Timer1_Timer() {
  core::OrLog(parts_.log, "frmMain.frm : Timer1_Timer", [&] {
    if (FileIsThere()) {
      const std::int64_t size = core::ValueOrRaise(app_.seams.files.Size(GridFilePath));
      if (size != TimerSeenSize) {
        TimerSeenSize = size;
        const widgets::PaintingPause pause(EventList);
        BackgroundUpdate = true;
        UpgradeGrid();
        BackgroundUpdate = false;
        if (sort.SortColumn > 0) {
          parts_.screen.MousePointer = widgets::kPointerHourglass;
          SortAgain();
          parts_.screen.MousePointer = widgets::kPointerDefault;
        }
      }
    }
    if (NotablePending && Timer2_->Running() && visible) {
      NotablePending = false;
      Timer2_->Stop();
      tray.icon = widgets::TrayIcon::kForm;
    }
  });
}

void frmMain::Timer2_Timer() {
  if (TrayFlashPhase) {
    tray.icon = widgets::TrayIcon::kNotableSystemTrayIcon;
    TrayFlashPhase = false;
  } else {
    tray.icon = widgets::TrayIcon::kForm;
    TrayFlashPhase = true;
  }
}

void frmMain::ShowWindow(WindowState wanted) {
  state = wanted;
  bring_forward.Raise();
  visible = true;
}

void frmMain::Tray_Mouse(int message) {
  if (message == widgets::kTrayLeftUp) {
    ShowWindow(WindowState::kNormal);
  } else if (message == widgets::kTrayRightUp) {
    bring_forward.Raise();
    if (enabled) mPopupSys.popup.Raise();
  }
}

void frmMain::ComeForward() {
  if (enabled) {
    if (state.Get() == WindowState::kMinimised) state = WindowState::kNormal;
    visible = true;
  }
  bring_forward.Raise();
}

// While a modal window is open the form is disabled, and the commands of its menu do nothing.
void frmMain::mPopRestore_Click() {
  if (enabled) ShowWindow(WindowState::kNormal);
}

void frmMain::mPopMinimize_Click() {
  if (enabled) ShowWindow(WindowState::kMinimised);
}

void frmMain::mPopMaximize_Click() {
  if (enabled) ShowWindow(WindowState::kMaximised);
}

void frmMain::MnFExit_Click() {
  if (enabled && control::WarningMessage(app_)) Unload(widgets::UnloadCause::kCode);
}

void frmMain::MnVRefresh_Click() {
  if (!UpdateBusy && !RefreshBusy) ResetClick();
}

void frmMain::MnVLogs_Click() {
  if (!enabled || UpdateBusy || RefreshBusy) return;
  frmLog& window = logs_.Open(app_.host(), LogNeeds{app_, parts_.log, parts_.screen, parts_.metrics});
  app_.host().Show(window);
  window.bring_forward.Raise();
}

void frmMain::MnHAbout_Click() {
  core::frmAbout about(app_);
  app_.host().ShowModal(about, this);
}

bool frmMain::QueryUnload(widgets::UnloadCause cause) {
  if (cause == widgets::UnloadCause::kCloseBox) {
    visible = false;
    return false;
  }
  app_.seams.instance_lock.Release();
  return true;
}

void frmMain::OnUnload() {
  core::OrLog(parts_.log, "frmMain : Form_Unload", [&] {
    if (state.Get() == WindowState::kMinimised) return;
    parts_.reg_ini.SaveFormPlace(kSplitter, lblHDrag);
    parts_.reg_ini.SaveColWidths(EventList.name(), EventList.ColWidths());
    parts_.reg_ini.SaveWindowState(*this);
  });
  tray.shown = false;
  // Only when the form has left the list of open forms can the others be closed one after the other.
  unloaded.ConnectForever([log = &parts_.log] { log->CloseAllAndEnd(); });
}

}  // namespace zendrix::admin
