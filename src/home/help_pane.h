// The Help pane: which program this is, and on what terms.
#pragma once

#include "core/app_state.h"
#include "core/error_log.h"
#include "widgets/label.h"

namespace zendrix::home {

// Everything outlives the pane.
struct HelpNeeds {
  core::AppState& state;
  core::ErrorLog& log;
};

class HelpPane {
 public:
  explicit HelpPane(HelpNeeds needs) : needs_(needs) {}
  HelpPane(const HelpPane&) = delete;
  HelpPane& operator=(const HelpPane&) = delete;

  // What selecting the pane runs.
  void FillHelpFra();

  widgets::Label htopDesc{"htopDesc"};
  widgets::Label hAppTitle{"hAppTitle"};
  widgets::Label hVersion{"hVersion"};
  widgets::Label hDescription{"hDescription"};
  widgets::Label hDisclaimer{"hDisclaimer"};

 private:
  HelpNeeds needs_;
};

}  // namespace zendrix::home
