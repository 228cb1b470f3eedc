#include "family/intermediate/run_tool.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "family/intermediate/descriptor.h"

namespace zendrix::family {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kMostText = std::size_t{1} << 20;

// The child process, or nothing. Its standard output is the pipe; it reads nothing and its complaints are
// lost.
std::optional<pid_t> Start(const std::vector<std::string>& command, int output) {
  posix_spawn_file_actions_t actions;
  if (::posix_spawn_file_actions_init(&actions) != 0) return std::nullopt;
  ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  ::posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
  ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  std::vector<char*> arguments;
  for (const auto& word : command) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  std::string path = "PATH=/usr/bin:/bin", language = "LC_ALL=C";
  std::array<char*, 3> environment = {path.data(), language.data(), nullptr};
  pid_t child = 0;
  const int failed =
      ::posix_spawn(&child, command[0].c_str(), &actions, nullptr, arguments.data(), environment.data());
  ::posix_spawn_file_actions_destroy(&actions);
  if (failed != 0) return std::nullopt;
  return child;
}

// False when nothing came before the time was over.
bool WaitFor(int descriptor, Clock::time_point end) {
  for (;;) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
    pollfd readable = {descriptor, POLLIN, 0};
    const int ready = left > 0 ? ::poll(&readable, 1, static_cast<int>(left)) : 0;
    if (ready < 0 && errno == EINTR) continue;
    return ready > 0;
  }
}

// Reads until the other end is closed; false when the time is over.
bool ReadToEnd(int from, Clock::time_point end, std::string& text) {
  std::array<char, 4096> block;
  for (;;) {
    if (!WaitFor(from, end)) return false;
    const ssize_t got = ::read(from, block.data(), block.size());
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return got == 0;
    text.append(block.data(), std::min(static_cast<std::size_t>(got), kMostText - text.size()));
  }
}

}  // namespace

std::optional<ToolAnswer> RunTool(const std::vector<std::string>& command, std::chrono::milliseconds most) {
  const auto end = Clock::now() + most;
  std::array<int, 2> ends = {};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return std::nullopt;
  const Descriptor from(ends[0]);
  Descriptor to(ends[1]);
  const auto child = Start(command, to.get());
  to = Descriptor();
  if (!child) return std::nullopt;
  ToolAnswer answer;
  // A program may close its output and live on.
  const Descriptor running(static_cast<int>(::syscall(SYS_pidfd_open, *child, 0)));
  const bool whole =
      ReadToEnd(from.get(), end, answer.text) && running.valid() && WaitFor(running.get(), end);
  int status = 0;
  if (!whole) ::kill(*child, SIGKILL);
  while (::waitpid(*child, &status, 0) < 0 && errno == EINTR) {
  }
  if (!whole || !WIFEXITED(status)) return std::nullopt;
  answer.status = WEXITSTATUS(status);
  return answer;
}

}  // namespace zendrix::family
