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
  Snapshot seen = ObserveNumbers(host, now_ms);
  seen.items = ObserveItems(host, own_pid, ItemMonitors());
  seen.memory_users = ObserveLargestPrograms(host, own_pid);
  return seen;
}

std::vector<Item> ObserveItems(HostView& host, std::uint64_t own_pid,
                               std::span<const std::string_view> monitors, const std::set<std::string>& named,
                               Shortfall* missed) {
  const auto wanted = [&](std::string_view name) {
    return std::find(monitors.begin(), monitors.end(), name) != monitors.end();
  };
  std::vector<Item> items;
  std::vector<Account> accounts;
  if (wanted(monitor::kAccounts) || wanted(monitor::kAutorun)) accounts = ReadAccounts(host);
  if (wanted(monitor::kAccounts)) Append(items, ObserveAccounts(accounts));
  if (wanted(monitor::kLogins)) Append(items, ObserveLogins(host));
  if (wanted(monitor::kAutorun)) Append(items, ObserveAutorun(host, accounts, missed));
  if (wanted(monitor::kFolders)) Append(items, ObserveFolders(host, named, missed));
  const bool sockets = wanted(monitor::kPorts) || wanted(monitor::kConnections);
  if (!sockets && !wanted(monitor::kProcesses)) return items;
  auto processes = ReadProcesses(host, own_pid);
  TellForeignOnes(host, processes);
  if (wanted(monitor::kProcesses)) Append(items, ObserveProcesses(processes));
  if (!sockets) return items;
  auto found = ObserveSockets(host, processes);
  std::erase_if(found, [&](const Item& item) { return !wanted(item.monitor); });
  Append(items, std::move(found));
  return items;
}

Snapshot ObserveNumbers(HostView& host, std::int64_t now_ms) {
  Snapshot seen;
  seen.taken_ms = now_ms;
  if (const auto text = host.ReadText("/proc/meminfo", kTableLimit)) {
    seen.memory_percent = ParseMemoryPercent(*text);
  }
  if (const auto text = host.ReadText("/proc/net/dev", kTableLimit)) {
    seen.traffic_bytes = ParseTrafficBytes(*text);
  }
  seen.failed_logins = CountFailedLogins(host);
  return seen;
}

std::vector<std::string> ObserveLargestPrograms(HostView& host, std::uint64_t own_pid) {
  return LargestPrograms(host, ReadProcesses(host, own_pid));
}

}  // namespace zendrix::agent
