// A program started by a test: in a process group of its own, with exactly the environment it is given, its
// output in a file. It is killed with this object, and by the kernel when the test's process ends.
#pragma once

#include <sys/types.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace zendrix::desktop {

using Environment = std::map<std::string, std::string>;

class ChildProcess {
 public:
  ChildProcess() = default;
  // `command` begins with the program's path. "{fd}" in it becomes the number of a descriptor whose first
  // line `ReadLine` waits for.
  ChildProcess(std::vector<std::string> command, const Environment& environment, std::string output);
  ChildProcess(ChildProcess&& other) noexcept;
  ChildProcess& operator=(ChildProcess&& other) noexcept;
  ~ChildProcess() { End(); }

  pid_t id() const { return process_; }
  bool Running();
  // What it ended with, 128 and the signal's number when by a signal; nothing while it runs.
  std::optional<int> status();
  void Send(int signal) const;
  void End();
  std::string ReadLine() const;
  std::string Output() const;

 private:
  pid_t process_ = 0;
  int line_ = -1;
  std::optional<int> status_;
  std::string output_;
};

}  // namespace zendrix::desktop
