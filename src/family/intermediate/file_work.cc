#include "family/intermediate/file_work.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/random.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>

#include "family/intermediate/attributes.h"
#include "family/intermediate/hex.h"
#include "family/intermediate/sha256.h"

namespace zendrix::family {
namespace {

constexpr std::size_t kBlock = 1 << 16;
constexpr std::size_t kSmallFile = 1 << 16;

[[noreturn]] void RefuseWrite() {
  switch (errno) {
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      throw Refused{"There is not enough room on the disk. Nothing was changed."};
    case EROFS:
      throw Refused{"The disk cannot be written to. Nothing was changed."};
    case EACCES:
    case EPERM:
      throw Refused{"You may not change this file. Nothing was changed."};
    default:
      throw Refused{"The disk did not take the change. Nothing was changed."};
  }
}

void WriteAt(int file, const char* bytes, std::size_t size, off_t position) {
  while (size > 0) {
    const ssize_t written = ::pwrite(file, bytes, size, position);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) RefuseWrite();
    bytes += written;
    position += written;
    size -= static_cast<std::size_t>(written);
  }
}

// The bytes of a hole that begins at the position, which are all 0, added to the hash; where it ends. Costs
// time and no room.
off_t AddHole(const Descriptor& file, off_t position, Sha256& hash, Budget* budget) {
  static constexpr std::array<char, kBlock> kZeros = {};
  struct stat status = {};
  off_t data = ::lseek(file.get(), position, SEEK_DATA);
  // Behind the last data there may be a hole up to the end. A file system without holes says nothing.
  if (data < 0 && errno == ENXIO && ::fstat(file.get(), &status) == 0) data = status.st_size;
  while (position < data) {
    const auto part = std::min(static_cast<std::size_t>(data - position), kZeros.size());
    hash.Add(kZeros.data(), part);
    position += static_cast<off_t>(part);
    if (budget) budget->SpendTime(part);
  }
  return position;
}

// The thing itself that a descriptor stands for; opened or changed by this path it cannot be another one.
std::string PathOf(const Descriptor& handle) {
  return "/proc/self/fd/" + std::to_string(handle.get());
}

bool Compare(int folder, const std::string& name, const Manifest& manifest,
             Descriptor (*open)(const Descriptor& handle)) {
  struct stat status = {};
  const Descriptor handle = OpenHandle(folder, name, status);
  if (!handle.valid() || !S_ISREG(status.st_mode)) return false;
  if (static_cast<std::uint64_t>(status.st_size) != manifest.size) return false;
  const Descriptor file = open(handle);
  try {
    return file.valid() && HashAndCopy(file, manifest.size, -1) == manifest.sha256;
  } catch (const Refused&) {
    return false;
  }
}

}  // namespace

std::string RandomName() {
  std::array<unsigned char, 16> bytes = {};
  if (::getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size()))
    throw Refused{"The computer is not ready yet. Nothing was changed."};
  return Hex(bytes.data(), bytes.size());
}

std::string HashAndCopy(const Descriptor& file, std::uint64_t size, int copy, Budget* budget) {
  Sha256 hash;
  std::array<char, kBlock> block;
  off_t position = 0;
  for (;;) {
    position = AddHole(file, position, hash, budget);
    const ssize_t got = ::pread(file.get(), block.data(), block.size(), position);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) throw Refused{"The file could not be read. Nothing was changed."};
    if (got == 0) break;
    if (static_cast<std::uint64_t>(position + got) > size)
      throw Refused{"The file is being written to. Try again in a moment."};
    hash.Add(block.data(), static_cast<std::size_t>(got));
    if (budget) budget->SpendTime(static_cast<std::uint64_t>(got));
    if (copy >= 0) {
      if (budget) budget->SpendBytes(static_cast<std::uint64_t>(got));
      WriteAt(copy, block.data(), static_cast<std::size_t>(got), position);
    }
    position += got;
  }
  // A hole at the end was not written.
  if (copy >= 0 && ::ftruncate(copy, position) != 0) RefuseWrite();
  return hash.Digits();
}

Descriptor CreateFile(int folder, const std::string& name) {
  Descriptor file(::openat(folder, name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                           S_IRUSR | S_IWUSR));
  if (!file.valid()) RefuseWrite();
  return file;
}

void WriteNewFile(int folder, const std::string& name, const std::string& bytes) {
  const Descriptor file = CreateFile(folder, name);
  try {
    WriteAt(file.get(), bytes.data(), bytes.size(), 0);
    SyncFile(file);
  } catch (const Refused&) {
    Remove(folder, name);
    throw;
  }
}

std::string ReadSmallFile(int folder, const std::string& name) {
  struct stat status = {};
  const Descriptor handle = OpenHandle(folder, name, status);
  const Descriptor file = S_ISREG(status.st_mode) ? OpenForReading(handle) : Descriptor();
  std::string text(kSmallFile, '\0');
  const ssize_t got = file.valid() ? ::pread(file.get(), text.data(), text.size(), 0) : 0;
  text.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
  return text;
}

