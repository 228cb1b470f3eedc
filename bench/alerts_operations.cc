#include "alerts_operations.h"

#include <filesystem>
#include <memory>

#include "alerts/console_alerts.h"
#include "bench_platform.h"
#include "home/frm_new_ui.h"
#include "store/descriptions.h"
#include "temporary_folder.h"

namespace zendrix::bench {
namespace {

// The console up to the moment before its list is built, in a program folder of its own: the description
// files that are staged beside this program, and a log that failed lookups really write to.
struct HomeConsole {
  explicit HomeConsole(std::string path)
      : file(std::move(path)), seams(platform.seams()), state(seams), log(state) {
    state.ProgramFolder = folder.path();
    const auto here = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    for (const auto& entry : std::filesystem::directory_iterator(here))
      if (entry.path().filename().string().starts_with("KorvessaDesc"))
        std::filesystem::copy_file(entry, std::filesystem::path(folder.path()) / entry.path().filename());
  }

  void Prepare() {
    reg_ini.ReadRegInfo();
    state.settings.ShRskLvl = 0;
    store::LoadDescArrays(state, log);
    reader.InitClass(file);
    form = std::make_unique<home::frmNewUI>(
        home::HomeParts{state, log, reader, reg_ini, misc, agent, screen, alerts, home::HomeServices{}});
    form->alerts.CreateHeaderlvAlerts();
  }

  TemporaryFolder folder;
  std::string file;
  BenchPlatform platform;
  platform::Seams seams;
  core::AppState state;
  core::ErrorLog log;
  store::CMkvlf reader{state, log, [](int) {}};
  settings::RegIni reg_ini{state, log};
  settings::MiscSettings misc{state, reg_ini};
  widgets::Screen screen;
  control::AgentControl agent{state, screen};
  alerts::ConsoleAlerts alerts{state, log, [this] { return reader.EventTable; }};
  std::unique_ptr<home::frmNewUI> form;
};

}  // namespace

Operation Alerts(const std::string& file, const std::vector<std::string>&) {
  const auto console = std::make_shared<HomeConsole>(file);
  return {[console] { console->Prepare(); },
          [console] {
            console->form->alerts.LoadlvAlerts();
            return console->form->alerts.lvAlerts.size();
          }};
}

}  // namespace zendrix::bench
