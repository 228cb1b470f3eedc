#include "agent/waiting.h"

#include <sys/epoll.h>

#include <algorithm>
#include <array>

namespace zendrix::agent {

Waiting::Waiting(const std::vector<std::unique_ptr<Source>>& sources, platform::Clock& clock)
    : clock_(clock), epoll_(epoll_create1(EPOLL_CLOEXEC)) {
  for (const auto& source : sources) {
    if (source->Handle() < 0) continue;
    epoll_event wanted = {};
    wanted.events = EPOLLIN;
    wanted.data.ptr = source.get();
    epoll_ctl(epoll_.get(), EPOLL_CTL_ADD, source->Handle(), &wanted);
  }
}

void Waiting::Rest(std::int64_t milliseconds) {
  std::array<epoll_event, 8> ready = {};
  const std::int64_t began = clock_.MonotonicMs();
  const int count = epoll_wait(epoll_.get(), ready.data(), ready.size(), static_cast<int>(milliseconds));
  if (count <= 0) return;
  std::int64_t gather = kDrainMs;
  for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i)
    gather = std::min(gather, static_cast<const Source*>(ready[i].data.ptr)->GatherMs());
  const std::int64_t passed = clock_.MonotonicMs() - began;
  clock_.Sleep(std::min(milliseconds, std::max(gather - passed, kGatherMs)));
}

}  // namespace zendrix::agent
