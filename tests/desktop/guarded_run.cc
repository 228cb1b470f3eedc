#include "desktop/guarded_run.h"

#include <fcntl.h>
#include <grp.h>
#include <net/if.h>
#include <sched.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "support/temporary_folder.h"

namespace zendrix::desktop {
namespace {

constexpr uid_t kNobody = 65534;
constexpr int kBroken = 125;  // exit status of a run that could not begin

[[noreturn]] void Fail(const char* what) {
  std::perror(what);
  std::_Exit(kBroken);
}

void RaiseLoopback() {
  const int socket_handle = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  ifreq request = {};
  std::strcpy(request.ifr_name, "lo");
  request.ifr_flags = IFF_UP;
  if (socket_handle < 0 || ioctl(socket_handle, SIOCSIFFLAGS, &request) != 0) std::perror("loopback");
  close(socket_handle);
}

void BecomeOrdinary() {
  if (geteuid() != 0) return;
  if (unshare(CLONE_NEWNET) == 0)
    RaiseLoopback();
  else
    std::perror("no network of its own");
  if (setgroups(0, nullptr) != 0 || setresgid(kNobody, kNobody, kNobody) != 0 ||
      setresuid(kNobody, kNobody, kNobody) != 0)
    Fail("ordinary user");
  prctl(PR_SET_DUMPABLE, 1);
}

// The process numbers of this process's children: its own and those it adopted.
std::string Children() {
  std::ifstream file("/proc/thread-self/children");
  if (file) return {std::istreambuf_iterator<char>(file), {}};
  std::string children;
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    std::ifstream stat(entry.path() / "stat");
    std::string text;
    if (!std::getline(stat, text) || text.rfind(')') == std::string::npos) continue;
    int parent = 0;
    if (std::sscanf(text.c_str() + text.rfind(')'), ") %*c %d", &parent) == 1 && parent == getpid())
      children += entry.path().filename().string() + ' ';
  }
  return children;
}

// The end of one makes its children ours: so until none is left.
void EndAllLeft() {
  for (std::string children = Children(); !children.empty(); children = Children()) {
    for (char* at = children.data(); const long process = std::strtol(at, &at, 10);)
      kill(static_cast<pid_t>(process), SIGKILL);
    if (waitpid(-1, nullptr, 0) < 0) return;
  }
}

bool IsOf(const std::filesystem::path& process, const std::string& folder) {
  std::ifstream environment(process / "environ", std::ios::binary);
  for (std::string setting; std::getline(environment, setting, '\0');)
    if (setting.starts_with("XDG_RUNTIME_DIR=" + folder + "/")) return true;
  return false;
}

// Stands by in case the guard is killed, which it learns from the pipe's end: then it ends what lives in the
// folder, and removes it.
void StandBy(const std::string& folder) {
  int ends[2] = {-1, -1};
  if (pipe2(ends, O_CLOEXEC) != 0 || fork() != 0) {
    close(ends[0]);
    return;  // the writing end stays open for as long as this process lives
  }
  setsid();
  close(ends[1]);
  for (const int output : {1, 2}) close(output);
  char none = 0;
  while (read(ends[0], &none, 1) < 0 && errno == EINTR) {
  }
  std::error_code ignored;
  for (const auto& process : std::filesystem::directory_iterator("/proc", ignored))
    if (IsOf(process.path(), folder)) kill(std::atoi(process.path().filename().c_str()), SIGKILL);
  std::filesystem::remove_all(folder, ignored);
  std::_Exit(0);
}

// Waits for the tests. A request to end goes on to them.
int StatusOf(pid_t tests, const sigset_t& awaited) {
  for (;;) {
    int signal = 0;
    sigwait(&awaited, &signal);
    if (signal != SIGCHLD) kill(tests, SIGKILL);
    int status = 0;
    for (pid_t ended = waitpid(-1, &status, WNOHANG); ended > 0; ended = waitpid(-1, &status, WNOHANG))
      if (ended == tests) return status;
  }
}

}  // namespace

int GuardedRun(const std::function<void(const std::string&)>& prepare,
               const std::function<int(const std::string&)>& tests) {
  // On a disk: a quarantine in memory is refused.
  const test::TemporaryFolder folder("/var/tmp");
  chmod(folder.path().c_str(), 0755);
  prepare(folder.path());
  const std::string mine = folder.Path("mine");
  mkdir(mine.c_str(), 0700);
  if (geteuid() == 0 && chown(mine.c_str(), kNobody, kNobody) != 0) Fail("folder");
  sigset_t awaited, before;
  sigemptyset(&awaited);
  for (const int signal : {SIGCHLD, SIGTERM, SIGINT, SIGHUP}) sigaddset(&awaited, signal);
  sigprocmask(SIG_BLOCK, &awaited, &before);
  prctl(PR_SET_CHILD_SUBREAPER, 1);
  StandBy(folder.path());
  const pid_t guard = getpid();
  const pid_t child = fork();
  if (child < 0) Fail("fork");
  if (child == 0) {
    sigprocmask(SIG_SETMASK, &before, nullptr);
    closefrom(3);  // the guard's end of the pipe among them
    BecomeOrdinary();
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != guard) std::_Exit(kBroken);
    const int status = tests(folder.path());
    std::fflush(nullptr);
    std::_Exit(status);
  }
  const int status = StatusOf(child, awaited);
  EndAllLeft();
  if (WIFEXITED(status)) return WEXITSTATUS(status);
  std::fprintf(stderr, "the tests ended by signal %d\n", WTERMSIG(status));
  return kBroken;
}

}  // namespace zendrix::desktop
