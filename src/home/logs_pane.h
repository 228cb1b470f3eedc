// The logs in the Advanced pane: the Agent's and the console's own, one at a time in one list. A log can be
// cleared from view: nothing is deleted, the newest row that the user has seen is remembered, and rows up to
// it are hidden, or ghosted when all are asked for.
#pragma once

#include <functional>
#include <string>

#include "core/app_state.h"
#include "core/error_log.h"
#include "settings/misc_settings.h"
#include "widgets/label.h"
#include "widgets/list_view.h"
#include "widgets/option_button.h"
#include "widgets/screen.h"

namespace zendrix::home {

// Everything outlives the pane.
struct LogsNeeds {
  core::AppState& state;
  core::ErrorLog& log;
  widgets::Screen& screen;
  settings::MiscSettings& misc;
  std::function<void()> CheckRiskLevel;  // after anything that changes the list
};

class LogsPane {
 public:
  explicit LogsPane(LogsNeeds needs);
  LogsPane(const LogsPane&) = delete;
  LogsPane& operator=(const LogsPane&) = delete;

  void CreateHeaderlvAgErrLog();
  // What selecting the pane runs. Rows that are listed already stay as they are.
  void FillAgentFra();
  // Add to the list; a row whose key is there already is skipped.
  void LoadlvAgErrLog();
  void LoadlvUIErrLog();
  void ClearLogList();
  void aClearAll_Click();
  void aShowAll_Click();
  void alvAgErrLog_ItemClick(widgets::ListView::Slot item);

  // Rows from before the clear mark are listed.
  bool ShowAllAgentLog = false;
  bool ShowAllUILog = false;

  widgets::OptionButton aAgStatus{"aAgStatus", "Monitoring Status Log"};
  widgets::OptionButton aUIError{"aUIError", "Home Edition Log"};
  widgets::ListView alvAgErrLog{"alvAgErrLog"};
  widgets::Label aDesc{"aDesc"};
  widgets::Label aClearAll{"aClearAll", "Clear All"};
  widgets::Label aShowAll{"aShowAll", "Show All"};

 private:
  struct Log;

  Log SelectedLog();
  void ShowSelectedLog();
  void LoadSelectedLog();
  Log AgentLog();
  Log OwnLog();
  void Load(const Log& log);
  std::string UtcOf(const std::string& date_time) const;
  std::string GeneralText() const;

  LogsNeeds needs_;
  widgets::OptionGroup which_{&aAgStatus, &aUIError};
};

}  // namespace zendrix::home
