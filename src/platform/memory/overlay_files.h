// A file system whose changes stay in memory. What was written, removed, renamed or created through it is
// seen by later calls; everything else is read from the files below, as they are at the time. The files below
// never change.
//
// A path is known by its spelling (doubled separators and "." parts apart): a folder that is reached under
// two names through links is two folders here. A write onto something that is no plain file is refused as
// below; a write onto a link or a read-only file below, which the real one refuses, succeeds in memory.
// Moving folders is not supported.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"
#include "platform/memory/memory_stream.h"

namespace zendrix::platform {

class OverlayFiles : public Files {
 public:
  // `below` must outlive the overlay.
  explicit OverlayFiles(Files& below) : below_(below) {}

  bool Exists(const std::string& path) override;
  bool FolderExists(const std::string& path) override;
  Result<std::int64_t> Size(const std::string& path) override;
  Result<std::unique_ptr<ReadStream>> Open(const std::string& path) override;
  Status WriteAll(const std::string& path, std::string_view bytes) override;
  Status Append(const std::string& path, std::string_view bytes) override;
  Status Remove(const std::string& path) override;
  Status Rename(const std::string& from, const std::string& to) override;
  Result<std::vector<std::string>> List(const std::string& folder) override;

  // Whether anything differs from the files below.
  bool Changed() const { return !entries_.empty(); }

 private:
  // What the overlay says of a path: a file, or (without a content) that nothing is there any more.
  using Entry = std::shared_ptr<MemoryContent>;

  const Entry* Find(const std::string& normal_path) const;
  bool HasFolder(const std::string& normal_path);
  // Done when a plain file may be written at this path.
  Status CheckTarget(const std::string& normal_path);
  // The content of an existing file, taken up from below when it is not here yet.
  Result<std::shared_ptr<MemoryContent>> TakeUp(const std::string& normal_path);

  Files& below_;
  std::map<std::string, Entry> entries_;  // by normal path
};

}  // namespace zendrix::platform
