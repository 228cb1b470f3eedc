// frmPopUpMsg: the pop-up that reports an intrusion to a user who does not see the main window, and leads to
// it. It stays until the user acts; then its check box decides whether blocked events are reported too.
#pragma once

#include <memory>
#include <string>

#include "core/app_state.h"
#include "core/error_log.h"
#include "home/main_window.h"
#include "home/notify_choice.h"
#include "settings/misc_settings.h"
#include "widgets/check_box.h"
#include "widgets/form.h"
#include "widgets/label.h"

namespace zendrix::home {

class frmPopUpMsg : public widgets::Form {
 public:
  // Everything outlives the form.
  frmPopUpMsg(core::AppState& app, core::ErrorLog& log, settings::MiscSettings& misc, MainWindow& window);
  ~frmPopUpMsg() override { Unload(); }

  // Shows the alert in the main window, unless something modal is open there, and goes.
  void lblDetails_Click();
  void lblClose_Click() { Unload(); }

  // "K" and the ID of the alert's row: its key in the alert list.
  std::string Key;

  widgets::Label lblTitle{"lblTitle", "Alert Status"};
  widgets::Label lblMsg{"lblMsg", "Suspicious Event Alert"};
  widgets::CheckBox chkNotify{"chkNotify",
                              "Only notify me when Zendrix is unable to block a suspicious event"};
  widgets::Label lblDetails{"lblDetails", "[Details ]"};
  widgets::Label lblClose{"lblClose", "[Close Window ]"};

 private:
  void OnLoad() override;
  void OnUnload() override;

  core::AppState& app_;
  core::ErrorLog& log_;
  MainWindow& window_;
  NotifyChoice choice_;
  std::shared_ptr<void> alive_ = std::make_shared<char>();
};

}  // namespace zendrix::home
