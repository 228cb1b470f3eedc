// A clock that stands still until it is told otherwise. UTC and the monotonic clock advance together; setting
// UTC (a user who corrects the clock) leaves the monotonic one alone.
#pragma once

#include <cstdint>

#include "platform/clock.h"

namespace zendrix::platform {

class FakeClock : public Clock {
 public:
  void SetUtc(std::int64_t seconds) { utc_ms_ = seconds * 1000; }
  void Advance(std::int64_t milliseconds) {
    utc_ms_ += milliseconds;
    monotonic_ms_ += milliseconds;
  }
  // Milliseconds spent in Sleep so far.
  std::int64_t SleptMs() const { return slept_ms_; }

  std::int64_t NowUtc() override { return utc_ms_ >= 0 ? utc_ms_ / 1000 : (utc_ms_ - 999) / 1000; }
  std::int64_t MonotonicMs() override { return monotonic_ms_; }
  // No timer fires: the thread rests.
  void Sleep(std::int64_t milliseconds) override {
    slept_ms_ += milliseconds;
    Advance(milliseconds);
  }

 private:
  std::int64_t utc_ms_ = 1'100'000'000'000;  // 2004-11-09 11:33:20
  std::int64_t monotonic_ms_ = 0;
  std::int64_t slept_ms_ = 0;
};

}  // namespace zendrix::platform
