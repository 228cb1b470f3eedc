// The logs in the Advanced pane.
#pragma once

#include "core/app_state.h"
#include "core/error_log.h"
#include "widgets/label.h"

namespace zendrix::home {

// Everything outlives the pane.
struct LogsNeeds {
  core::AppState& state;
  core::ErrorLog& log;
};

class LogsPane {
 public:
  explicit LogsPane(LogsNeeds needs);
  LogsPane(const LogsPane&) = delete;
  LogsPane& operator=(const LogsPane&) = delete;

  // What selecting the pane runs.
  void FillAgentFra();

  widgets::Label aDesc{"aDesc"};

 private:
  LogsNeeds needs_;
};

}  // namespace zendrix::home
