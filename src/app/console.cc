#include "app/console.h"

#include <QApplication>
#include <QSocketNotifier>

#include "app/end_signals.h"
#include "console/console.h"
#include "control/agent_control.h"
#include "core/legible_locale.h"
#include "platform/linux/agent_services.h"
#include "platform/linux/helper_agent_link.h"
#include "platform/linux/linux_act_helper.h"
#include "platform/linux/linux_clock.h"
#include "platform/linux/linux_family.h"
#include "platform/linux/linux_files.h"
#include "platform/linux/linux_host_info.h"
#include "platform/linux/linux_instance_lock.h"
#include "platform/linux/linux_locale.h"
#include "platform/linux/linux_process.h"
#include "platform/linux/linux_service_manager.h"
#include "platform/linux/linux_shell.h"
#include "platform/linux/local_service_manager.h"
#include "platform/linux/user_folders.h"
#include "platform/program_places.h"
#include "qt/admin/frm_main.h"
#include "qt/bind_screen.h"
#include "qt/qt_dialogs.h"
#include "qt/qt_form_host.h"
#include "qt/qt_loop.h"

namespace zendrix::app {
namespace {

std::string FolderOf(const std::string& path) {
  return path.substr(0, path.rfind('/'));
}

}  // namespace

struct Console::Parts {
  explicit Parts(const Options& the_options);

  void Start();
  void WatchLock();

  Options options;
  platform::ProgramPlaces places;
  platform::LinuxFiles disk;
  platform::LayeredFiles layered;
  platform::LinuxClock clock;
  platform::LinuxLocale users_locale;
  core::LegibleLocale locale{users_locale, clock};
  platform::LinuxHostInfo host;
  platform::LinuxShell shell;
  platform::LinuxInstanceLock instance_lock;
  platform::LinuxServiceManager service_manager;
  platform::LocalServiceManager agent;
  platform::AgentServices services{service_manager, agent};
  qt::QtMessageLoop loop;
  qt::QtTimers timers;
  qt::QtMessageBoxes message_boxes;
  qt::QtFileDialogs file_dialogs;
  qt::Pictures pictures;
  qt::Theme theme;
  qt::QtColourDialogs colour_dialogs{theme};
  platform::LinuxActHelper act_helper;
  platform::HelperAgentLink agent_link{act_helper, &timers};
  platform::LinuxFamily family;
  platform::LinuxProcess process;
  platform::Seams seams;

  core::AppState state;
  core::ErrorLog log;
  qt::SlotGuard guard;
  console::Console console;
  QObject anchor;
  std::unique_ptr<QSocketNotifier> lock_notifier;
  std::unique_ptr<EndSignals> end_signals;
  // Goes before the forms that its windows show.
  qt::QtFormHost form_host;
};

Console::Parts::Parts(const Options& the_options)
    : options(the_options),
      places(platform::PlacesOf(
          FolderOf(options.exe_path), options.chosen ? std::optional(options.folder) : std::nullopt,
          options.edition == "Home", platform::BuiltInRoots(), platform::FindUserFolders())),
      layered(disk, places.layers, platform::MakePrivateFolder),
      agent(platform::AgentBeside(FolderOf(options.exe_path), control::kServiceName, places.folder,
                                  options.edition == "Home")),
      pictures(places.pictures),
      theme(pictures),
      family(places.libraries),
      seams{places.installed ? static_cast<platform::Files&>(layered) : disk, clock, locale, host, shell,
            instance_lock,
            // The program that lies beside an installed console is the service's.
            places.installed ? static_cast<platform::ServiceManager&>(service_manager) : services, loop,
            timers, message_boxes, file_dialogs, colour_dialogs, family, process,
            places.installed ? static_cast<platform::AgentLink&>(agent_link) : platform::NobodyToTell()},
      state(seams),
      log(state),
      guard(log),
      console(state, log, qt::GridMetrics),
      form_host({guard, pictures, theme}) {
  timers.SetGuard(&guard);
  // A box that stands alone has it as well.
  QApplication::setWindowIcon(pictures.Icon(QStringLiteral("icon")));
  qt::BindScreen(console.screen(), &anchor);
  state.UseHost(form_host);
  state.ProductEdition = options.edition;
  state.ProgramFolder = places.folder;
  state.Installed = places.installed;
  state.FirstStart = places.installed && layered.SettingsAreNew();
  family.ConfigureQuarantine(places.quarantine, false);
  family.SetHelper(&act_helper);
  if (places.installed) family.PreferHelper();
  state.ExeName = options.exe_name;
  // The same executable is the same program, whoever starts it and from wherever; its namesake in another
  // folder is another one.
  state.InstanceMutex = "Global\\" + options.exe_path;
}

void Console::Parts::Start() {
  end_signals = std::make_unique<EndSignals>([this] { guard("EndSignals", [this] { console.End(); }); });
  guard("Initial : Main", [this] {
    console.Start(options.command_line);
    WatchLock();
  });
}

// The lock's descriptor exists once the lock is held.
void Console::Parts::WatchLock() {
  if (instance_lock.Descriptor() < 0) return;
  lock_notifier = std::make_unique<QSocketNotifier>(instance_lock.Descriptor(), QSocketNotifier::Read);
  QObject::connect(lock_notifier.get(), &QSocketNotifier::activated, &anchor,
                   [this] { guard("InstanceLock", [this] { instance_lock.HandleRequests(); }); });
}

Console::Console(const Options& options) : parts_(std::make_unique<Parts>(options)) {}

Console::~Console() = default;

void Console::Start() {
  parts_->Start();
}

core::AppState& Console::state() {
  return parts_->state;
}

home::frmNewUI* Console::home() {
  return parts_->console.home();
}

}  // namespace zendrix::app
