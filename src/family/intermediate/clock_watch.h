// How far the computer's clock was set while the console runs. Events, files and processes bear the clock's
// moments; where it was set between two of them, the later one can look like the earlier one. What happened
// before the watch began is not known to it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace zendrix::family {

// Seconds in all, each way by itself: one does not make up for the other.
struct ClockSet {
  std::int64_t forward = 0;
  std::int64_t back = 0;
};

// The moment when the computer was started, in UTC seconds by today's clock, from the folder of processes;
// nothing when it does not say.
std::optional<std::int64_t> StartOfComputer(const std::string& proc);

class ClockWatch {
 public:
  // The start of the computer moves with its clock, and with nothing else.
  void Look(const std::string& proc);
  const ClockSet& clock_set() const { return set_; }

 private:
  std::optional<std::int64_t> start_;
  ClockSet set_;
};

}  // namespace zendrix::family
