#include "family/intermediate/file_work.h"

#include <fcntl.h>
#include <openssl/evp.h>
#include <sys/random.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>

#include "family/intermediate/hex.h"

namespace zendrix::family {
namespace {

constexpr std::size_t kBlock = 1 << 16;
constexpr std::size_t kSmallFile = 1 << 16;

[[noreturn]] void RefuseWrite() {
  if (errno == ENOSPC || errno == EDQUOT) throw Refused{"The disk is full. Nothing was changed."};
  if (errno == EROFS) throw Refused{"The disk cannot be written to. Nothing was changed."};
  if (errno == EACCES || errno == EPERM) throw Refused{"You may not change this file. Nothing was changed."};
  throw Refused{"The disk did not take the change. Nothing was changed."};
}

void WriteWhole(int file, const char* bytes, std::size_t size) {
  while (size > 0) {
    const ssize_t written = ::write(file, bytes, size);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) RefuseWrite();
    bytes += written;
    size -= static_cast<std::size_t>(written);
  }
}

}  // namespace

std::string RandomName() {
  std::array<unsigned char, 16> bytes = {};
  if (::getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size()))
    throw Refused{"The computer is not ready yet. Nothing was changed."};
  return Hex(bytes.data(), bytes.size());
}

std::string HashAndCopy(const Descriptor& file, int copy) {
  const std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context(EVP_MD_CTX_new(), EVP_MD_CTX_free);
  EVP_DigestInit_ex(context.get(), EVP_sha256(), nullptr);
  std::array<char, kBlock> block;
  off_t position = 0;
  for (;;) {
    const ssize_t got = ::pread(file.get(), block.data(), block.size(), position);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) throw Refused{"The file could not be read. Nothing was changed."};
    if (got == 0) break;
    EVP_DigestUpdate(context.get(), block.data(), static_cast<std::size_t>(got));
    if (copy >= 0) WriteWhole(copy, block.data(), static_cast<std::size_t>(got));
    position += got;
  }
  std::array<unsigned char, EVP_MAX_MD_SIZE> digest;
  unsigned int length = 0;
  EVP_DigestFinal_ex(context.get(), digest.data(), &length);
  return Hex(digest.data(), length);
}

void WriteNewFile(int folder, const std::string& name, const std::string& bytes) {
  const Descriptor file(
      ::openat(folder, name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
  if (!file.valid()) RefuseWrite();
  try {
    WriteWhole(file.get(), bytes.data(), bytes.size());
    if (::fsync(file.get()) != 0) RefuseWrite();
  } catch (const Refused&) {
    ::unlinkat(folder, name.c_str(), 0);
    throw;
  }
}

std::string ReadSmallFile(int folder, const std::string& name) {
  const Descriptor file(::openat(folder, name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  std::string text(kSmallFile, '\0');
  const ssize_t got = file.valid() ? ::pread(file.get(), text.data(), text.size(), 0) : 0;
  text.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
  return text;
}

bool RenameNoReplace(int from_folder, const std::string& from, int to_folder, const std::string& to) {
  if (::renameat2(from_folder, from.c_str(), to_folder, to.c_str(), RENAME_NOREPLACE) == 0) return true;
  if (errno == EXDEV) return false;
  if (errno == EEXIST) throw Refused{"There is a file of that name already. Nothing was changed."};
  if (errno == ENOENT) throw Refused{"The file is no longer there. Nothing was changed."};
  RefuseWrite();
}

void Restore(const Descriptor& file, const Manifest& manifest) {
  // Only the superuser may give a file to somebody; a user's own files are his already.
  if (::fchown(file.get(), manifest.owner, manifest.group) != 0 && ::geteuid() == 0) RefuseWrite();
  if (::fchmod(file.get(), manifest.mode & 07777U) != 0) RefuseWrite();
  const std::array<timespec, 2> times = {manifest.accessed, manifest.modified};
  if (::futimens(file.get(), times.data()) != 0) RefuseWrite();
}

bool IsStill(int folder, const std::string& name, const struct stat& status) {
  struct stat now = {};
  return ::fstatat(folder, name.c_str(), &now, AT_SYMLINK_NOFOLLOW) == 0 && now.st_dev == status.st_dev &&
         now.st_ino == status.st_ino;
}

}  // namespace zendrix::family
