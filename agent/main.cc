// zendrix-agent: the command line, the signals, the folder's lock and the real host around the Agent.
#include <unistd.h>

#include <csignal>
#include <exception>
#include <iostream>

#include "agent/agent.h"
#include "platform/linux/linux_clock.h"
#include "platform/linux/linux_files.h"
#include "platform/linux/linux_host_info.h"
#include "platform/linux/local_service_manager.h"
#include "platform/linux/process_lock.h"
#include "platform/linux/service_outcomes.h"

namespace {

using zendrix::agent::Form;
using zendrix::agent::Options;
using zendrix::agent::Task;
using zendrix::platform::LocalServiceManager;
using zendrix::platform::LockOutcome;
using zendrix::platform::ServiceMethod;

constexpr char kService[] = "ZENDRIX";

// The only thing that a signal handler may safely touch.
volatile std::sig_atomic_t stop_signal = 0;

void NoteSignal(int number) {
  stop_signal = number;
}

// The whole line is written before anybody looks at the flag, so no request to stop cuts one.
void CatchStopSignals() {
  struct sigaction action = {};
  action.sa_handler = NoteSignal;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  sigaction(SIGTERM, &action, nullptr);
  sigaction(SIGINT, &action, nullptr);
}

std::string ThisProgram(zendrix::agent::HostView& host) {
  return host.ReadLink("/proc/self/exe").value_or("./zendrix-agent");
}

int Complain(const std::string& message, int status) {
  std::cerr << "zendrix-agent: " << message << "\n";
  return status;
}

int Record(const Options& options, zendrix::agent::HostView& host) {
  CatchStopSignals();
  zendrix::platform::LinuxFiles files;
  zendrix::platform::LinuxClock clock;
  zendrix::platform::LinuxHostInfo facts;
  zendrix::platform::ProcessLock lock;
  // What a missing folder means is the Agent's own affair.
  if (files.FolderExists(options.folder)) {
    const std::string path = zendrix::platform::JoinPath(options.folder, zendrix::platform::kAgentLock);
    const LockOutcome outcome = lock.Acquire(path);
    if (outcome == LockOutcome::kTaken)
      return Complain("another Agent writes into this folder", zendrix::platform::kFolderTaken);
    if (outcome == LockOutcome::kUnusable) return Complain("cannot take the lock " + path, 1);
  }
  zendrix::agent::AgentParts parts{host, files, clock, std::cerr, {}, facts.ComputerName(), 0};
  // With its folder an Agent goes too: nobody would read it, and nobody could stop it.
  parts.stop_requested = [&lock] { return stop_signal != 0 || !lock.CanBeFound(); };
  parts.own_pid = static_cast<std::uint64_t>(getpid());
  parts.on_first_look = [&lock] { lock.SetReady(); };
  return zendrix::agent::Agent(std::move(parts), options).Run();
}

int Start(LocalServiceManager& services, const Options& options) {
  const auto result = services.Run(kService, ServiceMethod::kStart);
  const int number = result ? result.value() : zendrix::platform::kServiceUnknownFailure;
  if (number == zendrix::platform::kServiceAlreadyRunning) {
    return Complain("an Agent writes into " + options.folder + " already", zendrix::platform::kFolderTaken);
  }
  if (number != zendrix::platform::kServiceDone) {
    return Complain("cannot start; number " + std::to_string(number), 1);
  }
  std::cout << "This computer is watched by the Agent beside the console, process "
            << services.Process().value_or(0) << ", not by a service of the system; it writes into "
            << options.folder << "\n";
  return 0;
}

int Stop(LocalServiceManager& services, const Options& options) {
  const auto result = services.Run(kService, ServiceMethod::kStop);
  const int number = result ? result.value() : zendrix::platform::kServiceUnknownFailure;
  const bool gone =
      number == zendrix::platform::kServiceDone || number == zendrix::platform::kServiceNotRunning;
  return gone ? 0 : Complain("cannot stop the Agent of " + options.folder, 1);
}

int Do(Options options) {
  const auto host = zendrix::agent::MakeLinuxHostView();
  const std::string program = ThisProgram(*host);
  if (options.folder.empty()) options.folder = program.substr(0, program.rfind('/'));
  if (options.task == Task::kRecord) return Record(options, *host);
  const std::string form = options.form == Form::kHome ? "home" : "admin";
  const std::vector<std::string> arguments = {"--form", form, "--interval",
                                              std::to_string(options.interval_seconds)};
  LocalServiceManager services({kService, program, options.folder, arguments});
  return options.task == Task::kStart ? Start(services, options) : Stop(services, options);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const auto parsed =
        zendrix::agent::ParseOptions(std::vector<std::string>(argv + (argc > 0), argv + argc));
    if (!parsed.error.empty()) {
      std::cerr << "zendrix-agent: " << parsed.error << " (see --help)\n";
      return 2;
    }
    if (parsed.options.help) {
      std::cout << zendrix::agent::kHelpText;
      return 0;
    }
    return Do(parsed.options);
  } catch (const std::exception& error) {  // out of memory, at most
    std::cerr << "zendrix-agent: " << error.what() << "\n";
    return 1;
  }
}
