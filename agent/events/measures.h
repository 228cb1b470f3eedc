// Numbers over time: memory in use, network transmission rate, failed logins. It remembers what was last
// reported and speaks only when a number has moved enough to be worth a line.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "agent/events/events.h"

namespace zendrix::agent {

class Measures {
 public:
  // The events that this look gives. The first look reports memory; a rate needs two looks.
  // Memory is reported when it moved by 5 points, the rate when it moved by 64 KB per second and at least
  // doubled or halved, failed logins whenever there are new ones. `may_tell` is asked about each further
  // number of memory and rate that is worth a line; what it refuses was never reported.
  using MayTell = std::function<bool(const Item&)>;
  std::vector<Event> Take(const Snapshot& seen, const MayTell& may_tell = {});
  // Whether Take would report memory now, and so wants the names of the largest programs.
  bool WantsMemoryUsers(const Snapshot& seen) const;
  // Failed logins on record at the last look; those behind them are what the next one brings.
  std::optional<std::uint64_t> failed_logins() const { return failed_logins_; }
  // The numbers as last reported, for the baseline of a new file.
  std::vector<Event> Present() const;

 private:
  void TakeMemory(const Snapshot& seen, const MayTell& may_tell, std::vector<Event>& events);
  void TakeTraffic(const Snapshot& seen, const MayTell& may_tell, std::vector<Event>& events);
  void TakeFailedLogins(const Snapshot& seen, std::vector<Event>& events);

  std::optional<Event> memory_;   // as last reported
  std::optional<Event> traffic_;  // as last reported
  std::optional<std::uint64_t> bytes_;
  std::int64_t bytes_at_ms_ = 0;
  double usual_rate_ = 0;  // slow average, KB per second
  int rates_ = 0;          // how many rates went into it
  std::optional<std::uint64_t> failed_logins_;
};

}  // namespace zendrix::agent
