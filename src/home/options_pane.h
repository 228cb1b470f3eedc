// The Options pane: what a home user can set.
#pragma once

#include <cstdint>

#include "core/app_state.h"
#include "core/error_log.h"
#include "home/status.h"
#include "widgets/image.h"
#include "widgets/label.h"
#include "widgets/slider.h"

namespace zendrix::home {

// Everything outlives the pane.
struct OptionsNeeds {
  core::AppState& state;
  core::ErrorLog& log;
  StatusRow& row;          // that of the Summary pane
  bool& AttentionPending;  // something new needs the user
};

class OptionsPane {
 public:
  explicit OptionsPane(OptionsNeeds needs);
  OptionsPane(const OptionsPane&) = delete;
  OptionsPane& operator=(const OptionsPane&) = delete;

  // What selecting the pane runs.
  void FillEmailFra() { CheckEmlSta(); }
  // The status of the e-mail settings: 1 good, 2 needs attention.
  std::int16_t CheckEmlSta();

  // The next incomplete result draws attention, once.
  bool EmailJustSaved = true;

  widgets::Label etopDesc{"etopDesc"};
  widgets::Label eTitleDesc{"eTitleDesc"};
  widgets::Image StaImg{"StaImg(3)"};
  widgets::Slider eSbRiskLevel{"eSbRiskLevel", 0, 100};

 private:
  OptionsNeeds needs_;
};

}  // namespace zendrix::home
