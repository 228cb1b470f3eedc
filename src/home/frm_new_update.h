// Offers the new version that lies in the program's folder: install it now, or later. It stays above the
// windows of other programs and never keeps the console from its work.
#pragma once

#include <string>

#include "control/agent_control.h"
#include "core/app_state.h"
#include "core/error_log.h"
#include "home/update_file.h"
#include "settings/misc_settings.h"
#include "widgets/check_box.h"
#include "widgets/form.h"
#include "widgets/label.h"

namespace zendrix::home {

// What looking for a new version and offering it need. Everything outlives them.
struct UpdateNeeds {
  core::AppState& state;
  core::ErrorLog& log;
  settings::MiscSettings& misc;
  control::AgentControl& agent;
  widgets::Form& main;  // unloaded when the installer has started: the console ends
};

class frmNewUpdate : public widgets::Form {
 public:
  explicit frmNewUpdate(UpdateNeeds needs);
  ~frmNewUpdate() override { Unload(); }

  // Stops the Agent and starts the installer. When that has started, the console ends; when not, this window
  // goes, and the Agent stays stopped.
  void lblYes_Click();
  // Later. The check box counts for nothing then.
  void lblNo_Click();
  // The user said yes, and the installer is being started.
  bool Installing() const { return installing_; }

  widgets::Label lblMsg{"lblMsg"};
  widgets::Label lblMsg2{"lblMsg2",
                         "Click 'Install now' to install this upgrade now, or 'Postpone' to install later. "
                         "You will be reminded until it is installed."};
  widgets::CheckBox chkDontAsk{"chkDontAsk", "next time, install automatically"};
  widgets::Label lblYes{"lblYes", "Install now"};
  widgets::Label lblNo{"lblNo", "Postpone"};

 protected:
  void OnLoad() override;
  // While the installer is being started the window stays: it says what is going on.
  bool QueryUnload(widgets::UnloadCause cause) override;

 private:
  void Say(const std::string& text);

  UpdateNeeds needs_;
  UpdateFile file_;
  std::string version_;
  bool installing_ = false;
};

}  // namespace zendrix::home
