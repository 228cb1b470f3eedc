#include "platform/linux/left_overs.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <string_view>

#include "platform/linux/posix.h"

namespace zendrix::platform {
namespace {

bool IsTemporaryName(std::string_view name) {
  return name.starts_with(kTemporaryPrefix) && name.ends_with(kTemporarySuffix);
}

// Looks at an entry without ever waiting for it: the name can be anything by now.
void RemoveIfLeftOver(int folder, const char* name) {
  const FileDescriptor file(openat(folder, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  struct stat status {};
  if (!file || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return;
  if (flock(file.get(), LOCK_EX | LOCK_NB) == 0) unlinkat(folder, name, 0);
}

}  // namespace

bool ClaimTemporary(int fd) {
  // A file system without locks has no sweepers either.
  if (flock(fd, LOCK_EX | LOCK_NB) != 0) return errno != EWOULDBLOCK;
  struct stat status {};
  return fstat(fd, &status) != 0 || status.st_nlink > 0;
}

void SweepLeftOvers(const std::string& folder) {
  const std::unique_ptr<DIR, int (*)(DIR*)> directory(opendir(folder.c_str()), closedir);
  if (!directory) return;
  while (const dirent* entry = readdir(directory.get())) {
    if (IsTemporaryName(entry->d_name)) RemoveIfLeftOver(dirfd(directory.get()), entry->d_name);
  }
}

}  // namespace zendrix::platform