std::vector<std::string> NamesIn(int folder) {
  std::vector<std::string> names;
  const int again = ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (again < 0) return names;
  const std::unique_ptr<DIR, int (*)(DIR*)> listing(::fdopendir(again), ::closedir);
  if (!listing) {
    ::close(again);
    return names;
  }
  while (const dirent* entry = ::readdir(listing.get())) names.emplace_back(entry->d_name);
  return names;
}

bool Exists(int folder, const std::string& name) {
  struct stat status = {};
  return ::fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0;
}

void Remove(int folder, const std::string& name) {
  ::unlinkat(folder, name.c_str(), 0);
}

bool MayChange(int folder) {
  return ::faccessat(folder, ".", W_OK | X_OK, AT_EACCESS) == 0;
}

Descriptor OpenHandle(int folder, const std::string& name, struct stat& status) {
  Descriptor handle(::openat(folder, name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
  if (handle.valid() && ::fstat(handle.get(), &status) != 0) return Descriptor();
  return handle;
}

Descriptor OpenForReading(const Descriptor& handle) {
  constexpr int kFlags = O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  const std::string path = PathOf(handle);
  // Looking at a file is no reason to change its access time. Only its owner may ask for that.
  const int quiet = ::open(path.c_str(), kFlags | O_NOATIME);
  return Descriptor(quiet >= 0 || errno != EPERM ? quiet : ::open(path.c_str(), kFlags));
}

Descriptor OpenInSpite(const Descriptor& handle) {
  struct stat status = {};
  Descriptor file = OpenForReading(handle);
  if (file.valid() || ::fstat(handle.get(), &status) != 0 || !SetMode(handle, S_IRUSR)) return file;
  file = OpenForReading(handle);
  SetMode(handle, status.st_mode & 07777U);
  return file;
}

bool SetMode(const Descriptor& handle, mode_t mode) {
  return ::chmod(PathOf(handle).c_str(), mode) == 0;
}

bool MakeOwn(const Descriptor& file) {
  struct stat status = {};
  if (::fstat(file.get(), &status) != 0) return false;
  const bool another = ::geteuid() == 0 && status.st_uid != 0;
  if (another && !ChangeOwner(file, 0, 0)) return false;
  return ::fchmod(file.get(), 0) == 0;
}

bool RenameNoReplace(int from_folder, const std::string& from, int to_folder, const std::string& to) {
  if (::renameat2(from_folder, from.c_str(), to_folder, to.c_str(), RENAME_NOREPLACE) == 0) return true;
  if (errno == EXDEV) return false;
  if (errno == EEXIST) throw Refused{"There is a file of that name already. Nothing was changed."};
  if (errno == ENOENT) throw Refused{"The file is no longer there. Nothing was changed."};
  RefuseWrite();
}

void SyncFolder(int folder) {
  // A handle of a folder cannot be flushed; one that may be written but not listed has to do without.
  const Descriptor again(::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (again.valid()) ::fsync(again.get());
}

void SyncFile(const Descriptor& file) {
  if (::fsync(file.get()) != 0) RefuseWrite();
}

void Restore(const Descriptor& file, const Manifest& manifest) {
  struct stat status = {};
  if (::fstat(file.get(), &status) != 0) RefuseWrite();
  // Not without need: a change of owner is a matter of the superuser.
  const bool another = status.st_uid != manifest.owner || status.st_gid != manifest.group;
  if (another && !ChangeOwner(file, manifest.owner, manifest.group)) RefuseWrite();
  if (::fchmod(file.get(), manifest.mode & 07777U) != 0) RefuseWrite();
  const std::array<timespec, 2> times = {manifest.accessed, manifest.modified};
  if (::futimens(file.get(), times.data()) != 0) RefuseWrite();
  // The system drops a set-group-id bit without a word when the group is not one's own.
  if (::fstat(file.get(), &status) != 0 || (status.st_mode & 07777U) != manifest.mode)
    throw Refused{"You may not give this file its permissions back. Nothing was changed."};
}

bool IsStill(int folder, const std::string& name, const struct stat& status) {
  struct stat now = {};
  return ::fstatat(folder, name.c_str(), &now, AT_SYMLINK_NOFOLLOW) == 0 && now.st_dev == status.st_dev &&
         now.st_ino == status.st_ino;
}

bool Holds(int folder, const std::string& name, const Manifest& manifest) {
  return Compare(folder, name, manifest, OpenForReading);
}

bool HoldsInSpite(int folder, const std::string& name, const Manifest& manifest) {
  return Compare(folder, name, manifest, OpenInSpite);
}

}  // namespace zendrix::family
