#include "act/linux_processes.h"

#include <poll.h>
#include <signal.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "family/intermediate/outside.h"
#include "family/intermediate/running_program.h"
#include "platform/linux/posix.h"

namespace zendrix::act {
namespace {

class LinuxHeldProcess : public HeldProcess {
 public:
  LinuxHeldProcess(pid_t process, platform::FileDescriptor handle)
      : process_(process), handle_(std::move(handle)) {}

  Found Is(const ShownProgram& shown) override {
    struct stat file = {};
    file.st_dev = shown.file.device;
    file.st_ino = shown.file.number;
    family::Event event;
    event.moment = shown.moment;
    const auto state = family::StateOf(std::to_string(process_), file, event, family::ThisComputer());
    if (HasEnded(0) || state == family::ProgramState::kGone) return Found::kGone;
    return state == family::ProgramState::kThisFile ? Found::kIt : Found::kAnother;
  }

  void Kill() override {
    killed_ = ::syscall(SYS_pidfd_send_signal, handle_.get(), SIGKILL, nullptr, 0) == 0;
  }

  // A handle can be read once its process has ended. One that got no signal has no reason to.
  bool HasEnded(std::int64_t milliseconds) override {
    pollfd waiting = {handle_.get(), POLLIN, 0};
    return ::poll(&waiting, 1, killed_ ? static_cast<int>(milliseconds) : 0) > 0;
  }

 private:
  const pid_t process_;
  const platform::FileDescriptor handle_;
  bool killed_ = false;
};

}  // namespace

std::unique_ptr<HeldProcess> LinuxProcesses::Hold(pid_t process) {
  if (process <= 1 || process == ::getpid()) return nullptr;
  platform::FileDescriptor handle(static_cast<int>(::syscall(SYS_pidfd_open, process, 0)));
  // One that is there and cannot be held is told as going on; nothing is ever sent to a mere number.
  if (!handle && errno == ESRCH) return nullptr;
  return std::make_unique<LinuxHeldProcess>(process, std::move(handle));
}

}  // namespace zendrix::act
