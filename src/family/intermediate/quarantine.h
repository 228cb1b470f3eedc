// Quarantine: a folder of the console in which a file can do no harm, and from which it can come back as it
// was.
//
// A file in quarantine stands in the Quarantine folder (mode 0700) under a random name without permissions,
// beside a manifest of the same name (manifest.h). Everything is done by descriptors that follow no symbolic
// link, within one file system by a rename, across two by a copy that is complete before the original goes.
// Interrupted at any point, there is the file in its place or a complete entry; leftovers of an interruption
// are swept up by the next operation.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "family/intermediate/descriptor.h"
#include "family/intermediate/manifest.h"
#include "family/intermediate/named_file.h"

namespace zendrix::family {

class Quarantine {
 public:
  // The folder that holds the Quarantine folder; with `pretend` nothing is moved.
  void Configure(const std::string& program_folder, bool pretend);

  // Both return the sentence of success and throw Refused with that of refusal.
  std::string PutAway(std::string_view description);
  std::string PutBack(std::string_view description);

 private:
  struct Entry {
    std::string name;
    Manifest manifest;
  };

  Descriptor OpenStore() const;
  void Sweep(int store) const;
  std::optional<Entry> FindEntry(int store, std::string_view description) const;
  void MoveIn(int store, const std::string& name, NamedFile& named, const Manifest& manifest) const;
  void CopyIn(int store, const std::string& name, NamedFile& named, const Manifest& manifest) const;
  void MoveOut(int store, const Entry& entry, const Place& place, const Descriptor& file) const;
  void CopyOut(int store, const Entry& entry, const Place& place, const Descriptor& file) const;

  std::string program_folder_;
  bool pretend_ = false;
};

}  // namespace zendrix::family
