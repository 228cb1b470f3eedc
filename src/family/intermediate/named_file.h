// A file by its path, opened one folder at a time, following no symbolic link anywhere, so that what is
// checked is what is acted on.
#pragma once

#include <sys/stat.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "family/intermediate/descriptor.h"

namespace zendrix::family {

// The absolute paths that a written one may mean: none with an empty, "." or ".." part or a NUL, no two
// alike. Bytes as they stand, and as UTF-8 where they are not plain ASCII.
std::vector<std::string> PathsWritten(std::string_view written);

// What a folder is, whatever path led to it.
using FolderId = std::pair<dev_t, ino_t>;

// A name in an open folder.
struct Place {
  Descriptor folder;
  std::string name;
  std::string path;
  std::vector<FolderId> folders;  // all that were gone through, "/" first
  bool denied = false;            // the folder is invalid because it may not be entered
};

// Opens the folder of an absolute path. Invalid folder when it does not exist; refuses links on the way.
Place OpenPlace(const std::string& path);

struct NamedFile {
  Place place;
  Descriptor handle;
  Descriptor file;  // for reading, once OpenNamedFile was called
  struct stat status = {};
};

// The one plain file that the paths lead to. Refuses when there are several or none, and everything that is
// no plain file.
NamedFile FindNamedFile(const std::vector<std::string>& paths);
// Opens it for reading. Refuses a file that has further names: they would stay behind.
void OpenNamedFile(NamedFile& named);

// The whole path in quotation marks, fit to be told in a sentence (Windows-1252).
std::string NameToTell(const std::string& path);
// The sentence in at most this many bytes: what stands in its quotation marks is shortened in the middle.
std::string Fitting(const std::string& sentence, std::size_t most);

}  // namespace zendrix::family
