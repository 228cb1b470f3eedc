// frmNotifyMsg: says once a day to a user who does not see the main window that there was no intrusion. It
// stays until the user acts.
#pragma once

#include "core/app_state.h"
#include "home/notify_choice.h"
#include "settings/misc_settings.h"
#include "widgets/check_box.h"
#include "widgets/form.h"
#include "widgets/label.h"

namespace zendrix::home {

class frmNotifyMsg : public widgets::Form {
 public:
  // Everything outlives the form.
  frmNotifyMsg(core::AppState& app, settings::MiscSettings& misc);
  ~frmNotifyMsg() override { Unload(); }

  // Says it as of now; a notice that is still open from the day before is told anew.
  void ApplyTexts();
  // Saves what the check box says and goes. Closed in any other way, the window saves nothing.
  void lblClose_Click();

  widgets::Label lblTitle{"lblTitle", "No intrusions detected"};
  widgets::Label lblMsg{"lblMsg", "There has been no intrusions in the last 24 hours"};
  widgets::CheckBox chkNotify{"chkNotify", "Don't show me this message again"};
  widgets::Label lblClose{"lblClose", "Dismiss"};

 private:
  void OnLoad() override;

  core::AppState& app_;
  NotifyChoice choice_;
};

}  // namespace zendrix::home
