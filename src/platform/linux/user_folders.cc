#include "platform/linux/user_folders.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "platform/files.h"
#include "platform/linux/posix.h"

namespace zendrix::platform {
namespace {

constexpr char kNoHome[] = "/nonexistent";

std::string WithoutClosingSeparators(std::string path) {
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  return path;
}

// Empty unless the variable holds an absolute path.
std::string FolderIn(const char* variable) {
  const char* const value = std::getenv(variable);
  return value && value[0] == '/' ? WithoutClosingSeparators(value) : std::string();
}

std::string Home() {
  if (std::string home = FolderIn("HOME"); !home.empty()) return home;
  const passwd* const account = getpwuid(geteuid());
  if (!account || !account->pw_dir || account->pw_dir[0] != '/') return kNoHome;
  return WithoutClosingSeparators(account->pw_dir);
}

std::string FolderOr(const char* variable, const char* below_home) {
  std::string folder = FolderIn(variable);
  return folder.empty() ? JoinPath(Home(), below_home) : folder;
}

}  // namespace

UserFolders FindUserFolders() {
  return {FolderOr("XDG_CONFIG_HOME", ".config"), FolderOr("XDG_STATE_HOME", ".local/state")};
}

Status MakePrivateFolder(const std::string& path) {
  for (std::size_t end = path.find('/', 1);; end = path.find('/', end + 1)) {
    const std::string folder = path.substr(0, end);
    struct stat status {};
    // What is there already, be it behind a link, is as its owner wants it.
    if (stat(folder.c_str(), &status) != 0 && mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST)
      return ErrorFromErrno(errno, folder);
    if (end == std::string::npos) return Done{};
  }
}

}  // namespace zendrix::platform
