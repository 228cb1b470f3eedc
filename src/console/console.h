// The program put together, without a toolkit: reader, alert logic, control of the Agent and the main
// window's form of either edition, and the start that opens it. The executable gives it the real platform and
// windows, the inspector an overlay and no windows, tests the twins; what happens in between is the same for
// all three.
//
// Everything lives until the object goes, the forms first. `state` and `log` outlive it.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "admin/frm_main.h"
#include "alerts/console_alerts.h"
#include "control/agent_control.h"
#include "core/app_state.h"
#include "core/error_log.h"
#include "core/initial.h"
#include "home/frm_new_ui.h"
#include "home/portal_windows.h"
#include "home/self_update.h"
#include "settings/misc_settings.h"
#include "settings/reg_ini.h"
#include "store/reader.h"
#include "widgets/screen.h"

namespace zendrix::console {

class Console {
 public:
  // `metrics` gives the widths of texts in the font of the Administrator's grid; it is asked when that form
  // comes into being.
  Console(core::AppState& state, core::ErrorLog& log, std::function<admin::TextMetrics()> metrics);
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;

  // The entry procedure. When it returns, the main window is open; the process then lives in the event loop.
  // ProductEdition, ProgramFolder, ExeName and InstanceMutex of the state are set before.
  void Start(const std::string& command_line);
  // Another start of the program asked for the window.
  void ComeForward();
  // Ends the program as if its main window were closed for good; with none, whatever is open is closed.
  void End();

  // What the Administrator's grid begins with instead of the Agent's file; empty for that one.
  std::string grid_file;

  widgets::Screen& screen() { return screen_; }
  settings::RegIni& reg_ini() { return reg_ini_; }
  settings::MiscSettings& misc() { return misc_; }
  alerts::ConsoleAlerts& alerts() { return alerts_; }
  store::CMkvlf& gKvlF() { return gKvlF_; }
  // Self-update, tour and survey of the Home edition; null in the other one.
  home::SelfUpdate* update() { return update_.get(); }
  home::PortalWindows* portal() { return portal_.get(); }
  // The main window's form; null in the other edition and before the start has come to it.
  home::frmNewUI* home() { return home_.get(); }
  admin::frmMain* administrator() { return administrator_.get(); }

 private:
  core::MainHooks Hooks();
  home::frmNewUI& MakeHome();
  admin::frmMain& MakeAdministrator();

  core::AppState& state_;
  core::ErrorLog& log_;
  std::function<admin::TextMetrics()> metrics_;
  settings::RegIni reg_ini_;
  settings::MiscSettings misc_;
  widgets::Screen screen_;
  control::AgentControl agent_;
  store::CMkvlf gKvlF_;
  alerts::ConsoleAlerts alerts_;
  std::unique_ptr<home::frmNewUI> home_;
  std::unique_ptr<home::SelfUpdate> update_;
  std::unique_ptr<home::PortalWindows> portal_;
  std::unique_ptr<admin::frmMain> administrator_;
};

}  // namespace zendrix::console
