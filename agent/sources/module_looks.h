// Kernel modules where the kernel does not tell of their loading: the list of those loaded, read once a
// minute. A module that was there at the first look is not told, nor one that came and went between two
// looks, nor one that takes itself off the list; by whom one was loaded cannot be seen.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "agent/host/host_view.h"
#include "agent/sources/source.h"
#include "platform/clock.h"

namespace zendrix::agent {

class ModuleLooks {
 public:
  static constexpr std::int64_t kIntervalMs = 60000;

  // The first look is the first Drain. The references outlive the object.
  ModuleLooks(HostView& host, platform::Clock& clock);

  // Looks when it is time to; names that are new since the look before are kHappened. To be called also while
  // another source tells of modules, its result then left unused, so that what that one told is known.
  void Drain(std::vector<Observation>& into);
  SourceLevel level() const;

 private:
  HostView& host_;
  platform::Clock& clock_;
  std::int64_t next_ms_;
  std::optional<std::set<std::string>> known_;  // raw names
  bool is_readable_;
};

}  // namespace zendrix::agent
