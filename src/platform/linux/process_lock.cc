#include "platform/linux/process_lock.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <iomanip>
#include <sstream>
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

std::optional<LockHolder> HolderToldByTheKernel(const std::string& path) {
  struct stat status {};
  if (lstat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  std::ifstream table("/proc/locks");
  std::ostringstream text;
  text << table.rdbuf();
  std::ostringstream file;
  file << std::hex << std::setfill('0') << std::setw(2) << major(status.st_dev) << ':' << std::setw(2)
       << minor(status.st_dev) << ':' << std::dec << status.st_ino;
  return HolderInTable(text.str(), file.str());
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

std::optional<LockHolder> HolderInTable(std::string_view table, std::string_view file) {
  std::istringstream lines{std::string(table)};
  for (std::string line; std::getline(lines, line);) {
    // "1: POSIX  ADVISORY  WRITE 4711 fe:00:12345 0 1"; one that waits has "->" in the second place.
    std::istringstream fields(line);
    std::string number, kind, strictness, access, place;
    pid_t process = 0;
    off_t first = -1, last = -1;
    fields >> number >> kind >> strictness >> access >> process >> place >> first >> last;
    if (!fields || kind != "POSIX" || access != "WRITE" || place != file) continue;
    // Neighbouring records of one process are one.
    if (first <= kHeld && last >= kHeld) return LockHolder{std::max(process, 0), last >= kReady};
  }
  return std::nullopt;
}

std::optional<LockHolder> HolderOf(const std::string& path) {
  if (HasNul(path)) return std::nullopt;
  const FileDescriptor file(open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  if (!file && errno == EACCES) return HolderToldByTheKernel(path);
  const auto holder = HolderOfRecord(file, kHeld);
  if (!holder) return std::nullopt;
  return LockHolder{*holder, HolderOfRecord(file, kReady) == holder};
}

}  // namespace zendrix::platform
