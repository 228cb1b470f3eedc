#include "agent/host/observe_host.h"

#include <algorithm>

#include "agent/host/observe_accounts.h"
#include "agent/host/observe_autorun.h"
#include "agent/host/observe_folders.h"
#include "agent/host/observe_processes.h"
#include "agent/host/observe_sockets.h"
#include "agent/host/parse_network.h"

namespace zendrix::agent {
namespace {

constexpr std::size_t kTableLimit = 1U << 20U;

void Append(std::vector<Item>& items, std::vector<Item> more) {
  items.insert(items.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

}  // namespace

Snapshot ObserveHost(HostView& host, std::int64_t now_ms, std::uint64_t own_pid) {
  Snapshot seen;
  seen.taken_ms = now_ms;
  const auto accounts = ReadAccounts(host);
  const auto processes = ReadProcesses(host, own_pid);
  Append(seen.items, ObserveAccounts(accounts));
  Append(seen.items, ObserveLogins(host));
  Append(seen.items, ObserveAutorun(host, accounts));
  Append(seen.items, ObserveFolders(host));
  Append(seen.items, ObserveProcesses(processes));
  Append(seen.items, ObserveSockets(host, processes));
  if (const auto text = host.ReadText("/proc/meminfo", kTableLimit)) {
    seen.memory_percent = ParseMemoryPercent(*text);
  }
  seen.memory_users = LargestPrograms(host, processes);
  if (const auto text = host.ReadText("/proc/net/dev", kTableLimit)) {
    seen.traffic_bytes = ParseTrafficBytes(*text);
  }
  seen.failed_logins = CountFailedLogins(host);
  return seen;
}

}  // namespace zendrix::agent
