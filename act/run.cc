#include "act/run.h"

#include <poll.h>
#include <pwd.h>
#include <sdbus-c++/sdbus-c++.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <iostream>
#include <memory>
#include <optional>

#include "act/acting.h"
#include "act/administrators.h"
#include "act/bus/polkit.h"
#include "act/bus/service.h"
#include "act/family_store.h"
#include "act/linux_processes.h"
#include "platform/act_names.h"
#include "platform/linux/linux_clock.h"
#include "platform/linux/linux_files.h"

namespace zendrix::act {
namespace {

constexpr char kRecord[] = "blocks";

int Complain(const std::string& message) {
  std::cerr << "zendrix-act: " << message << "\n";
  return 1;
}

std::optional<uid_t> UserNamed(const std::string& name) {
  uid_t user = 0;
  const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), user);
  if (error == std::errc() && end == name.data() + name.size()) return user;
  const passwd* const entry = ::getpwnam(name.c_str());
  if (!entry) return std::nullopt;
  return entry->pw_uid;
}

// One that is somebody else's, a link, or open to others is not used: what lies there goes back to its place
// with all its rights.
bool HaveFolder(const std::string& folder) {
  ::mkdir(folder.c_str(), S_IRWXU);
  struct stat status = {};
  return ::lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == ::geteuid() &&
         (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

// Waits for the next message, or as long as this at most.
void Wait(const sdbus::IConnection& bus, std::chrono::milliseconds most) {
  const auto data = bus.getEventLoopPollData();
  int limit = static_cast<int>(std::max<std::int64_t>(most.count(), 0));
  if (const int timeout = data.getPollTimeout(); timeout >= 0) limit = std::min(limit, timeout);
  pollfd waiting{data.fd, data.events, 0};
  ::poll(&waiting, 1, limit);
}

void Serve(sdbus::IConnection& bus, const Service& service, const Acting& acting,
           std::chrono::milliseconds idle) {
  using SteadyClock = std::chrono::steady_clock;
  auto last = SteadyClock::now();
  std::uint64_t calls = service.calls();
  bool leaving = false;
  for (;;) {
    while (bus.processPendingRequest()) {
    }
    const auto now = SteadyClock::now();
    if (acting.IsBusy() || service.calls() != calls) last = now;
    calls = service.calls();
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(last + idle - now);
    if (acting.IsBusy() || (left.count() > 0 && !leaving)) {
      Wait(bus, acting.IsBusy() ? idle : left);
      continue;
    }
    if (leaving) return;
    // What was sent before the name was given up is still served; a later call starts a new helper.
    bus.releaseName(platform::kActName);
    leaving = true;
  }
}

}  // namespace

int Run(const Settings& settings) {
  const auto agent = UserNamed(settings.agent);
  if (!agent) return Complain("there is no user " + settings.agent);
  if (!HaveFolder(settings.folder)) return Complain("cannot use the folder " + settings.folder);
  platform::LinuxFiles files;
  platform::LinuxClock clock;
  AgentFile word(settings.monitoring_file, *agent);
  FamilyStore store(settings.folder);
  LinuxProcesses processes;
  BlockRecord record(files, clock, platform::JoinPath(settings.folder, kRecord));
  try {
    const auto bus = sdbus::createSystemBusConnection();
    Polkit authority(*bus, settings.patience);
    Acting acting({word, store, processes, authority, record, clock, *agent, IsAdministrator});
    const Service service(*bus, acting);
    bus->requestName(platform::kActName);
    Serve(*bus, service, acting, settings.idle);
    return 0;
  } catch (const sdbus::Error& error) {
    return Complain(error.what());
  }
}

}  // namespace zendrix::act
