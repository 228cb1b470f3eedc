// frmLog: the log viewer. It shows one event-log file, the Agent's or the console's own, newest record first,
// and pages through it: VScroll1 stands at the number of the record on top. The reading is CLog's; the form
// holds the table that it gives until it unloads or shows another file. A page is as long as the window has
// room for, and is measured again when that changes.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "admin/text_metrics.h"
#include "core/app_state.h"
#include "core/error_log.h"
#include "store/log_reader.h"
#include "widgets/form.h"
#include "widgets/menu.h"
#include "widgets/page_grid.h"
#include "widgets/panel.h"
#include "widgets/screen.h"
#include "widgets/scroll_bar.h"

namespace zendrix::admin {

// Everything but the metrics outlives the form.
struct LogNeeds {
  core::AppState& state;
  core::ErrorLog& log;
  widgets::Screen& screen;
  TextMetrics metrics;
};

class frmLog : public widgets::Form {
 public:
  explicit frmLog(LogNeeds needs);
  ~frmLog() override { Unload(); }

  // Asks for a file and shows it; a cancel leaves everything as it is.
  void OpenLog();
  // Shows the file from its newest record on, or says that it cannot and empties the grid.
  void LoadLog(const std::string& path);
  // The records from number `first`, counted from 1, to `first` + `count`, as far as there are any.
  void FillGrid(std::int32_t first, std::int32_t count);
  // Sets LogPageRows, and VScroll1 to the number of records. More than 32767 of them are an error, which is
  // logged; VScroll1 then stays as it is.
  void MeasurePage();
  void ResetLogGrid();
  void VScroll1_Change();
  void Form_Resize();

  std::int32_t LogFirstRow = 0;  // number of the record on top, from 1; 0 without a log
  std::int32_t LogPageRows = 0;  // records that fit on a page
  std::string LogPath;
  // Null without a log.
  std::shared_ptr<const store::EventLogTable> LogRecords;
  // Set once FillGrid has run; VScroll1 is ignored before.
  bool LogLoaded = false;

  // The button of the toolbar Tbar1, by its key.
  widgets::MenuItem FOpen{"FOpen", "&Open..."};
  widgets::PageGrid ErrLog{"ErrLog"};
  widgets::ScrollBar VScroll1{"VScroll1"};
  widgets::Panel SBar1{"SBar1"};

 private:
  void OnLoad() override;
  void OnUnload() override;
  void CloseLog();
  void ShowPath();
  void FitColumns();

  LogNeeds needs_;
  std::string shown_path_;  // what SBar1 stands for; empty for nothing
};

}  // namespace zendrix::admin
