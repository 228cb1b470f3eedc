// Other processes for tests: a function run in a fork of the test, with a pipe to each side.
#pragma once

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <stdexcept>
#include <utility>

namespace zendrix::test {

class ChildProcess {
 public:
  // What the child has of the outside: one byte at a time to and from the parent.
  class Line {
   public:
    Line(int in, int out) : in_(in), out_(out) {}
    void Tell(char c) const {
      if (write(out_, &c, 1) != 1) _exit(99);
    }
    // Waits for a byte; 0 when the other side is gone.
    char Hear() const {
      char c = 0;
      return read(in_, &c, 1) == 1 ? c : '\0';
    }
    int in() const { return in_; }
    // Goes on as another program, with the line as its input and output. Returns when that fails.
    void Become(const char* program) const {
      dup2(in_, STDIN_FILENO);
      dup2(out_, STDOUT_FILENO);
      execlp(program, program, nullptr);
    }

   private:
    int in_;
    int out_;
  };

  // The child's exit status is what `body` returns.
  explicit ChildProcess(const std::function<int(const Line& parent)>& body) {
    int to_child[2];
    int to_parent[2];
    if (pipe(to_child) != 0 || pipe(to_parent) != 0) throw std::runtime_error("no pipe");
    pid_ = fork();
    if (pid_ < 0) throw std::runtime_error("no child process");
    if (pid_ == 0) {
      close(to_child[1]);
      close(to_parent[0]);
      int status = 98;
      try {
        status = body(Line(to_child[0], to_parent[1]));
      } catch (...) {
      }
      _exit(status);
    }
    close(to_child[0]);
    close(to_parent[1]);
    in_ = to_parent[0];
    out_ = to_child[1];
  }
  ChildProcess(ChildProcess&& other) noexcept
      : pid_(std::exchange(other.pid_, -1)),
        in_(std::exchange(other.in_, -1)),
        out_(std::exchange(other.out_, -1)) {}
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  ~ChildProcess() {
    if (pid_ > 0) Kill();
    if (in_ >= 0) close(in_);
    if (out_ >= 0) close(out_);
  }

  pid_t pid() const { return pid_; }
  void Tell(char c) const {
    if (write(out_, &c, 1) != 1) throw std::runtime_error("the child is gone");
  }
  // The child's next byte; 0 when it has ended or says nothing for a minute.
  char Hear() const {
    pollfd waiting{in_, POLLIN, 0};
    char c = 0;
    if (poll(&waiting, 1, 60000) <= 0 || read(in_, &c, 1) != 1) return '\0';
    return c;
  }
  void Kill() {
    kill(pid_, SIGKILL);
    Wait();
  }
  // The exit status, or 256 and the signal's number.
  int Wait() {
    int status = 0;
    waitpid(pid_, &status, 0);
    pid_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 256 + WTERMSIG(status);
  }

 private:
  pid_t pid_ = -1;
  int in_ = -1;
  int out_ = -1;
};

// Runs `body` in a process without special rights, also when the tests are run by the administrator.
inline int AsOrdinaryUser(const std::function<int()>& body) {
  constexpr unsigned kNobody = 65534;
  ChildProcess child([&](const ChildProcess::Line&) {
    if (geteuid() == 0 && (setgid(kNobody) != 0 || setuid(kNobody) != 0)) return 97;
    return body();
  });
  return child.Wait();
}

}  // namespace zendrix::test
