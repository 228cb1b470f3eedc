#include "act/whose.h"

#include <sys/stat.h>

#include <algorithm>

namespace zendrix::act {
namespace {

bool IsBelow(const std::string& path, const std::string& folder) {
  struct stat wanted = {}, step = {};
  if (folder.empty() || ::stat(folder.c_str(), &wanted) != 0) return false;
  for (std::size_t end = path.rfind('/'); end != std::string::npos && end > 0;
       end = path.rfind('/', end - 1)) {
    if (::stat(path.substr(0, end).c_str(), &step) == 0 && step.st_dev == wanted.st_dev &&
        step.st_ino == wanted.st_ino)
      return true;
  }
  return false;
}

// Accounts of services have homes that are the system's.
bool IsOwnHome(const Whose& caller) {
  struct stat home = {};
  return !caller.home.empty() && ::stat(caller.home.c_str(), &home) == 0 && home.st_uid == caller.user;
}

}  // namespace

bool IsOthers(const std::string& path, uid_t owner, const Whose& caller) {
  const bool shared = std::any_of(caller.shared_starts.begin(), caller.shared_starts.end(),
                                  [&](const std::string& folder) { return IsBelow(path, folder); });
  if (shared) return true;
  return owner != caller.user && !(IsOwnHome(caller) && IsBelow(path, caller.home));
}

}  // namespace zendrix::act
