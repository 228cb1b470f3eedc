// The file system as the console uses it. Paths are bytes in the host's own form, "/" between folders.
// Contents are bytes; nothing here knows of lines or code pages. No call follows a symbolic link when it
// writes, and every whole-file write is temporary file, flush, rename, so that a reader (or the next start
// after a kill) sees the old contents or the new ones, never a mixture. No call throws.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/result.h"

namespace zendrix::platform {

// Which file it is, whatever its name: two that are equal are the same file, unless one went before the other
// came.
struct FileIdentity {
  std::uint64_t device = 0;
  std::uint64_t number = 0;
  bool operator==(const FileIdentity&) const = default;
};

// A file opened for reading. It is closed by its destructor. Another process may write to the file
// meanwhile; reads then see what is there at the time.
class ReadStream {
 public:
  virtual ~ReadStream() = default;
  // Reads up to `size` bytes into `buffer`; 0 means the end of the file as it is now.
  virtual Result<std::size_t> Read(char* buffer, std::size_t size) = 0;
  // Sets the position of the next read, in bytes from the beginning. Beyond the end is no error: the next
  // read then returns 0.
  virtual Status Seek(std::int64_t offset) = 0;
  // Nothing where it cannot be told.
  virtual std::optional<FileIdentity> Identity() { return std::nullopt; }
};

class Files {
 public:
  virtual ~Files() = default;

  // True for a plain file (links are followed); folders and devices are not files.
  virtual bool Exists(const std::string& path) = 0;
  virtual bool FolderExists(const std::string& path) = 0;
  // Size in bytes.
  virtual Result<std::int64_t> Size(const std::string& path) = 0;
  virtual Result<std::unique_ptr<ReadStream>> Open(const std::string& path) = 0;
  // Replaces or creates the whole file, atomically (see above).
  virtual Status WriteAll(const std::string& path, std::string_view bytes) = 0;
  // Appends to the file, or creates it. One write call where the platform allows, for concurrent readers.
  virtual Status Append(const std::string& path, std::string_view bytes) = 0;
  // Deletes the file, also when it is read-only.
  virtual Status Remove(const std::string& path) = 0;
  // Atomic replacement of `to` by `from`, in one folder.
  virtual Status Rename(const std::string& from, const std::string& to) = 0;
  // Names (not paths) of the entries of a folder, in no order.
  virtual Result<std::vector<std::string>> List(const std::string& folder) = 0;

  // The whole file. Built on Open and Read.
  Result<std::string> ReadAll(const std::string& path);
};

// folder + "/" + name, with no doubled separator.
std::string JoinPath(std::string_view folder, std::string_view name);

}  // namespace zendrix::platform
