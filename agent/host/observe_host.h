// One look at the whole host.
#pragma once

#include <cstdint>

#include "agent/events/snapshot.h"
#include "agent/host/host_view.h"

namespace zendrix::agent {

// `now_ms` by the clock that never goes back; the process `own_pid` is not reported.
Snapshot ObserveHost(HostView& host, std::int64_t now_ms, std::uint64_t own_pid);

}  // namespace zendrix::agent
