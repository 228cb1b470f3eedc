#include "platform/linux/linux_shell.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <string_view>

#include "platform/linux/clean_environment.h"
#include "platform/linux/posix.h"
#include "platform/windows_1252.h"

namespace zendrix::platform {
namespace {

// Attributes and file actions of a detached child, freed together.
class SpawnSettings {
 public:
  SpawnSettings() {
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

// Takes the child's end off the process table whenever it comes. Without a thread it is taken off when this
// process ends.
void ReapInBackground(pid_t child) {
  RunInBackground([child] {
    while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
    }
  });
}

// A list as the system takes it; good while `texts` is.
std::vector<char*> Pointers(const std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (const std::string& text : texts) pointers.push_back(const_cast<char*>(text.c_str()));
  pointers.push_back(nullptr);
  return pointers;
}

Status Start(const std::string& program, const std::vector<std::string>& arguments) {
  const std::vector<std::string> environment = EnvironmentForOthers();
  const SpawnSettings settings;
  pid_t child = 0;
  const int failure = posix_spawn(&child, program.c_str(), settings.actions(), settings.attributes(),
                                  Pointers(arguments).data(), Pointers(environment).data());
  if (failure != 0) return ErrorFromErrno(failure, program);
  ReapInBackground(child);
  return Done{};
}

bool IsControl(char c) {
  return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

// "http://...", "https://...": a letter, then letters, digits, "+", "-", ".", then "://".
bool IsAddress(std::string_view document) {
  const std::string_view scheme = document.substr(0, document.find("://"));
  if (scheme.size() == document.size() || scheme.empty()) return false;
  const auto letter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
  return letter(scheme.front()) && std::all_of(scheme.begin(), scheme.end(), [&](char c) {
           return letter(c) || (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
         });
}

}  // namespace

Status LinuxShell::Open(const std::string& document) {
  if (document.empty() || document.front() == '-' ||
      std::any_of(document.begin(), document.end(), IsControl)) {
    return Error{ErrorKind::kOther, "not a document that can be opened"};
  }
  const std::string opener = FindProgram("xdg-open");
  if (opener.empty()) return ErrorFromErrno(ENOENT, "xdg-open");
  return Start(opener, {opener, IsAddress(document) ? Utf8FromBytes(document) : document});
}

Status LinuxShell::RunHidden(const std::vector<std::string>& arguments) {
  if (arguments.empty() || arguments.front().empty() ||
      std::any_of(arguments.begin(), arguments.end(), HasNul)) {
    return Error{ErrorKind::kOther, "not a command that can be run"};
  }
  const std::string& name = arguments.front();
  const std::string program = name.find('/') == std::string::npos ? FindProgram(name) : name;
  if (program.empty()) return ErrorFromErrno(ENOENT, name);
  return Start(program, arguments);
}

}  // namespace zendrix::platform
