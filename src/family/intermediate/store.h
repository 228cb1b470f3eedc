// The Quarantine folder: entries, and what an interruption left of an operation.
//
// An entry is a file of 32 hexadecimal digits without permissions and beside it "<name>.manifest". While an
// operation is under way there is also
//   "<name>.in"    the file is on its way in: it may be another one than the manifest tells, and when it was
//   copied
//                  the original may still be in its place, or beside it as ".<name>"
//   "<name>.out"   a copy is on its way out: it may be in its place already, or beside it, half done, as
//   ".<name>"
//   "<name>.part"  a copy on its way in that is not complete
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "family/intermediate/descriptor.h"
#include "family/intermediate/manifest.h"
#include "family/intermediate/named_file.h"

namespace zendrix::family {

inline constexpr char kManifestEnding[] = ".manifest";
inline constexpr char kInEnding[] = ".in";
inline constexpr char kOutEnding[] = ".out";
inline constexpr char kPartEnding[] = ".part";

struct Entry {
  std::string name;
  Manifest manifest;
};

// Invalid when there is none. Refuses one that others can use or that another process is at work on; the
// descriptor holds the lock. With `look_only` nothing is set right.
Descriptor OpenStore(const Descriptor& program_folder, bool look_only);
Descriptor MakeStore(const Descriptor& program_folder);

// Whether what is put into the folder is still there when the computer was started anew. `memory` are the
// types of the file systems that are not; where one of them lies over another file system, the upper layer
// counts.
bool OutlivesRestart(const Descriptor& folder, const std::vector<std::uint64_t>& memory);

// Brings what an interruption left to an end, forwards or backwards, so that every file is either in its
// place or a complete entry. What cannot be told apart stays as it is.
void Sweep(int store);
void SweepEntry(int store, const std::string& name);

// What is in the store, put away last first. Damaged manifests are passed over.
std::vector<Entry> ListEntries(int store);
// The entry put away last of those that come from one of these paths; one that belongs to the alert before
// all others.
std::optional<Entry> FindEntry(int store, const std::vector<std::string>& paths,
                               const std::string& alert = {});

// Gives what was moved by mistake its name back, or, when that was taken meanwhile, a name beside it. False
// when it stays where it is.
bool GiveBack(int folder, const std::string& name, const Place& place);

// The name beside its place that a file has for a moment.
inline std::string AsideName(const std::string& entry) {
  return "." + entry;
}

}  // namespace zendrix::family
