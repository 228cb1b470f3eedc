#include "act/run.h"

#include <poll.h>
#include <pwd.h>
#include <sdbus-c++/sdbus-c++.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <csignal>
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
// Less than the service manager waits.
constexpr std::chrono::seconds kLastQuestion{20};

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

// What is written for a group to read, in a folder of its own. Everything else of the helper's is for nobody.
class FilesForGroup : public platform::LinuxFiles {
 public:
  platform::Status WriteAll(const std::string& path, std::string_view bytes) override {
    // Somebody else's folder, or a link to one, might stand where root's is missing.
    const std::string folder = path.substr(0, path.rfind('/'));
    struct stat status = {};
    if (::lstat(folder.c_str(), &status) != 0 || !S_ISDIR(status.st_mode) || status.st_uid != ::geteuid() ||
        (status.st_mode & (S_IWGRP | S_IWOTH)) != 0)
      return platform::Error{platform::ErrorKind::kPermissionDenied,
                             folder + " is no folder of the helper's"};
    const mode_t before = ::umask(S_IWGRP | S_IRWXO);
    auto done = platform::LinuxFiles::WriteAll(path, bytes);
    ::umask(before);
    return done;
  }
};

// One that is somebody else's, a link, or open to others is not used: what lies there goes back to its place
// with all its rights.
bool HaveFolder(const std::string& folder) {
  ::mkdir(folder.c_str(), S_IRWXU);
  struct stat status = {};
  return ::lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == ::geteuid() &&
         (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

volatile std::sig_atomic_t told_to_end = 0;

// The end of the service is heard only while it waits: a question is never left half done.
class EndSignal {
 public:
  EndSignal() {
    struct sigaction action = {};
    action.sa_handler = [](int) { told_to_end = 1; };
    ::sigaction(SIGTERM, &action, nullptr);
    sigset_t end = {};
    ::sigemptyset(&end);
    ::sigaddset(&end, SIGTERM);
    ::pthread_sigmask(SIG_BLOCK, &end, &while_waiting_);
    ::sigdelset(&while_waiting_, SIGTERM);
  }
  const sigset_t& while_waiting() const { return while_waiting_; }

 private:
  sigset_t while_waiting_ = {};
};

// Waits for the next message or the end signal, or as long as this at most.
void Wait(const sdbus::IConnection& bus, const EndSignal& end, std::chrono::milliseconds most) {
  const auto data = bus.getEventLoopPollData();
  std::int64_t limit = std::max<std::int64_t>(most.count(), 0);
  if (const int timeout = data.getPollTimeout(); timeout >= 0) limit = std::min<std::int64_t>(limit, timeout);
  pollfd waiting{data.fd, data.events, 0};
  constexpr std::int64_t kThousand = 1000;
  const timespec time{limit / kThousand, limit % kThousand * kThousand * kThousand};
  ::ppoll(&waiting, 1, &time, &end.while_waiting());
}

void ServeWhatCame(sdbus::IConnection& bus) {
  while (bus.processPendingRequest()) {
  }
}

void Serve(sdbus::IConnection& bus, const Service& service, Acting& acting, std::chrono::milliseconds idle) {
  using SteadyClock = std::chrono::steady_clock;
  const EndSignal end;
  auto last = SteadyClock::now();
  std::uint64_t calls = service.calls();
  while (told_to_end == 0) {
    ServeWhatCame(bus);
    const auto now = SteadyClock::now();
    if (acting.IsBusy() || service.calls() != calls) last = now;
    calls = service.calls();
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(last + idle - now);
    if (!acting.IsBusy() && left.count() <= 0) break;
    Wait(bus, end, acting.IsBusy() ? idle : left);
  }
  const bool was_told = told_to_end != 0;
  // What was sent before the name was given up is still served; a later call starts a new helper.
  bus.releaseName(platform::kActName);
  ServeWhatCame(bus);
  if (was_told) acting.GiveUp();
  // The service manager ends a service that has no name. A question that came at the last moment has this
  // long.
  const auto until = SteadyClock::now() + kLastQuestion;
  for (auto now = SteadyClock::now(); acting.IsBusy() && now < until; now = SteadyClock::now()) {
    Wait(bus, end, std::chrono::ceil<std::chrono::milliseconds>(until - now));
    ServeWhatCame(bus);
  }
  acting.GiveUp();
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
  FilesForGroup group_files;
  DecisionRecord decisions(group_files, settings.decisions_file);
  BlockRecord record(files, clock, platform::JoinPath(settings.folder, kRecord));
  try {
    const auto bus = sdbus::createSystemBusConnection();
    Polkit authority(*bus, settings.patience);
    Acting acting({word, store, processes, authority, record, decisions, group_files, settings.mail_file,
                   clock, *agent, IsAdministrator});
    const Service service(*bus, acting);
    bus->requestName(platform::kActName);
    Serve(*bus, service, acting, settings.idle);
    return 0;
  } catch (const sdbus::Error& error) {
    return Complain(error.what());
  }
}

}  // namespace zendrix::act
