// zendrix-agent: the command line, the signals, the folder's lock and the real host around the Agent.
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <ctime>
#include <exception>
#include <iostream>
#include <memory>

#include "agent/agent.h"
#include "agent/host/boot_time.h"
#include "agent/host/text.h"
#include "agent/level_text.h"
#include "agent/score/explain.h"
#include "agent/score/scorer.h"
#include "agent/sources/bpf_source.h"
#include "agent/sources/bus_source.h"
#include "agent/sources/connector_source.h"
#include "agent/sources/notice_source.h"
#include "agent/sources/numbers.h"
#include "agent/sources/socket_source.h"
#include "agent/waiting.h"
#include "platform/linux/linux_act_helper.h"
#include "platform/linux/linux_clock.h"
#include "platform/linux/linux_files.h"
#include "platform/linux/linux_host_info.h"
#include "platform/linux/local_service_manager.h"
#include "platform/linux/posix.h"
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

using Sources = std::vector<std::unique_ptr<zendrix::agent::Source>>;

// Best first.
Sources MakeSources(const Options& options, zendrix::agent::HostView& host, zendrix::platform::Clock& clock) {
  Sources sources;
  // Notices take no right and reach no further than files that may be read.
  auto notices = zendrix::agent::MakeNoticeSource(host, clock);
  // Of units in folders that cannot be watched it is the bus that tells.
  sources.push_back(zendrix::agent::MakeBusSource(
      clock, [&notices = *notices] { notices.LookSoon(zendrix::agent::monitor::kAutorun); }));
  sources.push_back(std::move(notices));
  if (options.plain) return sources;
  const auto own_pid = static_cast<std::uint64_t>(getpid());
  sources.push_back(zendrix::agent::MakeBpfSource(host, own_pid));
  // What they cost a computer is only worth it where the better one is refused.
  if (sources.back()->level().level != zendrix::agent::Level::kNone) return sources;
  sources.push_back(zendrix::agent::MakeConnectorSource(host, own_pid));
  sources.push_back(zendrix::agent::MakeSocketSource(host, own_pid));
  return sources;
}

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

const std::string& FolderOfLock(const Options& options) {
  return options.state.empty() ? options.folder : options.state;
}

// The folders of the two forms. One that somebody else laid there, or a link, is refused: what is written
// into it would go where he wants.
bool MakeFolders(const Options& options) {
  if (options.state.empty()) return true;
  for (const char* name : {"home", "admin"}) {
    const std::string folder = zendrix::platform::JoinPath(options.state, name);
    mkdir(folder.c_str(), S_IRWXU | S_IRGRP | S_IXGRP);
    struct stat status {};
    if (lstat(folder.c_str(), &status) != 0 || !S_ISDIR(status.st_mode) || status.st_uid != geteuid())
      return false;
  }
  return true;
}

std::string BaselineOf(const Options& options) {
  return zendrix::platform::JoinPath(FolderOfLock(options), zendrix::agent::kBaselineFile);
}

int PrintExplanation(const Options& options) {
  std::string text;
  const int status = zendrix::agent::Explain(BaselineOf(options), options.alert, text);
  (status == 0 ? std::cout : std::cerr) << text;
  return status;
}

