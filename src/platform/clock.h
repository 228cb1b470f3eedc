// What time it is. UTC moments only: local time is made from them by FamilyLibraries::FromUTC.
#pragma once

#include <cstdint>

namespace zendrix::platform {

class Clock {
 public:
  virtual ~Clock() = default;
  // Seconds since 1970-01-01 00:00:00 UTC.
  virtual std::int64_t NowUtc() = 0;
  // Milliseconds of a clock that never goes back; only differences mean anything.
  virtual std::int64_t MonotonicMs() = 0;
  // Lets the thread rest. The in-memory twin only advances its clock.
  virtual void Sleep(std::int64_t milliseconds) = 0;
};

}  // namespace zendrix::platform
