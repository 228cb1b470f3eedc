// What the file systems in memory have in common: contents that streams share with their file, and paths in
// one normal form.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/files.h"

namespace zendrix::platform {

struct MemoryContent {
  explicit MemoryContent(std::string bytes = {});
  std::string bytes;
  const std::uint64_t number;  // of its own, like that of a file on a disk
};

// Reads a content as it is at the time of each read. `before_read`, when set, is asked first, with the
// position; its refusal is the read's outcome.
class MemoryStream : public ReadStream {
 public:
  using Gate = std::function<Status(std::int64_t position)>;
  explicit MemoryStream(std::shared_ptr<const MemoryContent> content, Gate before_read = {})
      : content_(std::move(content)), before_read_(std::move(before_read)) {}

  Result<std::size_t> Read(char* buffer, std::size_t size) override;
  Status Seek(std::int64_t offset) override;
  std::optional<FileIdentity> Identity() override { return FileIdentity{0, content_->number}; }

 private:
  std::shared_ptr<const MemoryContent> content_;
  Gate before_read_;
  std::int64_t position_ = 0;
};

// Without doubled separators, "." parts and a trailing separator. ".." parts stay: what they mean depends on
// links.
std::string NormalPath(std::string_view path);
// Everything before the last separator: "/" for "/a", "." for "a".
std::string FolderOf(std::string_view normal_path);
// Everything behind the last separator.
std::string NameOf(std::string_view normal_path);
// The first name on the way from `folder` to `normal_path`, or empty when the path does not lie inside the
// folder.
std::string ChildName(std::string_view folder, std::string_view normal_path);

Error Refusal(ErrorKind kind, std::string_view path);

}  // namespace zendrix::platform
