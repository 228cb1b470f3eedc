// The real file system. Reading follows links and refuses whatever is no plain file, without ever waiting for
// it (a pipe under a data file's name must not hang the console). Writing never follows a link in the last
// part of a path: a target that is a link is refused with kNotRegular. A whole-file write keeps the mode of
// the file it replaces (0644 less the umask for a new one), reaches the disk before it takes the old one's
// place, and is refused with kPermissionDenied on a file that is marked read-only. A process that is killed
// in the middle can leave a temporary ".zendrix-*.tmp" behind; nothing reads it, and the next process that
// writes into the folder takes it away.
#pragma once

#include <set>

#include "platform/files.h"

namespace zendrix::platform {

class LinuxFiles : public Files {
 public:
  bool Exists(const std::string& path) override;
  bool FolderExists(const std::string& path) override;
  Result<std::int64_t> Size(const std::string& path) override;
  Result<std::unique_ptr<ReadStream>> Open(const std::string& path) override;
  Status WriteAll(const std::string& path, std::string_view bytes) override;
  Status Append(const std::string& path, std::string_view bytes) override;
  Status Remove(const std::string& path) override;
  Status Rename(const std::string& from, const std::string& to) override;
  Result<std::vector<std::string>> List(const std::string& folder) override;

 private:
  // Folders whose left-overs this process has taken away.
  std::set<std::string> swept_;
};

}  // namespace zendrix::platform
