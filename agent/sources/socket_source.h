// TCP connections and listening ports as sock_diag(7) tells of them, where the kernel takes no programs of
// the Agent's: the table is asked for every second, and the kernel tells of each socket that ended. A
// connection that was never in a table is told all the same, without its program: nobody holds it any more.
// It takes no right; which program holds another user's socket does.
//
// Where the kernel refuses, the level is kNone with the reason, and the source gives nothing.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "agent/host/host_view.h"
#include "agent/host/netlink.h"
#include "agent/sources/process_table.h"
#include "agent/sources/program_namer.h"
#include "agent/sources/socket_table.h"
#include "agent/sources/source.h"
#include "agent/sources/source_parts.h"

namespace zendrix::agent {

class SocketSource : public Source {
 public:
  static constexpr std::int64_t kLookEveryNs = 1'000'000'000;
  static constexpr std::size_t kMostNotices = 16'384;  // of one Drain

  // `ends` is null when it was refused. What `parts` refers to outlives the object.
  SocketSource(SourceParts parts, std::unique_ptr<NetlinkStream> ends, std::string refusal);

  std::span<const std::string_view> Monitors() const override;
  SourceLevel level() const override;
  int Handle() const override { return -1; }
  void Drain(std::vector<Observation>& into) override;

 private:
  void TellLost(std::uint64_t count, std::int64_t now_ns, std::vector<Observation>& into) const;

  SourceParts parts_;
  std::unique_ptr<NetlinkStream> ends_;
  const std::string refusal_;
  ProgramNamer namer_;
  ProcessTable processes_;  // stays empty: sockets are all that is asked of it
  SocketTable sockets_;
  std::uint64_t overflow_ = 0;  // told so far
  std::int64_t looked_ns_ = 0;
};

// The one of the running kernel.
std::unique_ptr<Source> MakeSocketSource(HostView& host, std::uint64_t own_pid);

}  // namespace zendrix::agent
