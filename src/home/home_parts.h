// What the Home console is put together from. Everything outlives the form.
#pragma once

#include <functional>

#include "alerts/alert_services.h"
#include "control/agent_control.h"
#include "core/app_state.h"
#include "core/error_log.h"
#include "settings/misc_settings.h"
#include "settings/reg_ini.h"
#include "store/reader.h"
#include "widgets/screen.h"

namespace zendrix::home {

// Requests that the refresh cycle and the navigation strip start. One that is not set is not there.
struct HomeServices {
  std::function<void()> CheckUpdate;
  std::function<void()> PostSurvey;
  std::function<void()> ShowTour;
};

struct HomeParts {
  core::AppState& state;
  core::ErrorLog& log;
  store::CMkvlf& gKvlF;
  settings::RegIni& reg_ini;
  settings::MiscSettings& misc;
  control::AgentControl& agent;
  widgets::Screen& screen;
  alerts::AlertServices& alerts;
  HomeServices services;
};

}  // namespace zendrix::home
