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
// Twips that the path keeps clear of the panel's edge.
constexpr int kPanelMargin = 115;
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
      GridFrame(std::move(parts), *this),
      loader_(app.seams.files, {rows, EventList, GridMonitorList, GridHostList, GridChangeList}) {
  Msg.width = 6000;
  lblRootWarning.visible = app.seams.host.RunsAsRoot();
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
  Timer1 = app.seams.timers.MakeTimer([this] { Timer1_Timer(); });
  Timer2_ = app.seams.timers.MakeTimer([this] { Timer2_Timer(); });
}

std::string frmMain::DefaultPath() const {
  return platform::JoinPath(app.ProgramFolder, kMonitoringFile);
}

void frmMain::Form_Load() {
  core::OrLog(log, "frmMain : Form_Load", [&] {
    reg_ini.LoadWindowState(*this);
    reg_ini.LoadFormPlace(kSplitter, lblHDrag);
  });
  DateOrder = app.DateOrder;
  GridFilePath = DefaultPath();
  Timer1->Stop();
  title = app.ProductName;
  MnHAbout.caption = "About " + app.ProductName;
  HeadAndEmptyGrid();
  bool saved_widths = false;
  core::OrLog(log, "frmMain : Form_Load", [&] {
    std::vector<int> widths = EventList.ColWidths();
    saved_widths = reg_ini.LoadColWidths(EventList.name(), widths);
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
  Timer1->Start(kTimer1Ms);
  tray.SetTip(app.ProductName);
  tray.shown = true;
  if (Form* splash = app.forms.Find("frmSplash")) splash->Unload();
}

void frmMain::ShowPath() {
  path_shown_ = true;
  const int pixels = (Msg.width - kPanelMargin) / metrics.twips_per_pixel;
  // Paths are compacted by the rules of the other separator.
  const std::string path = Swapped(core::PathText(GridFilePath), '/', '\\');
  Msg.text = Swapped(core::CompactPath(path, pixels, metrics.pixels), '\\', '/');
}

void frmMain::AutoSizeColumns() {
  const std::string count = RecCnt.text;
  RecCnt.text = std::string("Adjusting...");
  screen.MousePointer = widgets::kPointerHourglass;
  {
    const widgets::PaintingPause pause(EventList);
    for (int column = 0; column <= EventList.Cols() - 3; ++column) {
      if (!IsInner(column)) SizeColumn(column);
    }
    HideInnerColumns();
    RecCnt.text = count;
  }
  screen.MousePointer = widgets::kPointerDefault;
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
  for (const auto& [name, value] : app.settings.ColumnStates) {
    const int column = ColumnCodeOfHeader(name);
    if (column == kUnhandledHeader) continue;
    if (value == "0")
      EventList.SetColWidth(column, 0);
    else if (EventList.column(column).width == 0)
      SizeColumn(column);
  }
  HideInnerColumns();
}

void frmMain::EventList_HeaderClick(int column) {
  if (column < 1 || LoadRuns()) return;
  HeaderColumn = column;
  SortGrid(EventList, GridSort::KeyOfHeader(column));
}

void frmMain::Timer1_Timer() {
  core::OrLog(log, "frmMain.frm : Timer1_Timer", [&] {
    if (FileIsThere()) {
      const std::int64_t size = core::ValueOrRaise(app.seams.files.Size(GridFilePath));
      if (size != TimerSeenSize) {
        TimerSeenSize = size;
        const widgets::PaintingPause pause(EventList);
        BackgroundUpdate = true;
        UpgradeGrid();
        BackgroundUpdate = false;
        if (sort.SortColumn > 0) {
          screen.MousePointer = widgets::kPointerHourglass;
          SortAgain();
          screen.MousePointer = widgets::kPointerDefault;
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
  if (enabled && control::WarningMessage(app)) Unload(widgets::UnloadCause::kCode);
}

void frmMain::MnVRefresh_Click() {
  if (!LoadRuns()) ResetClick();
}

void frmMain::MnVLogs_Click() {
  if (!enabled || LoadRuns()) return;
  frmLog& viewer = logs_.Open(app.host(), LogNeeds{app, log, screen, metrics});
  app.host().Show(viewer);
  viewer.bring_forward.Raise();
}

void frmMain::MnHAbout_Click() {
  core::frmAbout about(app);
  app.host().ShowModal(about, this);
}

bool frmMain::QueryUnload(widgets::UnloadCause cause) {
  if (cause == widgets::UnloadCause::kCloseBox) {
    visible = false;
    return false;
  }
  app.seams.instance_lock.Release();
  return true;
}

void frmMain::OnUnload() {
  core::OrLog(log, "frmMain : Form_Unload", [&] {
    if (state.Get() == WindowState::kMinimised) return;
    reg_ini.SaveFormPlace(kSplitter, lblHDrag);
    reg_ini.SaveColWidths(EventList.name(), EventList.ColWidths());
    reg_ini.SaveWindowState(*this);
  });
  tray.shown = false;
  // Only when the form has left the list of open forms can the others be closed one after the other.
  unloaded.ConnectForever([log = &log] { log->CloseAllAndEnd(); });
}

}  // namespace zendrix::admin
