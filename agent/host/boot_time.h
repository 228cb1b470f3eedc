// The clock that goes on while the computer sleeps (CLOCK_BOOTTIME).
#pragma once

#include <time.h>

#include <cstdint>

namespace zendrix::agent {

inline std::int64_t BootTimeNs() {
  timespec now = {};
  clock_gettime(CLOCK_BOOTTIME, &now);
  return static_cast<std::int64_t>(now.tv_sec) * 1'000'000'000 + now.tv_nsec;
}

}  // namespace zendrix::agent
