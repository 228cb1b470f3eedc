#include "home/self_update.h"

#include <utility>

#include "core/guards.h"
#include "core/initial.h"
#include "core/path_text.h"

namespace zendrix::home {
namespace {
constexpr char kCheckPlace[] = "CheckUpdate";
}  // namespace

void SelfUpdate::CheckUpdate() {
  core::OrLog(needs_.log, "frmNewUI:CheckUpdate", [&] {
    if (needs_.state.Installed) return TellOfPackages();
    if (installing_ || (offer() && offer()->Installing()) || !file_.IsThere()) return;
    const std::string version = file_.Version();
    if (version == RunningVersion()) {
      file_.Remove();
      needs_.log.WriteLog(kCheckPlace,
                          "Version to install (" + version + ") is currently running, deleting " +
                              core::PathText(needs_.state.ProgramFolder) + "\\" + core::kUpdateFileName);
      return;
    }
    needs_.log.WriteLog(kCheckPlace, "New version available " + version);
    if (!needs_.state.settings.DontAsk) return Offer();
    needs_.log.WriteLog(kCheckPlace, "About to automatically install new version " + version);
    Install();
  });
}

void SelfUpdate::TellOfPackages() {
  if (!std::exchange(told_of_packages_, true))
    needs_.log.WriteLog(kCheckPlace, "New versions of this program come with the system's package manager.");
}

void SelfUpdate::Offer() {
  widgets::ShowOptions above_all;
  above_all.on_top = true;
  widgets::FormHost& host = needs_.state.host();
  host.Show(offer_.Open(host, needs_), above_all);
}

// The box that tells a failure serves the event loop, and the next check with it.
void SelfUpdate::Install() {
  installing_ = true;
  needs_.agent.StopAgent(true);
  const bool started = file_.Start();
  installing_ = false;
  if (started) needs_.main.Unload();
}

}  // namespace zendrix::home
