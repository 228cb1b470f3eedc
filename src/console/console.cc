#include "console/console.h"

#include <utility>

#include "core/initial.h"
#include "core/splash.h"
#include "platform/pe_version.h"
#include "store/descriptions.h"

namespace zendrix::console {

Console::Console(core::AppState& state, core::ErrorLog& log, std::function<admin::TextMetrics()> metrics)
    : state_(state),
      log_(log),
      metrics_(std::move(metrics)),
      reg_ini_(state, log),
      misc_(state, reg_ini_),
      agent_(state, screen_),
      gKvlF_(state, log, [&state](int percent) { core::SetSplashProgress(state.forms, percent); }),
      alerts_(state, log, [this] { return gKvlF_.EventTable; }) {
  state_.seams.instance_lock.OnAskedToComeForward([this] { ComeForward(); });
}

core::MainHooks Console::Hooks() {
  core::MainHooks hooks;
  hooks.ReadRegInfo = [this] { reg_ini_.ReadRegInfo(); };
  hooks.LoadDescArrays = [this] { store::LoadDescArrays(state_, log_); };
  hooks.InitReader = [this](const std::string& path) { gKvlF_.InitClass(path); };
  hooks.MonitorNames = [this] {
    std::vector<std::string> names;
    for (const auto& entry : gKvlF_.MonitorList.ColList()) names.push_back(entry.item);
    return names;
  };
  hooks.RegisterMonitors = [this](const std::vector<std::string>& names) {
    reg_ini_.RegisterMonitors(names);
  };
  hooks.FileVersion = [this](const std::string& path) {
    return platform::PeFileVersion(state_.seams.files, path);
  };
  hooks.frmMain = [this]() -> widgets::Form& { return MakeAdministrator(); };
  hooks.frmNewUI = [this]() -> widgets::Form& { return MakeHome(); };
  hooks.frmTour = [this]() -> widgets::Form* { return &portal_->Tour(); };
  return hooks;
}

home::frmNewUI& Console::MakeHome() {
  home::HomeServices services;
  services.CheckUpdate = [this] { update_->CheckUpdate(); };
  services.PostSurvey = [this] { portal_->TakeSurvey(); };
  services.ShowTour = [this] { portal_->ShowTour(); };
  home_ = std::make_unique<home::frmNewUI>(
      home::HomeParts{state_, log_, gKvlF_, reg_ini_, misc_, agent_, screen_, alerts_, std::move(services)});
  update_ = std::make_unique<home::SelfUpdate>(home::UpdateNeeds{state_, log_, misc_, agent_, *home_});
  portal_ = std::make_unique<home::PortalWindows>(home::TourNeeds{state_, log_, misc_, screen_}, *home_);
  return *home_;
}

admin::frmMain& Console::MakeAdministrator() {
  administrator_ = std::make_unique<admin::frmMain>(
      admin::AdminParts{state_, log_, reg_ini_, screen_, metrics_(), {}, grid_file});
  return *administrator_;
}

void Console::Start(const std::string& command_line) {
  core::Main(state_, log_, command_line, Hooks());
}

void Console::ComeForward() {
  if (home_ && home_->loaded()) home_->ComeForward();
  if (administrator_ && administrator_->loaded()) administrator_->ComeForward();
}

void Console::End() {
  widgets::Form* main = home_ ? static_cast<widgets::Form*>(home_.get()) : administrator_.get();
  if (main && main->loaded())
    main->Unload(widgets::UnloadCause::kCode);
  else
    log_.CloseAllAndEnd();
}

}  // namespace zendrix::console
