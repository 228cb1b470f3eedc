#include "app/console.h"

#include <QApplication>
#include <QSocketNotifier>

#include "admin/frm_main.h"
#include "alerts/console_alerts.h"
#include "app/end_signals.h"
#include "core/error_log.h"
#include "core/initial.h"
#include "core/splash.h"
#include "home/frm_new_ui.h"
#include "platform/linux/linux_clock.h"
#include "platform/linux/linux_family.h"
#include "platform/linux/linux_files.h"
#include "platform/linux/linux_host_info.h"
#include "platform/linux/linux_instance_lock.h"
#include "platform/linux/linux_locale.h"
#include "platform/linux/linux_process.h"
#include "platform/linux/linux_service_manager.h"
#include "platform/linux/linux_shell.h"
#include "qt/admin_window.h"
#include "qt/bind_screen.h"
#include "qt/home_window.h"
#include "qt/qt_dialogs.h"
#include "qt/qt_loop.h"
#include "qt/small_windows.h"
#include "settings/reg_ini.h"
#include "store/descriptions.h"
#include "store/reader.h"

namespace zendrix::app {

struct Console::Parts {
  explicit Parts(const Options& the_options);

  core::MainHooks Hooks();
  void WatchLock();
  void ComeForward();
  void End();
  void OpenHome();
  void OpenAdministrator();
  void ShowAbout();

  Options options;
  platform::LinuxFiles files;
  platform::LinuxClock clock;
  platform::LinuxLocale locale;
  platform::LinuxHostInfo host;
  platform::LinuxShell shell;
  platform::LinuxInstanceLock instance_lock;
  platform::LinuxServiceManager services;
  qt::QtMessageLoop loop;
  qt::QtTimers timers;
  qt::QtMessageBoxes message_boxes;
  qt::QtFileDialogs file_dialogs;
  platform::LinuxFamily family;
  platform::LinuxProcess process;
  platform::Seams seams;

  core::AppState state;
  core::ErrorLog log;
  settings::RegIni reg_ini;
  widgets::Screen screen;
  control::AgentControl agent;
  alerts::ConsoleAlerts alerts;
  store::CMkvlf gKvlF;

  qt::SlotGuard guard;
  qt::Pictures pictures;
  qt::Theme theme;
  qt::Toolkit kit;
  QObject anchor;
  std::unique_ptr<QSocketNotifier> lock_notifier;
  std::unique_ptr<EndSignals> end_signals;

