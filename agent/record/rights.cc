#include "agent/record/rights.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "platform/linux/posix.h"

namespace zendrix::agent {
namespace {

constexpr char kAccessList[] = "system.posix_acl_access";
constexpr std::size_t kListLimit = 8192;  // a thousand names

bool GiveRights(int to, int from) {
  struct stat facts = {};
  if (fstat(from, &facts) != 0 || fchmod(to, facts.st_mode & 0777) != 0) return false;
  std::array<char, kListLimit> list{};
  const ssize_t size = fgetxattr(from, kAccessList, list.data(), list.size());
  if (size < 0) return errno == ENODATA || errno == ENOTSUP;
  return fsetxattr(to, kAccessList, list.data(), static_cast<std::size_t>(size), 0) == 0;
}

}  // namespace

bool MakeFileLike(const std::string& path, const std::string& like) {
  constexpr int kPlain = O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
  const platform::FileDescriptor from(open(like.c_str(), O_RDONLY | kPlain));
  if (!from) return false;
  const platform::FileDescriptor to(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | kPlain, 0600));
  if (!to) return false;
  if (GiveRights(to.get(), from.get())) return true;
  unlink(path.c_str());
  return false;
}

}  // namespace zendrix::agent
