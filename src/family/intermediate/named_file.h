// The file that the description of an event names.
//
// A description is a program path with or without ":number" behind it, a path behind "port:" or
// "address:port:", or a path behind "=" (perhaps with arguments). The path is opened one folder at a time,
// following no symbolic link anywhere, so that what is checked is what is acted on.
#pragma once

#include <sys/stat.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "family/intermediate/descriptor.h"

namespace zendrix::family {

// The absolute paths that the description may mean: no empty, "." or ".." part, no NUL, no two alike. Bytes
// as they stand, and as UTF-8 where they are not plain ASCII.
std::vector<std::string> PathCandidates(std::string_view description);

// What a folder is, whatever path led to it.
using FolderId = std::pair<dev_t, ino_t>;

// A name in an open folder.
struct Place {
  Descriptor folder;
  std::string name;
  std::string path;
  std::vector<FolderId> folders;  // all that were gone through, "/" first
};

// Opens the folder of an absolute path. Invalid folder when it does not exist; refuses links on the way.
Place OpenPlace(const std::string& path);

struct NamedFile {
  Place place;
  Descriptor handle;
  Descriptor file;  // for reading, once OpenNamedFile was called
  struct stat status = {};
};

// The one plain file that the description can mean. Refuses when there are several or none, and everything
// that is no plain file.
NamedFile FindNamedFile(std::string_view description);
// Opens it for reading. Refuses a file that has further names: they would stay behind.
void OpenNamedFile(NamedFile& named);

// The last part of a path in quotation marks, fit to be told in a sentence (Windows-1252).
std::string NameToTell(const std::string& path);

}  // namespace zendrix::family
