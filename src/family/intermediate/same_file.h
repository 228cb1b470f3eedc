// Files and folders by what they are: device and number, whatever path led to them.
#pragma once

#include <sys/stat.h>

#include <algorithm>
#include <string>
#include <vector>

#include "family/intermediate/named_file.h"

namespace zendrix::family {

inline bool IsSameFile(const std::string& path, const struct stat& status) {
  struct stat other = {};
  return ::stat(path.c_str(), &other) == 0 && other.st_dev == status.st_dev && other.st_ino == status.st_ino;
}

// Whether one of the folders that lead to the place is this one.
inline bool LeadsThrough(const Place& place, const std::string& folder) {
  struct stat status = {};
  if (folder.empty() || ::stat(folder.c_str(), &status) != 0) return false;
  return std::find(place.folders.begin(), place.folders.end(), FolderId(status.st_dev, status.st_ino)) !=
         place.folders.end();
}

inline bool LeadsThroughAny(const Place& place, const std::vector<std::string>& folders) {
  return std::any_of(folders.begin(), folders.end(),
                     [&](const std::string& folder) { return LeadsThrough(place, folder); });
}

}  // namespace zendrix::family
