// What is in quarantine, and the way back for one entry, for window and terminal alike.
#pragma once

#include <string>
#include <vector>

#include "platform/family_libraries.h"

namespace zendrix::alerts {

struct QuarantineContents {
  std::vector<platform::QuarantineEntry> entries;  // newest first
  std::string failure;                             // why they cannot be had; empty when they can
};
QuarantineContents ReadQuarantine(platform::FamilyLibraries& family);

struct RestoreOutcome {
  bool restored = false;
  std::string path;  // where the file is again; the bytes of the file system
  std::string told;  // the library's sentence of success, or why not; may be empty
};
// Puts the entry of this name back in its place.
RestoreOutcome RestoreFromQuarantine(platform::FamilyLibraries& family, const std::string& name);

}  // namespace zendrix::alerts
