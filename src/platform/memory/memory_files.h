// A file system in memory: the twin of the real one for tests. Contents behave like files on a disk: a stream
// that is open goes on reading the file it opened when the path is replaced or removed, and sees what is
// appended to it or cut from it. Folders come into being with the first file put into them; with
// `strict_folders` a write into a missing folder is refused as on a disk. Faults are injected per path and
// operation; hooks let a test change a file between two reads. Paths are compared after doubled separators,
// "." parts and a trailing separator are taken out; letter case counts.
#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"
#include "platform/memory/memory_stream.h"

namespace zendrix::platform {

enum class FileOp { kSize, kOpen, kRead, kWriteAll, kAppend, kRemove, kRename, kList };

class MemoryFiles : public Files {
 public:
  static constexpr int kAlways = std::numeric_limits<int>::max();

  // Puts a file there, as another program would: an existing file is changed in place, seen by open streams.
  void Put(const std::string& path, std::string_view bytes);
  // Adds to a file as another program would; no fault or hook applies.
  void PutMore(const std::string& path, std::string_view bytes);
  // Contents; empty when there is no such file.
  std::string Get(const std::string& path) const;
  bool Has(const std::string& path) const;
  // Takes a file away, as another program would.
  void Vanish(const std::string& path);
  // Takes a folder away with all that lies in it.
  void VanishFolder(const std::string& path);
  // Every file's path, sorted.
  std::vector<std::string> Paths() const;

  // Refuses the next `count` operations of this kind on this path (for kRename the path renamed from; for
  // kList the folder). A path of "*" stands for every path.
  void FailNext(FileOp op, const std::string& path, ErrorKind kind, int count = 1);
  // Lets every stream on the path read `bytes` bytes, then refuses `count` reads.
  void FailReadAfter(const std::string& path, std::int64_t bytes, ErrorKind kind, int count = 1);
  void ClearFaults();

  // Called before each operation, with its kind and normal path. May change any file.
  std::function<void(FileOp op, const std::string& path)> before;
  bool strict_folders = false;

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
  struct Fault {
    FileOp op;
    std::string path;
    ErrorKind kind;
    int count;
    std::int64_t after;
  };

  // The refusal to give, or nothing: runs the hook and uses up one fault. `position` is that of a read.
  Status Begin(FileOp op, const std::string& path, std::int64_t position = 0);
  // Whether a file may be written at this path.
  Status CheckTarget(const std::string& path) const;
  bool HasFolder(const std::string& path) const;
  // The contents at a normal path, made with their folders when there are none.
  MemoryContent& Reach(const std::string& path);
  void MakeFolders(std::string path);

  std::map<std::string, std::shared_ptr<MemoryContent>> files_;
  std::set<std::string> folders_;
  std::vector<Fault> faults_;
};

}  // namespace zendrix::platform
