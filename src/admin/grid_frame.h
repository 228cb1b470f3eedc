// What frmMain and the units of its window share: the grid and what it counts, the flags that keep loads and
// commands apart, the panels of the status bar, and the timer of the periodic check. frmMain is one; its
// units know the window as this and no more.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "admin/event_grid.h"
#include "admin/event_rows.h"
#include "admin/grid_sort.h"
#include "admin/text_metrics.h"
#include "core/app_state.h"
#include "core/error_log.h"
#include "settings/reg_ini.h"
#include "store/ulist.h"
#include "widgets/form.h"
#include "widgets/panel.h"
#include "widgets/progress_bar.h"
#include "widgets/screen.h"

namespace zendrix::admin {

// Period of the check of the file's size.
inline constexpr std::int64_t kTimer1Ms = 2500;
// Of the description's column until its texts are fitted, in twips.
inline constexpr int kFirstDescriptionWidth = 3945;

// What the Administrator console is put together from. Everything outlives the form.
struct AdminParts {
  core::AppState& state;
  core::ErrorLog& log;
  settings::RegIni& reg_ini;
  widgets::Screen& screen;
  TextMetrics metrics;
  RowCapacity grid_capacity = {};
  // What the grid begins with; empty for the file that the Agent writes.
  std::string first_file = {};
};

// Headings and formats of the columns of both grids.
inline constexpr char kGridFormat[] =
    ">EventID |<Date/Time |<Hostname |<Monitor |>Change | | | |<Description";

class GridFrame {
 public:
  GridFrame(AdminParts parts, widgets::Form& window);
  GridFrame(const GridFrame&) = delete;
  GridFrame& operator=(const GridFrame&) = delete;

  // Commands of the window rest meanwhile.
  bool LoadRuns() const { return UpdateBusy || RefreshBusy; }
  // Whether a command of the window may begin: a click may have been on its way when a modal window opened.
  bool TakesCommands() const { return window.enabled && !LoadRuns(); }

  // The file that the Agent writes, whichever is shown.
  std::string AgentFilePath() const;
  // A click on a heading: sorts by the column behind it; not while a load runs.
  void HeaderClick(EventGrid& grid, int column);
  // Sorts by a key column and draws the arrow on the header that was clicked last.
  void SortGrid(EventGrid& grid, int column);
  // After lines have come; the direction stays.
  void SortAgain();
  void ShowSortArrow(EventGrid& grid, int column, bool up);
  void ClearHeaderPictures();
  // "1 record", "2 records": the lines of the file.
  void ShowRecordCount();
  // The progress indicator, from 0 to 100, and a turn of the message loop.
  void ServeMessages(std::int64_t done, std::int64_t of);

  core::AppState& app;
  core::ErrorLog& log;
  settings::RegIni& reg_ini;
  widgets::Screen& screen;
  const TextMetrics metrics;
  widgets::Form& window;

  std::string GridFilePath;
  std::int32_t GridLineCount = 0;
  std::int64_t GridFileSize = 0;
  store::CUList GridMonitorList, GridHostList, GridChangeList;
  // The distinct descriptions of the loaded lines; made when asked for.
  store::CUList GridDescList() const { return rows.Descriptions(); }
  // What the grids show.
  EventRows rows;
  EventGrid EventList;
  GridSort sort;
  int HeaderColumn = 0;
  bool UpdateBusy = false;
  bool RefreshBusy = false;
  bool BackgroundUpdate = false;
  int SavedTopRow = 0;
  int SavedLeftCol = 0;
  widgets::Panel Msg{"Msg"};
  widgets::Panel Msg2{"Msg2"};
  widgets::Panel Rfrsh{"Rfrsh", "File has changed indicator"};
  widgets::Panel RecCnt{"RecCnt", "Record Count"};
  widgets::ProgressBar DynamicPictureBox{"DynamicPictureBox"};
  // Paused while a load, a filter or a file dialog is at work.
  std::unique_ptr<platform::Timer> Timer1;
};

// Hourglass on, painting off and the grids out of use, for as long as rows are loaded or filtered.
class GridsAtWork {
 public:
  GridsAtWork(GridFrame& frame, std::vector<EventGrid*> grids);
  ~GridsAtWork();
  GridsAtWork(const GridsAtWork&) = delete;
  GridsAtWork& operator=(const GridsAtWork&) = delete;

 private:
  GridFrame& frame_;
  std::vector<EventGrid*> grids_;
};

}  // namespace zendrix::admin
