#include "platform/files.h"

namespace zendrix::platform {

Result<std::string> Files::ReadAll(const std::string& path) {
  auto stream = Open(path);
  if (!stream) return stream.error();
  std::string bytes;
  if (const auto size = Size(path)) bytes.reserve(static_cast<std::size_t>(size.value()));
  char block[65536];
  for (;;) {
    const auto got = stream.value()->Read(block, sizeof block);
    if (!got) return got.error();
    if (got.value() == 0) return bytes;
    bytes.append(block, got.value());
  }
}

std::string JoinPath(std::string_view folder, std::string_view name) {
  std::string path(folder);
  if (path.empty() || path.back() != '/') path += '/';
  path += name;
  return path;
}

}  // namespace zendrix::platform
