// The two small windows that reach a user who does not see the main window: frmPopUpMsg for an intrusion,
// frmNotifyMsg for a day without one. There is at most one of each. They stand above all windows, never take
// the keyboard, and stay until the user acts.
//
// Nothing here serves the event loop: the alert list asks while it holds a cursor on the event table.
#pragma once

#include "core/app_state.h"
#include "core/error_log.h"
#include "home/frm_notify_msg.h"
#include "home/frm_pop_up_msg.h"
#include "home/main_window.h"
#include "settings/misc_settings.h"
#include "store/event_table.h"
#include "widgets/reopened_window.h"

namespace zendrix::home {

class AlertPopUps {
 public:
  // Everything outlives the pop-ups.
  AlertPopUps(core::AppState& state, core::ErrorLog& log, settings::MiscSettings& misc, MainWindow& window)
      : app_(state), log_(log), misc_(misc), window_(window) {}
  AlertPopUps(const AlertPopUps&) = delete;
  AlertPopUps& operator=(const AlertPopUps&) = delete;

  // Decides on a pop-up for the alert under the cursor, and shows it; one that is open already takes the
  // alert over.
  void ShowAlertPopUp(const store::EventCursor& row);
  // The daily notice.
  void ShowNotification();

  // The windows, or null; they may have unloaded.
  frmPopUpMsg* pop_up() { return pop_up_.get(); }
  frmNotifyMsg* notice() { return notice_.get(); }

 private:
  void Show(widgets::Form& form);

  core::AppState& app_;
  core::ErrorLog& log_;
  settings::MiscSettings& misc_;
  MainWindow& window_;
  widgets::Reopened<frmPopUpMsg> pop_up_;
  widgets::Reopened<frmNotifyMsg> notice_;
};

}  // namespace zendrix::home
