// The check box of a pop-up that says when it may come: ticked while the setting behind it is off. It follows
// the setting when that is changed elsewhere, and keeps what the user has ticked here meanwhile.
#pragma once

#include "core/app_state.h"
#include "core/settings_values.h"
#include "settings/misc_settings.h"
#include "widgets/check_box.h"

namespace zendrix::home {

class NotifyChoice {
 public:
  // Everything outlives the choice.
  NotifyChoice(core::AppState& state, settings::MiscSettings& misc, bool core::Settings::*flag,
               widgets::CheckBox& box);
  NotifyChoice(const NotifyChoice&) = delete;
  NotifyChoice& operator=(const NotifyChoice&) = delete;

  // Shows the setting as it is now.
  void Show();
  // Saves what the box says; everybody who shows the setting is told.
  void Save();

 private:
  void Follow();

  core::AppState& state_;
  settings::MiscSettings& misc_;
  bool core::Settings::*flag_;
  widgets::CheckBox& box_;
  bool seen_ = false;  // the setting as it was shown last
  widgets::Connection changed_;
};

}  // namespace zendrix::home
