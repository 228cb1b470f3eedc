// zendrix-mail: the command line, the signals, the lock and the real files around the mailer. No password
// ever stands in an argument or in the environment: what the SMTP file holds stays between it and the server.
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <exception>
#include <iostream>

#include "mail/curl_transport.h"
#include "mail/mailer.h"
#include "mail/message.h"
#include "mail/options.h"
#include "platform/linux/linux_clock.h"
#include "platform/linux/linux_family.h"
#include "platform/linux/linux_files.h"
#include "platform/linux/linux_host_info.h"
#include "platform/linux/process_lock.h"

namespace {

using zendrix::platform::JoinPath;
using zendrix::platform::LockOutcome;

constexpr char kLock[] = "zendrix-mail.lock";
constexpr char kLog[] = "KorvessaEventLog.kvl";
constexpr int kFolderTaken = 3;
constexpr std::size_t kMostUnwritten = 65536;  // bytes for the log

// The only thing that a signal handler may safely touch.
volatile std::sig_atomic_t stop_signal = 0;

void NoteSignal(int number) {
  stop_signal = number;
}

void CatchStopSignals() {
  struct sigaction action = {};
  action.sa_handler = NoteSignal;
  sigemptyset(&action.sa_mask);
  sigaction(SIGTERM, &action, nullptr);
  sigaction(SIGINT, &action, nullptr);
  signal(SIGPIPE, SIG_IGN);
}

int Complain(const std::string& message, int status) {
  std::cerr << "zendrix-mail: " << message << "\n";
  return status;
}

std::string FolderOfThisProgram() {
  std::string path(4096, '\0');
  const ssize_t size = readlink("/proc/self/exe", path.data(), path.size());
  path.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? "." : path.substr(0, slash);
}

// A host name is a name of the network; anything else would part the line of a log.
std::string HostName() {
  std::string name = zendrix::platform::LinuxHostInfo().ComputerName();
  std::replace_if(
      name.begin(), name.end(), [](char c) { return c <= ' ' || c > '~' || c == ',' || c == '|'; }, '_');
  return name;
}

int Try(const zendrix::mail::Options& options, zendrix::mail::Transport& transport) {
  zendrix::platform::LinuxFiles files;
  zendrix::platform::LinuxFamily family(FolderOfThisProgram());
  const auto read = zendrix::mail::ReadMailSettings(files, family, options.settings);
  if (!read.error.empty()) return Complain(read.error, 1);
  if (!read.settings) return Complain("e-mail is off: the SMTP file names no address and server", 1);
  const auto text = zendrix::mail::ComposeTrial(*read.settings, HostName(),
                                                zendrix::platform::LinuxClock().NowUtc(), family);
  const auto delivery = transport.Send(*read.settings, text);
  if (delivery.outcome != zendrix::mail::Delivery::Outcome::kSent) return Complain(delivery.reason, 1);
  std::cout << "The mail server took the mail for " << read.settings->to << ".\n";
  return 0;
}

int Run(const zendrix::mail::Options& options, zendrix::mail::Transport& transport) {
  zendrix::platform::LinuxFiles files;
  zendrix::platform::LinuxClock clock;
  zendrix::platform::LinuxFamily family(FolderOfThisProgram());
  zendrix::platform::ProcessLock lock;
  const LockOutcome outcome = lock.Acquire(JoinPath(options.state, kLock));
  if (outcome == LockOutcome::kTaken) return Complain("another one mails from this folder", kFolderTaken);
  if (outcome == LockOutcome::kUnusable) return Complain("cannot use the folder " + options.state, 1);
  const std::string author = "," + HostName() + "," + std::to_string(getpid()) + ",";
  zendrix::mail::MailerParts parts{files,         clock, family, transport, options.folder, options.settings,
                                   options.state, {}};
  // The log is the Agent's. While that one begins it anew there is none for a moment, and this program may
  // not make one: what could not be written goes with the next line. All of it stands in the service's own
  // log.
  std::string unwritten;
  parts.tell = [&](const std::string& message) {
    std::cerr << "zendrix-mail: " << message << std::endl;
    unwritten += std::to_string(clock.NowUtc()) + author + message + "\r\n";
    if (files.Append(JoinPath(options.folder, kLog), unwritten) || unwritten.size() > kMostUnwritten)
      unwritten.clear();
  };
  zendrix::mail::Mailer mailer(std::move(parts));
  const std::int64_t end_ms = clock.MonotonicMs() + options.for_seconds.value_or(0) * 1000;
  while (stop_signal == 0 && lock.CanBeFound()) {
    const bool more = mailer.Turn();
    if (more) continue;
    if (options.once || (options.for_seconds && clock.MonotonicMs() >= end_ms)) break;
    // In steps, so that a request to stop is heard soon.
    for (std::int64_t left = options.interval_seconds; left > 0 && stop_signal == 0; --left)
      clock.Sleep(1000);
  }
  mailer.Finish();
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    auto parsed = zendrix::mail::ParseOptions(std::vector<std::string>(argv + (argc > 0), argv + argc));
    if (!parsed.error.empty()) {
      std::cerr << "zendrix-mail: " << parsed.error << " (see --help)\n";
      return 2;
    }
    zendrix::mail::Options& options = parsed.options;
    if (options.help) {
      std::cout << zendrix::mail::kHelpText;
      return 0;
    }
    if (options.folder.empty()) options.folder = FolderOfThisProgram();
    if (options.settings.empty()) options.settings = options.folder;
    if (options.state.empty()) options.state = options.folder;
    CatchStopSignals();
    zendrix::mail::CurlTransport transport({options.authorities, [] { return stop_signal != 0; }});
    return options.trial ? Try(options, transport) : Run(options, transport);
  } catch (const std::exception& error) {  // out of memory, at most
    std::cerr << "zendrix-mail: " << error.what() << "\n";
    return 1;
  }
}