int Record(const Options& options, zendrix::agent::HostView& host) {
  CatchStopSignals();
  zendrix::platform::LinuxFiles files;
  zendrix::platform::LinuxClock clock;
  zendrix::platform::LinuxHostInfo facts;
  zendrix::platform::ProcessLock lock;
  // What a missing folder means is the Agent's own affair.
  if (files.FolderExists(FolderOfLock(options))) {
    const std::string path =
        zendrix::platform::JoinPath(FolderOfLock(options), zendrix::platform::kAgentLock);
    const LockOutcome outcome = lock.Acquire(path);
    if (outcome == LockOutcome::kTaken)
      return Complain("another Agent writes into this folder", zendrix::platform::kFolderTaken);
    if (outcome == LockOutcome::kUnusable) return Complain("cannot take the lock " + path, 1);
    if (!MakeFolders(options)) return Complain("cannot have the folders home and admin", 1);
  }
  const Sources sources = options.once ? Sources() : MakeSources(options, host, clock);
  zendrix::agent::Waiting waiting(sources, clock);
  const auto numbers = options.once ? nullptr : zendrix::agent::MakeNumbers();
  const auto scorer = zendrix::agent::MakeBaselineScorer(
      {host, BaselineOf(options), static_cast<std::int64_t>(clock.NowUtc())});
  zendrix::agent::AgentParts parts{host, files, clock, *scorer, std::cerr, {}, facts.ComputerName(), 0};
  // With its folder an Agent goes too: nobody would read it, and nobody could stop it.
  parts.stop_requested = [&lock] { return stop_signal != 0 || !lock.CanBeFound(); };
  parts.own_pid = static_cast<std::uint64_t>(getpid());
  parts.on_first_look = [&lock] { lock.SetReady(); };
  for (const auto& source : sources) parts.sources.push_back(source.get());
  parts.numbers = numbers.get();
  parts.wait = [&waiting](std::int64_t milliseconds) { waiting.Rest(milliseconds); };
  // The helper listens to the service alone.
  zendrix::platform::LinuxActHelper helper;
  if (!options.state.empty()) parts.helper = &helper;
  parts.boot_ms = [] { return zendrix::agent::BootTimeNs() / 1'000'000; };
  parts.make_like = zendrix::agent::MakeFileLike;
  return zendrix::agent::Agent(std::move(parts), options).Run();
}

// What the running Agent of the folder wrote there last; empty when none runs. The folder may be anybody's,
// and what comes out goes to a terminal.
std::string StatusOfRunning(const Options& options) {
  constexpr std::size_t kLimit = 65536;
  const auto beside = [&](const char* name) {
    return zendrix::platform::JoinPath(FolderOfLock(options), name);
  };
  if (!zendrix::platform::HolderOf(beside(zendrix::platform::kAgentLock))) return "";
  const auto text =
      zendrix::agent::MakeLinuxHostView()->ReadText(beside(zendrix::agent::kStatusFile), kLimit);
  if (!text) return "";
  const bool plain = std::all_of(text->begin(), text->end(),
                                 [](char byte) { return byte == '\n' || (byte >= ' ' && byte <= '~'); });
  return plain ? *text : "";
}

int PrintStatus(const Options& options, zendrix::agent::HostView& host) {
  const std::string running = StatusOfRunning(options);
  if (!running.empty()) {
    std::cout << running;
    return 0;
  }
  zendrix::platform::LinuxClock clock;
  const Sources sources = MakeSources(options, host, clock);
  std::vector<zendrix::agent::Source*> given;
  for (const auto& source : sources) given.push_back(source.get());
  const auto numbers = zendrix::agent::MakeNumbers();
  zendrix::agent::Status status;
  status.levels =
      zendrix::agent::Watch(host, clock, 0, options.interval_seconds * 1000, std::move(given), numbers.get())
          .levels();
  std::cout << zendrix::agent::StatusJson(status);
  return 0;
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
            << options.folder << ". " << zendrix::agent::SummaryIn(StatusOfRunning(options)) << "\n";
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
  if (options.folder.empty() && options.state.empty()) options.folder = program.substr(0, program.rfind('/'));
  if (options.task == Task::kRecord) return Record(options, *host);
  if (options.task == Task::kStatus) return PrintStatus(options, *host);
  if (options.task == Task::kExplain) return PrintExplanation(options);
  const std::string form = options.form == Form::kHome ? "home" : "admin";
  std::vector<std::string> arguments = {"--form", form, "--interval",
                                        std::to_string(options.interval_seconds)};
  if (options.plain) arguments.push_back("--plain");
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
