// The file that the description of an event names.
//
// A description is a program path with or without ":number" behind it, a path behind "port:" or
// "address:port:", or a path behind "=" (perhaps with arguments). The path is opened one folder at a time,
// following no symbolic link anywhere, so that what is checked is what is acted on.
#pragma once

#include <sys/stat.h>

#include <string>
#include <string_view>
#include <vector>

#include "family/intermediate/descriptor.h"

namespace zendrix::family {

// The absolute paths that the description may mean, in the order in which they are tried. Bytes as they
// stand.
std::vector<std::string> PathCandidates(std::string_view description);

// A name in an open folder.
struct Place {
  Descriptor folder;
  std::string name;
  std::string path;  // as the description names it
};

// Opens the folder of an absolute path. Invalid folder when it does not exist; refuses links on the way.
Place OpenPlace(const std::string& path);

struct NamedFile {
  Place place;
  Descriptor file;  // open for reading; a plain file with one name
  struct stat status = {};
};

// The first candidate that exists. Refuses what is no plain file.
NamedFile FindNamedFile(std::string_view description);

// Opens a plain file for reading without ever opening anything else: no link is followed, no device or pipe
// touched. `made_readable` lets the owner's read bit be set first, for files that were put away without
// permissions.
Descriptor OpenPlainFile(int folder, const std::string& name, struct stat& status, bool made_readable);

// The last part of a path, fit to be told in a sentence.
std::string NameToTell(const std::string& path);

}  // namespace zendrix::family
