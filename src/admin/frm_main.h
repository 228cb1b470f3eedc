// frmMain: the main window of the Administrator edition. Its event grid shows every line of the monitoring
// file, newest first, and follows the file while the Agent appends to it; the frame reads the file by a
// loader of its own and never touches the reader's event table. Closing the window only hides it. Everything
// runs on the one user-interface thread; UpdateBusy, RefreshBusy and the paused Timer1 keep one load out of
// another while messages are served.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "admin/file_commands.h"
#include "admin/frm_log.h"
#include "admin/grid_filter.h"
#include "admin/grid_find.h"
#include "admin/grid_frame.h"
#include "admin/grid_loader.h"
#include "admin/pane_layout.h"
#include "admin/session_replay.h"
#include "admin/timeline.h"
#include "core/root_warning.h"
#include "widgets/label.h"
#include "widgets/menu.h"
#include "widgets/reopened_window.h"
#include "widgets/splitter.h"
#include "widgets/tray.h"

namespace zendrix::admin {

class frmMain : public widgets::Form, public GridFrame {
 public:
  explicit frmMain(AdminParts parts);

  // Everything between construction and the first show.
  void Form_Load();

  void DisplayData(const std::string& status_text);
  void RedisplayData(bool filter_active);
  void Reload();
  void UpgradeGrid();
  void ResetClick();
  void AutoSizeColumns();
  void ApplyColumnSettings();
  void EventList_HeaderClick(int column);

  // The toolkit tells of the room that the window has inside.
  void Form_Resize(const PaneRoom& room);
  void lblHDrag_MouseMove(int y);

  void Timer1_Timer();
  void Timer2_Timer();
  void Tray_Mouse(int message);
  // Another start of the program asked this one to come forward: the window is shown as it was left, only
  // never minimised.
  void ComeForward();
  void mPopRestore_Click();
  void mPopMinimize_Click();
  void mPopMaximize_Click();
  void MnFExit_Click();
  void MnVRefresh_Click();
  // Opens the log viewer beside this window, or brings the one that is open to the front.
  void MnVLogs_Click();
  void MnTOptions_Click();
  void MnHAbout_Click();

  // State.
  std::int64_t TimerSeenSize = 0;
  int DateOrder = 0;
  bool TrayFlashPhase = false;
  bool NotablePending = false;
  // Runs while the icon in the notification area flashes.
  std::unique_ptr<platform::Timer> Timer2;
  // Top of the splitter / height of the form.
  float SplitRatio = 0;
  // Between the grids and the panes under them; here, where it stands until it has been moved.
  widgets::Splitter lblHDrag{"lblHDrag", 6000, 90};
  // Where the panes stand, once the toolkit has told what room there is.
  widgets::Observed<PanePlaces> panes;

  GridFilter filter{*this, [this](bool usable) { SetUsable(usable); }};
  GridFind find{*this, [this] { return filter.Shown(); }};

  // Above the grid; hidden unless the console runs as root.
  widgets::Label lblRootWarning{"lblRootWarning", core::kRootWarning};
  widgets::Tray tray;

  SessionReplay replay{*this, {[this] { find.ResetCellColor(); }}};
  FileCommands files{*this, {[this] { ResetClick(); }, [this] { replay.InitSessionCursor(); }}};

  widgets::MenuItem MnFExit{"MnFExit", "E&xit"};
  widgets::Menu MnFile{"MnFile", "&File", {&files.MnFOpen, &files.MnFSaveAs, &files.MnFDelete, &MnFExit}};
  widgets::Menu MnEdit{"MnEdit", "&Edit", {&find.MnEFind, &find.MnEFindN}};
  Timeline timeline{*this};
  widgets::MenuItem MnVLogs{"MnVLogs", "Logs..."};
  widgets::MenuItem MnVRefresh{"MnVRefresh", "Refresh"};
  widgets::Menu MnView{"MnView", "&View", {&timeline.MnVChart, &MnVLogs, &MnVRefresh}};
  widgets::MenuItem MnTOptions{"MnTOptions", "&Options..."};
  widgets::Menu MnTools{"MnTools", "&Tools", {&filter.MnTQuery, &MnTOptions}};
  widgets::MenuItem MnHAbout{"MnHAbout", ""};
  widgets::Menu MnHelp{"MnHelp", "&Help", {&MnHAbout}};
  // The menu bar.
  const std::vector<widgets::Menu*> menus{&MnFile, &MnEdit, &MnView, &MnTools, &MnHelp};
  // Toolbar buttons, by their keys; their captions are their tips.
  widgets::MenuItem TbarCopy{"Copy", "Copy"};
  widgets::MenuItem TbarPaste{"Paste", "Paste"};
  widgets::MenuItem TbarVLogs{"VLogs", "View Logs"};
  widgets::MenuItem TbarRefresh{"Refresh", "Refresh"};
  widgets::MenuItem TbarOptions{"Options", "Options"};
  const std::vector<widgets::MenuItem*> Tbar{
      &files.TbarOpen,     &files.TbarSave,  &TbarCopy,          &TbarPaste,       &find.TbarFind,
      &timeline.TbarChart, &TbarVLogs,       &TbarRefresh,       &TbarOptions,     &filter.TbarFilter,
      &files.TbarDisable,  &replay.TbarPlay, &replay.TbarStp,    &replay.TbarPrev, &replay.TbarBack,
      &replay.TbarStep,    &replay.TbarNxt,  &replay.TbarNotable};
  widgets::MenuItem mPopRestore{"mPopRestore", "&Restore"};
  widgets::MenuItem mPopMinimize{"mPopMinimize", "&Minimize"};
  widgets::MenuItem mPopMaximize{"mPopMaximize", "&Maximize"};
  widgets::MenuItem mPopExit{"mPopExit", "&Exit"};
  widgets::Menu mPopupSys{"mPopupSys", "&SysTray", {&mPopRestore, &mPopMinimize, &mPopMaximize, &mPopExit}};

 protected:
  void OnLoad() override { Form_Load(); }
  bool QueryUnload(widgets::UnloadCause cause) override;
  void OnUnload() override;

 private:
  void ConnectControls();
  bool FileIsThere();
  void FileMissing();
  void GridIsFull();
  GridLoad NewLoad();
  void AddNewLines(std::int64_t new_size, bool filter_active);
  std::optional<bool> IsMonitorDisplayed(const std::string& monitor) const;
  void RegisterMonitors(const GridLoad& load);
  void NoteArrival();
  void DrawTimeline();
  void ShowPath();
  void SizeColumn(int column);
  void HeadAndEmptyGrid();
  void SetUsable(bool usable);
  void ShowWindow(widgets::WindowState wanted);
  void LayOut();
  int FormHeight() const;

  GridLoader loader_;
  widgets::Reopened<frmLog> logs_;
  PaneRoom room_;
  bool path_shown_ = false;
};

}  // namespace zendrix::admin
