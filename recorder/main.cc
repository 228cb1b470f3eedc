// zendrix-recorder: the command line, the signals and the real host around the recorder.
#include <unistd.h>

#include <csignal>
#include <exception>
#include <iostream>

#include "platform/linux/linux_clock.h"
#include "platform/linux/linux_files.h"
#include "platform/linux/linux_host_info.h"
#include "recorder/recorder.h"

namespace {

using zendrix::recorder::Options;

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

std::string FolderOfProgram(zendrix::recorder::HostView& host) {
  const std::string program = host.ReadLink("/proc/self/exe").value_or("./zendrix-recorder");
  return program.substr(0, program.rfind('/'));
}

int Record(Options options) {
  CatchStopSignals();
  const auto host = zendrix::recorder::MakeLinuxHostView();
  zendrix::platform::LinuxFiles files;
  zendrix::platform::LinuxClock clock;
  zendrix::platform::LinuxHostInfo facts;
  if (options.folder.empty()) options.folder = FolderOfProgram(*host);
  zendrix::recorder::RecorderParts parts{*host, files, clock, std::cerr, {}, facts.ComputerName(), 0};
  parts.stop_requested = [] { return stop_signal != 0; };
  parts.own_pid = static_cast<std::uint64_t>(getpid());
  return zendrix::recorder::Recorder(std::move(parts), std::move(options)).Run();
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const auto parsed =
        zendrix::recorder::ParseOptions(std::vector<std::string>(argv + (argc > 0), argv + argc));
    if (!parsed.error.empty()) {
      std::cerr << "zendrix-recorder: " << parsed.error << " (see --help)\n";
      return 2;
    }
    if (parsed.options.help) {
      std::cout << zendrix::recorder::kHelpText;
      return 0;
    }
    return Record(parsed.options);
  } catch (const std::exception& error) {  // out of memory, at most
    std::cerr << "zendrix-recorder: " << error.what() << "\n";
    return 1;
  }
}
