#include "platform/memory/memory_stream.h"

#include <algorithm>
#include <atomic>
#include <utility>

namespace zendrix::platform {
namespace {

std::string_view TextOf(ErrorKind kind) {
  switch (kind) {
    case ErrorKind::kNotFound:
      return "no such file or folder";
    case ErrorKind::kPermissionDenied:
      return "permission denied";
    case ErrorKind::kAlreadyExists:
      return "already exists";
    case ErrorKind::kNotRegular:
      return "not a plain file";
    case ErrorKind::kNoSpace:
      return "no space left";
    case ErrorKind::kUnavailable:
      return "not available";
    case ErrorKind::kOther:
      break;
  }
  return "failed";
}

std::uint64_t NextNumber() {
  static std::atomic<std::uint64_t> last = 0;
  return ++last;
}

}  // namespace

MemoryContent::MemoryContent(std::string contents) : bytes(std::move(contents)), number(NextNumber()) {}

Result<std::size_t> MemoryStream::Read(char* buffer, std::size_t size) {
  if (before_read_) {
    if (const Status allowed = before_read_(position_); !allowed) return allowed.error();
  }
  const auto from = static_cast<std::size_t>(position_);
  if (from >= content_->bytes.size()) return std::size_t{0};
  const std::size_t got = content_->bytes.copy(buffer, size, from);
  position_ += static_cast<std::int64_t>(got);
  return got;
}

Status MemoryStream::Seek(std::int64_t offset) {
  if (offset < 0) return Error{ErrorKind::kOther, "a position before the beginning of the file"};
  position_ = offset;
  return Done{};
}

std::string NormalPath(std::string_view path) {
  std::string normal;
  if (!path.empty() && path.front() == '/') normal = "/";
  while (!path.empty()) {
    const std::size_t end = std::min(path.find('/'), path.size());
    const std::string_view part = path.substr(0, end);
    path.remove_prefix(std::min(end + 1, path.size()));
    if (part.empty() || part == ".") continue;
    if (!normal.empty() && normal.back() != '/') normal += '/';
    normal += part;
  }
  return normal.empty() ? "." : normal;
}

std::string FolderOf(std::string_view normal_path) {
  const std::size_t slash = normal_path.rfind('/');
  if (slash == std::string_view::npos) return ".";
  return slash == 0 ? "/" : std::string(normal_path.substr(0, slash));
}

std::string NameOf(std::string_view normal_path) {
  const std::size_t slash = normal_path.rfind('/');
  return std::string(slash == std::string_view::npos ? normal_path : normal_path.substr(slash + 1));
}

std::string ChildName(std::string_view folder, std::string_view normal_path) {
  std::string_view rest = normal_path;
  if (folder == ".") {
    if (rest == "." || rest.starts_with('/')) return {};
  } else {
    if (!rest.starts_with(folder)) return {};
    rest.remove_prefix(folder.size());
    if (folder != "/") {
      if (!rest.starts_with('/')) return {};
      rest.remove_prefix(1);
    }
  }
  return std::string(rest.substr(0, rest.find('/')));
}

Error Refusal(ErrorKind kind, std::string_view path) {
  std::string text(path);
  text += ": ";
  text += TextOf(kind);
  return Error{kind, std::move(text)};
}

}  // namespace zendrix::platform
