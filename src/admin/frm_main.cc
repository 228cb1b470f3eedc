#include "admin/frm_main.h"

#include <algorithm>
#include <cmath>

#include "admin/header_codes.h"
#include "control/agent_control.h"
#include "core/about_window.h"
#include "core/fit_text.h"
#include "core/guards.h"
#include "core/path_text.h"
#include "widgets/busy_mark.h"
#include "widgets/wait_pointer.h"

namespace zendrix::admin {

using widgets::WindowState;

namespace {

// Twips that the path keeps clear of the panel's edge.
constexpr int kPanelMargin = 115;
constexpr int kUnhandledHeader = 999;

settings::Place PlaceOf(const widgets::Splitter& bar) {
  return {bar.Top, bar.Left, bar.Height, bar.Width};
}

float Ratio(int top, int height) {
  return height > 0 ? static_cast<float>(top) / static_cast<float>(height) : 0;
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
  EventList.mouse_used.ConnectForever([this] { EventList.HideInnerColumns(); });
  EventList.scrolled.ConnectForever([this] {
    SavedTopRow = EventList.TopRow;
    SavedLeftCol = EventList.LeftCol;
  });
  Msg.width.changed.ConnectForever([this] {
    if (path_shown_ && !files.Deleting()) ShowPath();
  });
  lblHDrag.dragged.ConnectForever([this](int y) { lblHDrag_MouseMove(y); });
  tray.mouse.ConnectForever([this](int message) { Tray_Mouse(message); });
  MnFExit.begins_group = true;
  TbarCopy.begins_group = true;
  timeline.TbarChart.begins_group = true;
  MnFExit.shortcut = "Ctrl+Q";
  MnVLogs.shortcut = "Ctrl+L";
  MnVRefresh.shortcut = "F5";
  MnFExit.clicked.ConnectForever([this] { MnFExit_Click(); });
  // Neither has a function; what is selected in a table is copied by the table's own key.
  for (widgets::MenuItem* item : {&TbarCopy, &TbarPaste}) {
    item->clicked.ConnectForever([this] {
      if (TakesCommands()) screen.beep.Raise();
    });
  }
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
  Timer2 = app.seams.timers.MakeTimer([this] { Timer2_Timer(); });
}

void frmMain::Form_Load() {
  core::OrLog(log, "frmMain : Form_Load", [&] {
    reg_ini.LoadWindowState(*this);
    settings::Place place = PlaceOf(lblHDrag);
    reg_ini.LoadFormPlace(lblHDrag.name(), place);
    lblHDrag.Top = place.Top;
    lblHDrag.Left = place.Left;
    lblHDrag.Width = place.Width;
    lblHDrag.Height = place.Height;
  });
  SplitRatio = Ratio(lblHDrag.Top, FormHeight());
  DateOrder = app.DateOrder;
  if (GridFilePath.empty()) GridFilePath = AgentFilePath();
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
  {
    // Another start of the program may bring the window forward in the middle of the load.
    const widgets::BusyMark busy(RefreshBusy);
    DisplayData("");
  }
  if (!saved_widths) AutoSizeColumns();
  ApplyColumnSettings();
  ClearHeaderPictures();
  ShowSortArrow(EventList, kColDateTime, false);
  SavedTopRow = SavedLeftCol = 1;
  replay.InitSessionCursor();
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
    EventList.HideInnerColumns();
    RecCnt.text = count;
  }
  screen.MousePointer = widgets::kPointerDefault;
}

void frmMain::SizeColumn(int column) {
  const int unit = static_cast<int>(std::floor(EventList.FontWidth)) + 1;
  const std::size_t longest =
      std::max(EventList.column(column).heading.size(), EventList.LongestText(column));
  // No screen is wider, and the text may be millions of characters long.
  constexpr std::size_t kMostCharacters = 10'000;
  EventList.SetColWidth(column, (static_cast<int>(std::min(longest, kMostCharacters)) + 1) * unit * 10);
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
  EventList.HideInnerColumns();
}

void frmMain::EventList_HeaderClick(int column) {
  HeaderClick(EventList, column);
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
          const widgets::WaitPointer wait(screen);
          SortAgain();
        }
      }
    }
    timeline.Tick();
    if (NotablePending && Timer2->Running() && visible) {
      NotablePending = false;
      Timer2->Stop();
      tray.icon = widgets::TrayIcon::kForm;
      replay.GoToNotable();
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

int frmMain::FormHeight() const {
  return room_.height > 0 ? room_.height : height * metrics.twips_per_pixel;
}

void frmMain::Form_Resize(const PaneRoom& room) {
  room_ = room;
  LayOut();
}

void frmMain::LayOut() {
  if (state.Get() == WindowState::kMinimised || room_ == PaneRoom()) return;
  const PanePlaces places = LayOutPanes(room_, lblHDrag.Top, lblHDrag.Height);
  lblHDrag.Left = places.lblHDrag.left;
  lblHDrag.Width = places.lblHDrag.width;
  panes = places;
}

void frmMain::lblHDrag_MouseMove(int y) {
  const int dragged_to = DraggedSplitterTop(lblHDrag.Top, y, FormHeight());
  if (dragged_to == lblHDrag.Top) return;
  lblHDrag.Top = dragged_to;
  SplitRatio = Ratio(dragged_to, FormHeight());
  LayOut();
}

// What rests while a filter is shown.
void frmMain::SetUsable(bool usable) {
  replay.SetUsable(usable);
  find.TbarFind.enabled = usable;
}

void frmMain::ShowWindow(WindowState wanted) {
  state = wanted;
  LayOut();
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
  if (enabled || visible) BringUp();
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
  if (TakesCommands()) ResetClick();
}

void frmMain::MnVLogs_Click() {
  if (!TakesCommands()) return;
  frmLog& viewer = logs_.Open(app.host(), LogNeeds{app, log, screen, metrics});
  app.host().Show(viewer);
  viewer.BringUp();
}

void frmMain::MnHAbout_Click() {
  if (!enabled) return;
  core::frmAbout about(app);
  app.host().ShowModal(about, this);
}

bool frmMain::QueryUnload(widgets::UnloadCause cause) {
  if (cause == widgets::UnloadCause::kCloseBox) {
    // Where no desktop shows the icon, a hidden window could not be brought back.
    if (tray.hosted())
      visible = false;
    else
      state = WindowState::kMinimised;
    return false;
  }
  for (const char* name : {"frmFind", "frmFilters"})
    if (Form* const other = app.forms.Find(name)) other->Unload();
  app.seams.instance_lock.Release();
  return true;
}

void frmMain::OnUnload() {
  files.Form_Unload();
  core::OrLog(log, "frmMain : Form_Unload", [&] {
    if (state.Get() == WindowState::kMinimised) return;
    reg_ini.SaveFormPlace(lblHDrag.name(), PlaceOf(lblHDrag));
    reg_ini.SaveColWidths(EventList.name(), EventList.ColWidths());
    reg_ini.SaveWindowState(*this);
  });
  tray.shown = false;
  // Only when the form has left the list of open forms can the others be closed one after the other.
  unloaded.ConnectForever([log = &log] { log->CloseAllAndEnd(); });
}

}  // namespace zendrix::admin
