#include "unit/quarantine/traced_child.h"

#include <signal.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>
#include <string>

namespace zendrix::test {
namespace {

// PTRACE_O_TRACESYSGOOD marks stops at system calls by this bit.
constexpr int kSyscallStop = SIGTRAP | 0x80;

[[noreturn]] void RunChild(const std::function<void()>& body) {
  if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) _exit(97);
  raise(SIGSTOP);
  try {
    body();
  } catch (...) {
    _exit(98);
  }
  _exit(0);
}

Stop StopOf(pid_t child, int number) {
  __ptrace_syscall_info info = {};
  const long size = ptrace(PTRACE_GET_SYSCALL_INFO, child, sizeof info, &info);
  if (size <= 0) throw std::runtime_error("this system does not tell where a process stopped");
  if (info.op != PTRACE_SYSCALL_INFO_ENTRY) return {number, -1, 0};
  return {number, static_cast<long>(info.entry.nr), static_cast<int>(info.entry.args[0])};
}

int WaitFor(pid_t child) {
  int status = 0;
  if (waitpid(child, &status, 0) != child) throw std::runtime_error("the traced child is gone");
  return status;
}

}  // namespace

bool RunTraced(const std::function<void()>& body, const AtStop& at_stop) {
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("no child process");
  if (child == 0) RunChild(body);
  int status = WaitFor(child);
  if (!WIFSTOPPED(status)) throw std::runtime_error("this system does not let a process be traced");
  ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_EXITKILL | PTRACE_O_TRACESYSGOOD);
  int stops = 0, signal_number = 0;
  for (;;) {
    ptrace(PTRACE_SYSCALL, child, nullptr, static_cast<long>(signal_number));
    status = WaitFor(child);
    if (WIFEXITED(status) && WEXITSTATUS(status) == 0) return true;
    if (!WIFSTOPPED(status))
      throw std::runtime_error("the traced child ended with status " + std::to_string(status));
    signal_number = WSTOPSIG(status) == kSyscallStop ? 0 : WSTOPSIG(status);
    if (signal_number != 0 || at_stop(StopOf(child, ++stops))) continue;
    kill(child, SIGKILL);
    WaitFor(child);
    return false;
  }
}

}  // namespace zendrix::test
