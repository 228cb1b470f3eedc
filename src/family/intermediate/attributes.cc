#include "family/intermediate/attributes.h"

#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>

namespace zendrix::family {
namespace {

constexpr int kAttempts = 8;

// `read(buffer, size)` with a size of 0 tells how much room is needed. Asked again when it grew meanwhile.
template <class Read>
bool ReadAll(Read&& read, std::string& bytes) {
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    const ssize_t needed = read(nullptr, 0);
    if (needed < 0) return false;
    bytes.resize(static_cast<std::size_t>(needed));
    const ssize_t got = needed == 0 ? 0 : read(bytes.data(), bytes.size());
    if (got < 0 && errno == ERANGE) continue;
    if (got < 0) return false;
    bytes.resize(static_cast<std::size_t>(got));
    return true;
  }
  return false;
}

}  // namespace

Attributes AttributesOf(const Descriptor& file) {
  const Refused unreadable{"The extended attributes of the file cannot be read. Nothing was changed."};
  Attributes attributes;
  std::string names;
  if (!ReadAll([&](char* to, std::size_t size) { return ::flistxattr(file.get(), to, size); }, names)) {
    if (errno == ENOTSUP || errno == ENOSYS) return attributes;
    throw unreadable;
  }
  for (std::size_t start = 0; start < names.size();) {
    const std::string name = names.c_str() + start;
    start += name.size() + 1;
    std::string value;
    const auto read = [&](char* to, std::size_t size) {
      return ::fgetxattr(file.get(), name.c_str(), to, size);
    };
    if (!ReadAll(read, value)) throw unreadable;
    attributes.emplace(name, std::move(value));
  }
  return attributes;
}

bool GiveAttributes(const Descriptor& file, const Attributes& attributes) {
  const Attributes has = AttributesOf(file);
  for (const auto& [name, value] : attributes) {
    const auto found = has.find(name);
    if (found != has.end() && found->second == value) continue;
    if (::fsetxattr(file.get(), name.c_str(), value.data(), value.size(), 0) != 0) return false;
  }
  return true;
}

bool ChangeOwner(const Descriptor& file, unsigned owner, unsigned group) {
  const Attributes before = AttributesOf(file);
  return ::fchown(file.get(), owner, group) == 0 && GiveAttributes(file, before);
}

}  // namespace zendrix::family