  // A window stands to the right of its form, so that it goes first.
  std::unique_ptr<home::frmNewUI> home_form;
  std::unique_ptr<admin::frmMain> admin_form;
  std::unique_ptr<qt::SplashWindow> splash_window;
  std::unique_ptr<qt::HomeWindow> home_window;
  std::unique_ptr<qt::AdminWindow> admin_window;
};

Console::Parts::Parts(const Options& the_options)
    : options(the_options),
      family(options.exe_path.substr(0, options.exe_path.rfind('/'))),
      seams{files, clock,  locale,        host,         shell,  instance_lock, services,
            loop,  timers, message_boxes, file_dialogs, family, process},
      state(seams),
      log(state),
      reg_ini(state, log),
      agent(state, screen),
      alerts(state, log, [this] { return gKvlF.EventTable.get(); }),
      gKvlF(state, log, [this](int percent) { core::SetSplashProgress(state.forms, percent); }),
      guard(log),
      pictures(options.folder),
      theme(pictures),
      kit{guard, pictures, theme} {
  timers.SetGuard(&guard);
  message_boxes.SetForms(&state.forms);
  file_dialogs.SetForms(&state.forms);
  qt::BindScreen(screen, &anchor);
  state.ProductEdition = options.edition;
  state.ProgramFolder = options.folder;
  family.ConfigureQuarantine(options.folder, false);
  state.ExeName = options.exe_name;
  // The same executable is the same program, whoever starts it and from wherever; its namesake in another
  // folder is another one.
  state.InstanceMutex = "Global\\" + options.exe_path;
}

core::MainHooks Console::Parts::Hooks() {
  core::MainHooks hooks;
  hooks.ReadRegInfo = [this] { reg_ini.ReadRegInfo(); };
  hooks.LoadDescArrays = [this] { store::LoadDescArrays(state, log); };
  hooks.InitReader = [this](const std::string& path) { gKvlF.InitClass(path); };
  hooks.MonitorNames = [this] {
    std::vector<std::string> names;
    for (const auto& entry : gKvlF.MonitorList.ColList()) names.push_back(entry.item);
    return names;
  };
  hooks.SaveSetwChk = [this](const std::string& section, const std::string& key, const std::string& value) {
    reg_ini.SaveSetwChk(section, key, value);
  };
  hooks.FileVersion = [](const std::string&) { return std::string(); };
  hooks.ShowSplash = [this](core::frmSplash& splash) {
    WatchLock();
    splash_window = std::make_unique<qt::SplashWindow>(splash, kit);
    splash_window->show();
    QApplication::processEvents();
  };
  hooks.ShowMessageWindow = [this](core::frmMsg& message) {
    const qt::ModalScope modal(&state.forms);
    qt::ShowMessageWindow(message, kit);
  };
  hooks.Show_frmMain = [this] { OpenAdministrator(); };
  hooks.Show_frmNewUI = [this] { OpenHome(); };
  hooks.Show_frmTour = [] {};
  return hooks;
}

void Console::Parts::OpenHome() {
  home_form = std::make_unique<home::frmNewUI>(
      home::HomeParts{state, log, gKvlF, reg_ini, agent, screen, alerts, home::HomeServices{}});
  home_window = std::make_unique<qt::HomeWindow>(*home_form, kit);
  home_form->Form_Load();
  home_form->visible = true;
  home_form->Form_Activate();
}

void Console::Parts::OpenAdministrator() {
  admin::AdminParts parts{state, log, reg_ini, screen, qt::GridMetrics(), [this] { ShowAbout(); }};
  admin_form = std::make_unique<admin::frmMain>(std::move(parts));
  admin_window = std::make_unique<qt::AdminWindow>(*admin_form, kit);
  admin_form->Form_Load();
  admin_form->visible = true;
}

void Console::Parts::ShowAbout() {
  const qt::ModalScope modal(&state.forms);
  core::frmAbout about(state);
  qt::ShowAboutWindow(about, kit);
}

// The lock's descriptor exists once the lock is held, which is before the first window.
void Console::Parts::WatchLock() {
  if (lock_notifier || instance_lock.Descriptor() < 0) return;
  instance_lock.OnAskedToComeForward([this] { ComeForward(); });
  lock_notifier = std::make_unique<QSocketNotifier>(instance_lock.Descriptor(), QSocketNotifier::Read);
  QObject::connect(lock_notifier.get(), &QSocketNotifier::activated, &anchor,
                   [this] { guard("InstanceLock", [this] { instance_lock.HandleRequests(); }); });
}

void Console::Parts::ComeForward() {
  if (home_form && home_form->loaded()) home_form->Tray_Mouse(widgets::kTrayLeftDouble);
  if (admin_form && admin_form->loaded()) admin_form->Tray_Mouse(widgets::kTrayLeftUp);
}

void Console::Parts::End() {
  widgets::Form* main = home_form ? static_cast<widgets::Form*>(home_form.get()) : admin_form.get();
  guard("EndSignals", [&] {
    if (main && main->loaded())
      main->Unload(widgets::UnloadCause::kCode);
    else
      log.CloseAllAndEnd();
  });
}

Console::Console(const Options& options) : parts_(std::make_unique<Parts>(options)) {}

Console::~Console() = default;

void Console::Start() {
  parts_->end_signals = std::make_unique<EndSignals>([this] { parts_->End(); });
  parts_->guard("Initial : Main", [this] {
    core::Main(parts_->state, parts_->log, parts_->options.command_line, parts_->Hooks());
    parts_->splash_window.reset();
    parts_->WatchLock();
  });
}

core::AppState& Console::state() {
  return parts_->state;
}

home::frmNewUI* Console::home() {
  return parts_->home_form.get();
}

admin::frmMain* Console::administrator() {
  return parts_->admin_form.get();
}

}  // namespace zendrix::app
