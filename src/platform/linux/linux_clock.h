// The host's clocks.
#pragma once

#include "platform/clock.h"

namespace zendrix::platform {

class LinuxClock : public Clock {
 public:
  std::int64_t NowUtc() override;
  std::int64_t MonotonicMs() override;
  // The whole time, also when signals arrive meanwhile.
  void Sleep(std::int64_t milliseconds) override;
};

}  // namespace zendrix::platform
