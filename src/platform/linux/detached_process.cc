#include "platform/linux/detached_process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "platform/linux/clean_environment.h"
#include "platform/linux/posix.h"

namespace zendrix::platform {
namespace {

// Attributes and file actions of a detached child, freed together.
class SpawnSettings {
 public:
  explicit SpawnSettings(int folder) {
    posix_spawnattr_init(&attributes_);
    posix_spawn_file_actions_init(&actions_);
    // The child begins with no signal blocked or ignored, whatever this process does with them.
    sigset_t none;
    sigset_t all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_setsigmask(&attributes_, &none);
    posix_spawnattr_setsigdefault(&attributes_, &all);
    posix_spawnattr_setflags(&attributes_,
                             POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions_, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions_, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    if (folder >= 0) posix_spawn_file_actions_addfchdir_np(&actions_, folder);
    posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1);
  }
  SpawnSettings(const SpawnSettings&) = delete;
  SpawnSettings& operator=(const SpawnSettings&) = delete;
  ~SpawnSettings() {
    posix_spawn_file_actions_destroy(&actions_);
    posix_spawnattr_destroy(&attributes_);
  }

  const posix_spawnattr_t* attributes() const { return &attributes_; }
  const posix_spawn_file_actions_t* actions() const { return &actions_; }

 private:
  posix_spawnattr_t attributes_;
  posix_spawn_file_actions_t actions_;
};

// A list as the system takes it; good while `texts` is.
std::vector<char*> Pointers(const std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (const std::string& text : texts) pointers.push_back(const_cast<char*>(text.c_str()));
  pointers.push_back(nullptr);
  return pointers;
}

}  // namespace

Result<pid_t> StartDetached(const std::string& program, const std::vector<std::string>& arguments,
                            int folder) {
  const std::vector<std::string> environment = EnvironmentForOthers();
  const SpawnSettings settings(folder);
  pid_t child = 0;
  const int failure = posix_spawn(&child, program.c_str(), settings.actions(), settings.attributes(),
                                  Pointers(arguments).data(), Pointers(environment).data());
  if (failure != 0) return ErrorFromErrno(failure, program);
  return child;
}

void ReapInBackground(pid_t child) {
  RunInBackground([child] {
    while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
    }
  });
}

}  // namespace zendrix::platform
