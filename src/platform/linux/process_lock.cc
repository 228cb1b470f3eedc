#include "platform/linux/process_lock.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace zendrix::platform {
namespace {

// One byte each; records may lie behind the end of a file.
constexpr off_t kHeld = 0;
constexpr off_t kReady = 1;

struct flock WriteLockOn(off_t record) {
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  lock.l_start = record;
  lock.l_len = 1;
  return lock;
}

// Where no lock can be asked for there is no holder either.
std::optional<pid_t> HolderOfRecord(const FileDescriptor& file, off_t record) {
  struct flock lock = WriteLockOn(record);
  if (fcntl(file.get(), F_GETLK, &lock) != 0 || lock.l_type == F_UNLCK) return std::nullopt;
  return lock.l_pid > 0 ? lock.l_pid : 0;
}

}  // namespace

LockOutcome ProcessLock::Acquire(const std::string& path) {
  if (HasNul(path)) return LockOutcome::kUnusable;
  FileDescriptor file(open(path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC,
                           S_IRUSR | S_IWUSR));
  struct stat status {};
  if (!file || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode) || status.st_uid != geteuid() ||
      status.st_nlink != 1) {
    return LockOutcome::kUnusable;
  }
  struct flock lock = WriteLockOn(kHeld);
  if (fcntl(file.get(), F_SETLK, &lock) != 0) {
    return errno == EAGAIN || errno == EACCES ? LockOutcome::kTaken : LockOutcome::kUnusable;
  }
  file_ = std::move(file);
  return LockOutcome::kHeld;
}

void ProcessLock::SetReady() {
  struct flock lock = WriteLockOn(kReady);
  fcntl(file_.get(), F_SETLK, &lock);
}

bool ProcessLock::CanBeFound() const {
  struct stat status {};
  return fstat(file_.get(), &status) == 0 && status.st_nlink > 0;
}

std::optional<LockHolder> HolderOf(const std::string& path) {
  if (HasNul(path)) return std::nullopt;
  const FileDescriptor file(open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  const auto holder = HolderOfRecord(file, kHeld);
  if (!holder) return std::nullopt;
  return LockHolder{*holder, HolderOfRecord(file, kReady) == holder};
}

}  // namespace zendrix::platform
