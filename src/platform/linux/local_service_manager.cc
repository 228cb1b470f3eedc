#include "platform/linux/local_service_manager.h"

// The C library's own header forgets that C++ may include it.
extern "C" {
#include <sys/pidfd.h>
}
#include <poll.h>
#include <strings.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <filesystem>

#include "platform/files.h"
#include "platform/linux/detached_process.h"
#include "platform/linux/process_lock.h"
#include "platform/linux/service_outcomes.h"

namespace zendrix::platform {
namespace {

using SteadyClock = std::chrono::steady_clock;
using Moment = SteadyClock::time_point;

// How often an Agent that starts is looked at. Its end is noticed at once.
constexpr std::chrono::milliseconds kGlance(10);

bool IsPlainFile(const std::string& path) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

// An upgrade puts a new file in the place of a program that goes on running from the one it was started from.
bool RanFromThePlaceOf(const std::string& program, const std::string& link) {
  std::error_code error;
  const auto place = std::filesystem::canonical(program, error);
  const auto running = std::filesystem::read_symlink(link, error);
  return !error && running == place.string() + " (deleted)";
}

// Whether the process runs that very file, or the one whose place it took, and is this user's.
bool IsOwnProcessOf(pid_t process, const std::string& program) {
  const std::string place = "/proc/" + std::to_string(process);
  const std::string link = place + "/exe";
  struct stat wanted {};
  struct stat running {};
  struct stat owner {};
  if (stat(program.c_str(), &wanted) != 0 || stat(link.c_str(), &running) != 0 ||
      stat(place.c_str(), &owner) != 0 || owner.st_uid != geteuid())
    return false;
  if (running.st_nlink == 0) return RanFromThePlaceOf(program, link);
  return wanted.st_dev == running.st_dev && wanted.st_ino == running.st_ino;
}

// Waits until the process has ended; false at that moment when it has not.
bool EndsUntil(const FileDescriptor& process, Moment moment) {
  for (;;) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(moment - SteadyClock::now()).count();
    pollfd waiting{process.get(), POLLIN, 0};
    const int ready = poll(&waiting, 1, static_cast<int>(std::max<std::int64_t>(left, 0)));
    if (ready > 0) return true;
    if (ready == 0 && left <= 0) return false;
    if (ready < 0 && errno != EINTR) return false;
  }
}

}  // namespace

LocalService AgentBeside(const std::string& program_folder, std::string name, const std::string& folder,
                         bool home_edition) {
  return {std::move(name),
          JoinPath(program_folder, kAgentProgram),
          folder,
          {"--form", home_edition ? "home" : "admin"}};
}

struct LocalServiceManager::Agent {
  FileDescriptor process;
  pid_t number = 0;
  bool ready = false;
};

bool LocalServiceManager::InCharge() const {
  return IsPlainFile(LockPath()) && IsPlainFile(service_.program);
}

Result<int> LocalServiceManager::Run(const std::string& service, ServiceMethod method) {
  if (!Knows(service)) return Error{ErrorKind::kNotFound, service + ": no such service"};
  return method == ServiceMethod::kStart ? Start() : Stop();
}

Result<ServiceProperties> LocalServiceManager::Properties(const std::string& service) {
  if (!Knows(service)) return Error{ErrorKind::kNotFound, service + ": no such service"};
  const auto agent = Find();
  ServiceProperties properties;
  properties.state = !agent ? "Stopped" : agent->ready ? "Running" : "Start Pending";
  properties.display_name = "Zendrix Agent";
  properties.start_mode = "Manual";
  return properties;
}

std::optional<pid_t> LocalServiceManager::Process() const {
  const auto agent = Find();
  return agent ? std::optional(agent->number) : std::nullopt;
}

bool LocalServiceManager::Knows(const std::string& service) const {
  return strcasecmp(service.c_str(), service_.name.c_str()) == 0 && IsPlainFile(service_.program);
}

std::string LocalServiceManager::LockPath() const {
  return JoinPath(service_.folder, kAgentLock);
}

std::optional<LocalServiceManager::Agent> LocalServiceManager::Find() const {
  const auto holder = HolderOf(LockPath());
  if (!holder || holder->process == 0) return std::nullopt;
  Agent agent{FileDescriptor(pidfd_open(holder->process, 0)), holder->process, holder->ready};
  if (!agent.process) return std::nullopt;
  // Still the holder, so it lived when the descriptor was made.
  const auto still = HolderOf(LockPath());
  if (!still || still->process != holder->process) return std::nullopt;
  if (!IsOwnProcessOf(holder->process, service_.program)) return std::nullopt;
  return agent;
}

int LocalServiceManager::Start() const {
  if (Find()) return kServiceAlreadyRunning;
  if (HolderOf(LockPath())) return kServiceNamesake;
  std::vector<std::string> arguments = {service_.program, "--folder", service_.folder};
  arguments.insert(arguments.end(), service_.arguments.begin(), service_.arguments.end());
  const auto child = StartDetached(service_.program, arguments);
  if (child) return WaitForFirstLook(child.value());
  switch (child.error().kind) {
    case ErrorKind::kNotFound:
      return kServiceNoProgram;
    case ErrorKind::kPermissionDenied:
      return kServiceNoAccess;
    default:
      return kServiceUnknownFailure;
  }
}

int LocalServiceManager::WaitForFirstLook(pid_t child) const {
  const Moment deadline = SteadyClock::now() + service_.deadline;
  const FileDescriptor process(pidfd_open(child, 0));
  do {
    const auto holder = HolderOf(LockPath());
    if (holder && holder->process == child && holder->ready) {
      ReapInBackground(child);
      return kServiceDone;
    }
    if (EndsUntil(process, SteadyClock::now() + kGlance)) return WhyEnded(child);
  } while (SteadyClock::now() < deadline);
  ReapInBackground(child);
  return kServiceTimeOut;
}

int LocalServiceManager::WhyEnded(pid_t child) const {
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  if (!WIFEXITED(status) || WEXITSTATUS(status) != kFolderTaken) return kServiceUnknownFailure;
  return Find() ? kServiceAlreadyRunning : kServiceNamesake;
}

int LocalServiceManager::Stop() const {
  const auto agent = Find();
  if (!agent) return kServiceNotRunning;
  if (pidfd_send_signal(agent->process.get(), SIGTERM, nullptr, 0) != 0) {
    return errno == ESRCH ? kServiceNotRunning : kServiceNoAccess;
  }
  return EndsUntil(agent->process, SteadyClock::now() + service_.deadline) ? kServiceDone : kServiceTimeOut;
}

}  // namespace zendrix::platform
