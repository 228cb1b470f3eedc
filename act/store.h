// The quarantine as the helper uses it: that of the product's family library, in a folder of the superuser's.
// Which files may be taken is the library's rule, not the helper's.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "family/intermediate/event.h"
#include "family/intermediate/store.h"

namespace zendrix::act {

// Which file it is, whatever its name.
struct FileId {
  dev_t device = 0;
  ino_t number = 0;
  friend bool operator==(const FileId&, const FileId&) = default;
};

struct TakenFile {
  std::string path;  // absolute; the file system's bytes
  std::string sha256;
  FileId id;
  bool others = true;  // not plainly the affair of the one who clicks (whose.h)
};

struct StoreAnswer {
  bool done = false;
  std::string sentence;  // for the user (Windows-1252)
  TakenFile file;        // that was taken, or would be
};

struct StoreList {
  bool known = false;
  std::vector<family::Entry> entries;  // put away last first
  std::string sentence;                // why it is not known
};

class Store {
 public:
  virtual ~Store() = default;

  // What Take would do; nothing is changed. `user` is the one who clicks.
  virtual StoreAnswer Look(const family::Event& event, uid_t user) = 0;
  virtual StoreAnswer Take(const family::Event& event, uid_t user) = 0;
  // Puts the entry with this name back in its place.
  virtual StoreAnswer Restore(const std::string& name) = 0;
  virtual StoreList List() = 0;
};

}  // namespace zendrix::act
