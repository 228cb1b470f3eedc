#include "platform/linux/lock_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace zendrix::platform {

bool IsPrivateFolder(const std::string& folder, bool make) {
  if (!folder.starts_with('/') || HasNul(folder)) return false;
  if (make) mkdir(folder.c_str(), S_IRWXU);
  struct stat status {};
  return lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == geteuid() &&
         (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

FileLock LockFile(const std::string& path) {
  // Each turn more means that another holder came and went.
  constexpr int kTurns = 16;
  for (int i = 0; i < kTurns; ++i) {
    FileDescriptor file(open(path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC,
                             S_IRUSR | S_IWUSR));
    struct stat status {};
    if (!file || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode) || status.st_uid != geteuid() ||
        status.st_nlink > 1) {
      return {};
    }
    if (flock(file.get(), LOCK_EX | LOCK_NB) != 0) {
      return {errno == EWOULDBLOCK ? LockOutcome::kTaken : LockOutcome::kUnusable};
    }
    // The lock is worth something on the file that others will find under this name.
    if (fstat(file.get(), &status) == 0 && status.st_nlink == 1) return {LockOutcome::kHeld, std::move(file)};
  }
  return {};
}

}  // namespace zendrix::platform
