// Times in which nothing was seen, told from three clocks between one turn of the loop and the next: one that
// goes on while the computer sleeps (CLOCK_BOOTTIME), one that does not (CLOCK_MONOTONIC), and the time of
// day, which anybody with the right may set. See clock_gettime(2).
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zendrix::agent {

struct Clocks {
  std::int64_t utc = 0;           // seconds
  std::int64_t monotonic_ms = 0;  // rests while the computer sleeps
  std::int64_t boot_ms = 0;       // goes on
};

class Gaps {
 public:
  static constexpr std::int64_t kSleepMs = 2000;   // shorter sleeps are not told
  static constexpr std::int64_t kStallMs = 15000;  // the longest turn that is none
  static constexpr std::int64_t kJumpMs = 5000;    // of the time of day

  // What happened since the call before, as sentences for a line.
  std::vector<std::string> Notice(const Clocks& now);

 private:
  std::optional<Clocks> before_;
};

}  // namespace zendrix::agent
