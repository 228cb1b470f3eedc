#include "platform/linux/linux_clock.h"

#include <cerrno>
#include <ctime>

namespace zendrix::platform {

std::int64_t LinuxClock::NowUtc() {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  return now.tv_sec;
}

std::int64_t LinuxClock::MonotonicMs() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return std::int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1'000'000;
}

void LinuxClock::Sleep(std::int64_t milliseconds) {
  if (milliseconds <= 0) return;
  timespec left{static_cast<std::time_t>(milliseconds / 1000),
                static_cast<long>(milliseconds % 1000 * 1'000'000)};
  while (clock_nanosleep(CLOCK_MONOTONIC, 0, &left, &left) == EINTR) {
  }
}

}  // namespace zendrix::platform
