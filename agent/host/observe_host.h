// One look at the host: at all of it, or at what a caller wants to know.
#pragma once

#include <cstdint>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "agent/events/snapshot.h"
#include "agent/host/host_view.h"
#include "agent/host/shortfall.h"

namespace zendrix::agent {

// Everything. `now_ms` by the clock that never goes back; the process `own_pid` is not reported.
Snapshot ObserveHost(HostView& host, std::int64_t now_ms, std::uint64_t own_pid);

// The items of these monitors, in the order of ItemMonitors(). Nothing else is read for it. `named` and
// `missed` as for ObserveFolders.
std::vector<Item> ObserveItems(HostView& host, std::uint64_t own_pid,
                               std::span<const std::string_view> monitors,
                               const std::set<std::string>& named = {}, Shortfall* missed = nullptr);

// The numbers, without the names of the largest programs: finding these means reading of every process.
Snapshot ObserveNumbers(HostView& host, std::int64_t now_ms);
std::vector<std::string> ObserveLargestPrograms(HostView& host, std::uint64_t own_pid);

}  // namespace zendrix::agent
