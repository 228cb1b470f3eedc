#include "agent/sources/polling_source.h"

#include <algorithm>
#include <utility>

#include "agent/host/observe_host.h"

namespace zendrix::agent {

PollingSource::PollingSource(HostView& host, platform::Clock& clock, std::uint64_t own_pid,
                             std::int64_t interval_ms, std::vector<std::string_view> monitors)
    : host_(host),
      clock_(clock),
      own_pid_(own_pid),
      interval_ms_(interval_ms),
      monitors_(std::move(monitors)),
      next_ms_(clock.MonotonicMs()) {}

SourceLevel PollingSource::level() const {
  return {Level::kPolling, "a look every " + std::to_string(interval_ms_ / 1000) + " s", ""};
}

void PollingSource::Drain(std::vector<Observation>& into) {
  const std::int64_t now = clock_.MonotonicMs();
  if (now < next_ms_) return;
  // After a look that took longer than the interval the beat starts anew.
  next_ms_ = std::max(next_ms_ + interval_ms_, now);
  Shortfall missed;
  auto items = ObserveItems(host_, own_pid_, monitors_, {}, &missed);
  differences_.Take(host_, monitors_, std::move(items), missed, into);
}

std::string WhatLooksCannotTell(HostView& host) {
  // Process 1 is always somebody else's, unless the Agent is root.
  return host.ReadLink("/proc/1/exe") ? "" : "programs of other users cannot be told";
}

}  // namespace zendrix::agent
