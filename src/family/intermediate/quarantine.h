// Quarantine: a folder of the console in which a file can do no harm, and from which it can come back as it
// was.
//
// What may be put away is a narrow rule (may_take.h); a file in quarantine stands in the Quarantine folder
// (mode 0700) under a random name without permissions, beside a manifest of the same name (manifest.h,
// store.h). Everything is done by descriptors that follow no symbolic link. Interrupted at any point, there
// is the file in its place or a complete entry; what an interruption left is brought to an end by the next
// operation. One process at a time; a second one is refused, it does not wait.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "family/intermediate/clock_watch.h"
#include "family/intermediate/descriptor.h"
#include "family/intermediate/event.h"
#include "family/intermediate/manifest.h"
#include "family/intermediate/outside.h"
#include "family/intermediate/store.h"

namespace zendrix::family {

class Quarantine {
 public:
  // To be called once when the console starts: from here on the clock is watched. The folder is that which
  // holds the Quarantine folder. With `pretend` every check is made as far as it can be made
  // without changing anything, and nothing is changed.
  void Configure(const std::string& program_folder, bool pretend);

  // The computer around it; by default the one that there is.
  void SetOutside(Outside outside) { outside_ = std::move(outside); }

  // What the last PutAway found or, acting, took; nothing when it refused.
  struct Taken {
    Manifest manifest;
    dev_t device = 0;
    ino_t number = 0;
  };
  const std::optional<Taken>& taken() const { return taken_; }

  // All return the sentence of success and throw Refused with that of refusal.
  std::string PutAway(const Event& event);
  std::string PutBack(const Event& event);
  // By the name of an entry, whatever event it was put away for.
  std::string PutBackEntry(const std::string& name);
  // Put away last first.
  std::vector<Entry> List();

 private:
  std::string BringBack(const Descriptor& store, const Entry& entry) const;
  Descriptor OpenHome() const;
  Descriptor OpenSweptStore(const Descriptor& home) const;

  std::string program_folder_;
  bool pretend_ = false;
  Outside outside_ = ThisComputer();
  ClockWatch clock_;
  std::optional<Taken> taken_;
};

// One line per entry, as QuarantineListExport tells them.
std::string LinesOf(const std::vector<Entry>& entries);

}  // namespace zendrix::family
