// The settings of the section Misc that windows show and change while the console runs: one place puts a new
// value into the application's state, saves it and announces it, so that every window, menu and pane that
// shows it stays in step. An announcement comes behind the saving, and also when the value was the same.
#pragma once

#include <string>

#include "core/app_state.h"
#include "core/settings_values.h"
#include "settings/reg_ini.h"
#include "widgets/signal.h"

namespace zendrix::settings {

class MiscSettings {
 public:
  // Both outlive the object.
  MiscSettings(core::AppState& state, RegIni& reg_ini) : state_(state), reg_ini_(reg_ini) {}
  MiscSettings(const MiscSettings&) = delete;
  MiscSettings& operator=(const MiscSettings&) = delete;

  // Flags are saved as "1" and "0", numbers in the user's decimal form. A member that is no single key of the
  // section is a mistake of the caller's: std::logic_error.
  void Set(bool core::Settings::*flag, bool on);
  void Set(std::string core::Settings::*text, const std::string& value);
  void Set(float core::Settings::*number, float value);

  widgets::Signal<> changed;

 private:
  core::AppState& state_;
  RegIni& reg_ini_;
};

}  // namespace zendrix::settings
