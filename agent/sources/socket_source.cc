#include "agent/sources/socket_source.h"

#include <linux/netlink.h>
#include <linux/sock_diag.h>

#include <array>
#include <ctime>
#include <utility>

#include "agent/host/boot_time.h"
#include "agent/host/observe_sockets.h"
#include "agent/host/parse_sock_diag.h"

namespace zendrix::agent {
namespace {

constexpr int kEndRoom = 8 << 20;
constexpr std::uint64_t kOwnNetwork = 1;  // the only one that this source tells of
// One bit for each group, of which the first has the number 1.
constexpr std::uint32_t kEndsOfTcp =
    1U << (SKNLGRP_INET_TCP_DESTROY - 1U) | 1U << (SKNLGRP_INET6_TCP_DESTROY - 1U);

}  // namespace

SocketSource::SocketSource(SourceParts parts, std::unique_ptr<NetlinkStream> ends, std::string refusal)
    : parts_(std::move(parts)),
      ends_(std::move(ends)),
      refusal_(std::move(refusal)),
      namer_(parts_.host),
      processes_(namer_, parts_.own_pid),
      sockets_(processes_, kOwnNetwork) {}

std::span<const std::string_view> SocketSource::Monitors() const {
  static constexpr std::array kMonitors = {monitor::kPorts, monitor::kConnections};
  return kMonitors;
}

SourceLevel SocketSource::level() const {
  if (!ends_) return {Level::kNone, "sock_diag", refusal_};
  return {Level::kNotices, "sock_diag",
          "what ends within a second has no program; no port that is open that short"};
}

void SocketSource::Drain(std::vector<Observation>& into) {
  if (!ends_) return;
  const std::int64_t now_ns = parts_.now_ns();
  // The notices after the table: what ended meanwhile is in both, and goes.
  if (looked_ns_ == 0 || now_ns - looked_ns_ >= kLookEveryNs) {
    std::vector<Process> processes;
    const auto found = [&]() -> const std::vector<Process>& {
      return processes = ReadProcesses(parts_.host, parts_.own_pid);
    };
    sockets_.Compare(parts_.host, found, namer_, now_ns, into);
    looked_ns_ = now_ns;
  }
  std::string datagram;
  for (std::size_t i = 0; i < kMostNotices; ++i) {
    const auto outcome = ends_->Receive(datagram, 0);
    if (outcome == NetlinkStream::Outcome::kNone) break;
    // How many it were nobody knows; one it was at least.
    if (outcome == NetlinkStream::Outcome::kLost) TellLost(1, now_ns, into);
    for (const NetlinkMessage& message : SplitMessages(datagram)) {
      if (const auto socket = ReadDiagMessage(message)) sockets_.TakeEnd(*socket, now_ns, into);
    }
  }
  const std::uint64_t overflow = sockets_.overflow();
  TellLost(overflow - std::exchange(overflow_, overflow), now_ns, into);
}

void SocketSource::TellLost(std::uint64_t count, std::int64_t now_ns, std::vector<Observation>& into) const {
  if (count == 0) return;
  Observation observation;
  observation.kind = Observation::Kind::kLost;
  observation.seen_ns = now_ns;
  observation.item.monitor = monitor::kConnections;
  observation.lost = count;
  into.push_back(std::move(observation));
}

std::unique_ptr<Source> MakeSocketSource(HostView& host, std::uint64_t own_pid) {
  const SourceParts parts = {host, own_pid, BootTimeNs};
  if (!host.Sockets()) return std::make_unique<SocketSource>(parts, nullptr, "the kernel does not answer");
  auto ends = OpenNetlink(NETLINK_SOCK_DIAG, kEndsOfTcp, kEndRoom);
  if (!ends) return std::make_unique<SocketSource>(parts, nullptr, ends.error().text);
  return std::make_unique<SocketSource>(parts, std::move(ends.value()), "");
}

}  // namespace zendrix::agent
