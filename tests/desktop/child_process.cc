#include "desktop/child_process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <iterator>
#include <stdexcept>
#include <utility>

#include "desktop/eventually.h"

namespace zendrix::desktop {
namespace {

std::vector<char*> Pointers(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

}  // namespace

ChildProcess::ChildProcess(std::vector<std::string> command, const Environment& environment,
                           std::string output)
    : output_(std::move(output)) {
  int ends[2] = {-1, -1};
  if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe to be had");
  for (std::string& word : command)
    if (const auto at = word.find("{fd}"); at != std::string::npos)
      word.replace(at, 4, std::to_string(ends[1]));
  std::vector<std::string> settings;
  for (const auto& [name, value] : environment) settings.push_back(name + "=" + value);
  const std::vector<char*> arguments = Pointers(command);
  const std::vector<char*> variables = Pointers(settings);
  const pid_t parent = getpid();
  process_ = fork();
  // Other threads run beside this one: from here on only what a signal handler may do.
  if (process_ == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) _exit(127);
    setpgid(0, 0);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    const int file = open(output_.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    dup2(open("/dev/null", O_RDONLY), 0);
    dup2(file, 1);
    dup2(file, 2);
    fcntl(ends[1], F_SETFD, 0);
    execve(arguments[0], arguments.data(), variables.data());
    _exit(127);
  }
  close(ends[1]);
  line_ = ends[0];
  if (process_ < 0) throw std::runtime_error("no process to be had");
  setpgid(process_, process_);
}

ChildProcess::ChildProcess(ChildProcess&& other) noexcept {
  *this = std::move(other);
}

ChildProcess& ChildProcess::operator=(ChildProcess&& other) noexcept {
  std::swap(process_, other.process_);
  std::swap(line_, other.line_);
  std::swap(status_, other.status_);
  std::swap(output_, other.output_);
  return *this;
}

bool ChildProcess::Running() {
  return process_ > 0 && !status();
}

std::optional<int> ChildProcess::status() {
  int status = 0;
  if (!status_ && process_ > 0 && waitpid(process_, &status, WNOHANG) == process_)
    status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return status_;
}

void ChildProcess::Send(int signal) const {
  if (process_ > 0 && !status_) kill(process_, signal);
}

void ChildProcess::End() {
  if (process_ <= 0) return;
  kill(-process_, SIGKILL);
  if (!status_) waitpid(process_, nullptr, 0);
  close(line_);
  process_ = 0;
}

std::string ChildProcess::ReadLine() const {
  std::string line;
  char next = 0;
  for (pollfd wait{line_, POLLIN, 0};
       poll(&wait, 1, kPatienceMs) > 0 && read(line_, &next, 1) == 1 && next != '\n';)
    line += next;
  if (next != '\n') throw std::runtime_error("a program did not come up:\n" + Output());
  return line;
}

std::string ChildProcess::Output() const {
  std::ifstream file(output_, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace zendrix::desktop
