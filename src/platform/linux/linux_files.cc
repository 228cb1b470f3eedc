#include "platform/linux/linux_files.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <optional>

#include "platform/linux/left_overs.h"
#include "platform/linux/posix.h"

namespace zendrix::platform {
namespace {

using FileStatus = struct stat;

Error NotRegular(const std::string& path) {
  return {ErrorKind::kNotRegular, path + ": not a plain file"};
}

Error BadName(const std::string& path) {
  return {ErrorKind::kNotFound, path.c_str() + std::string(": not a path")};
}

std::string FolderOfTarget(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

class FileStream : public ReadStream {
 public:
  FileStream(FileDescriptor file, std::string path) : file_(std::move(file)), path_(std::move(path)) {}

  Result<std::size_t> Read(char* buffer, std::size_t size) override {
    ssize_t got;
    do {
      got = pread(file_.get(), buffer, size, position_);
    } while (got < 0 && errno == EINTR);
    if (got < 0) return ErrorFromErrno(errno, path_);
    position_ += got;
    return static_cast<std::size_t>(got);
  }

  Status Seek(std::int64_t offset) override {
    if (offset < 0) return ErrorFromErrno(EINVAL, path_);
    position_ = offset;
    return Done{};
  }

  std::optional<FileIdentity> Identity() override {
    FileStatus status{};
    if (fstat(file_.get(), &status) != 0) return std::nullopt;
    return FileIdentity{status.st_dev, status.st_ino};
  }

 private:
  FileDescriptor file_;
  std::string path_;
  off_t position_ = 0;
};

// The status of a plain file, links followed.
Result<FileStatus> PlainStatus(const std::string& path) {
  if (HasNul(path)) return BadName(path);
  FileStatus status{};
  if (stat(path.c_str(), &status) != 0) return ErrorFromErrno(errno, path);
  if (!S_ISREG(status.st_mode)) return NotRegular(path);
  return status;
}

// What a write finds at its path: nothing, or the status of a plain file that may be replaced.
Result<std::optional<FileStatus>> TargetStatus(const std::string& path) {
  if (HasNul(path)) return BadName(path);
  FileStatus status{};
  if (lstat(path.c_str(), &status) != 0) {
    if (errno == ENOENT) return std::optional<FileStatus>();
    return ErrorFromErrno(errno, path);
  }
  if (!S_ISREG(status.st_mode)) return NotRegular(path);
  if (faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0) return ErrorFromErrno(errno, path);
  return std::optional<FileStatus>(status);
}

Status WriteBytes(int fd, std::string_view bytes, const std::string& path) {
  while (!bytes.empty()) {
    const ssize_t written = write(fd, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return ErrorFromErrno(errno, path);
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return Done{};
}

// Some file systems cannot flush a single file; they say EINVAL, and then there is nothing to wait for.
bool Flush(int fd) {
  return fsync(fd) == 0 || errno == EINVAL;
}

// The rename itself must reach the disk too. A folder that cannot be opened for reading is left as it is.
void FlushFolder(const std::string& folder) {
  const FileDescriptor opened(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (opened) fsync(opened.get());
}

struct Temporary {
  std::string path;
  FileDescriptor file;
};

// A fresh file in `folder` that nobody else has under any name.
Result<Temporary> MakeTemporary(const std::string& folder, mode_t mode) {
  for (int tries = 0; tries < 100; ++tries) {
    unsigned long long random = 0;
    if (getrandom(&random, sizeof random, 0) != sizeof random) return ErrorFromErrno(errno, folder);
    char name[17];
    std::snprintf(name, sizeof name, "%016llx", random);
    Temporary made{JoinPath(folder, std::string(kTemporaryPrefix) + name + kTemporarySuffix),
                   FileDescriptor()};
    made.file =
        FileDescriptor(open(made.path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
    if (made.file && ClaimTemporary(made.file.get())) return made;
    if (!made.file && errno != EEXIST) return ErrorFromErrno(errno, made.path);
  }
  return ErrorFromErrno(EEXIST, folder);
}

// Fills the temporary and makes it take the target's place.
Status Replace(Temporary& temporary, const std::string& path, const std::optional<FileStatus>& old,
               std::string_view bytes) {
  const int fd = temporary.file.get();
  if (old) {
    // An administrator's save must not take a user's file away from him; without the right to do so it just
    // stays the writer's.
    if (old->st_uid != geteuid() || old->st_gid != getegid()) {
      [[maybe_unused]] const int kept = fchown(fd, old->st_uid, old->st_gid);
    }
    if (fchmod(fd, old->st_mode & 0777) != 0) return ErrorFromErrno(errno, path);
  }
  if (Status written = WriteBytes(fd, bytes, path); !written) return written;
  // Closing tells of the last failures, but must not let go of the temporary before it has its new name.
  const FileDescriptor held(fcntl(fd, F_DUPFD_CLOEXEC, 0));
  if (!held) return ErrorFromErrno(errno, path);
  if (!Flush(fd) || !temporary.file.Close()) return ErrorFromErrno(errno, path);
  if (rename(temporary.path.c_str(), path.c_str()) != 0) return ErrorFromErrno(errno, path);
  return Done{};
}

}  // namespace

bool LinuxFiles::Exists(const std::string& path) {
  return PlainStatus(path).ok();
}

bool LinuxFiles::FolderExists(const std::string& path) {
  FileStatus status{};
  return !HasNul(path) && stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

Result<std::int64_t> LinuxFiles::Size(const std::string& path) {
  const auto status = PlainStatus(path);
  if (!status) return status.error();
  return static_cast<std::int64_t>(status.value().st_size);
}

Result<std::unique_ptr<ReadStream>> LinuxFiles::Open(const std::string& path) {
  // Looked at before it is opened, because opening a device can already do something.
  if (const auto status = PlainStatus(path); !status) return status.error();
  FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!file) return ErrorFromErrno(errno, path);
  // And again afterwards, because it can have been exchanged in between.
  FileStatus status{};
  if (fstat(file.get(), &status) != 0) return ErrorFromErrno(errno, path);
  if (!S_ISREG(status.st_mode)) return NotRegular(path);
  return std::unique_ptr<ReadStream>(std::make_unique<FileStream>(std::move(file), path));
}

Status LinuxFiles::WriteAll(const std::string& path, std::string_view bytes) {
  const auto old = TargetStatus(path);
  if (!old) return old.error();
  const std::string folder = FolderOfTarget(path);
  if (swept_.insert(folder).second) SweepLeftOvers(folder);
  auto temporary = MakeTemporary(folder, old.value() ? 0600 : 0644);
  if (!temporary) return temporary.error();
  Status replaced = Replace(temporary.value(), path, old.value(), bytes);
  if (!replaced) {
    unlink(temporary.value().path.c_str());
    return replaced;
  }
  FlushFolder(folder);
  return Done{};
}

Status LinuxFiles::Append(const std::string& path, std::string_view bytes) {
  if (HasNul(path)) return BadName(path);
  FileDescriptor file(open(
      path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0644));
  if (!file) return ErrorFromErrno(errno, path);
  FileStatus status{};
  if (fstat(file.get(), &status) != 0) return ErrorFromErrno(errno, path);
  if (!S_ISREG(status.st_mode)) return NotRegular(path);
  if (Status written = WriteBytes(file.get(), bytes, path); !written) return written;
  if (!file.Close()) return ErrorFromErrno(errno, path);
  return Done{};
}

Status LinuxFiles::Remove(const std::string& path) {
  if (HasNul(path)) return BadName(path);
  FileStatus status{};
  if (lstat(path.c_str(), &status) != 0) return ErrorFromErrno(errno, path);
  // Of a link only the link goes.
  if (!S_ISREG(status.st_mode) && !S_ISLNK(status.st_mode)) return NotRegular(path);
  if (unlink(path.c_str()) != 0) return ErrorFromErrno(errno, path);
  return Done{};
}

Status LinuxFiles::Rename(const std::string& from, const std::string& to) {
  if (HasNul(from)) return BadName(from);
  FileStatus status{};
  if (lstat(from.c_str(), &status) != 0) return ErrorFromErrno(errno, from);
  if (!S_ISREG(status.st_mode)) return NotRegular(from);
  if (const auto target = TargetStatus(to); !target) return target.error();
  // What takes the place of a good file must be on the disk first.
  {
    const FileDescriptor file(open(from.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY));
    if (file && !Flush(file.get())) return ErrorFromErrno(errno, from);
  }
  if (rename(from.c_str(), to.c_str()) != 0) return ErrorFromErrno(errno, to);
  FlushFolder(FolderOfTarget(to));
  return Done{};
}

Result<std::vector<std::string>> LinuxFiles::List(const std::string& folder) {
  if (HasNul(folder)) return BadName(folder);
  if (FileStatus status{}; stat(folder.c_str(), &status) == 0 && !S_ISDIR(status.st_mode))
    return NotRegular(folder);
  DIR* const directory = opendir(folder.c_str());
  if (!directory) return ErrorFromErrno(errno, folder);
  std::vector<std::string> names;
  errno = 0;
  while (const dirent* entry = readdir(directory)) {
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") names.emplace_back(name);
    errno = 0;
  }
  const int failure = errno;
  closedir(directory);
  if (failure != 0) return ErrorFromErrno(failure, folder);
  return names;
}

}  // namespace zendrix::platform
