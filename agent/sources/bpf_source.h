// Programs, TCP sockets and kernel modules as the kernel itself tells of them: every start and end, however
// short the life between, each with its program. The records come through a KernelStream. Every half minute,
// and whenever records were lost, the tables are held against /proc, so that what was missed is made good.
//
// Where the kernel refuses the programs the level is kNone with the reason, and the source gives nothing.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "agent/host/host_view.h"
#include "agent/sources/kernel_stream.h"
#include "agent/sources/process_table.h"
#include "agent/sources/program_namer.h"
#include "agent/sources/socket_table.h"
#include "agent/sources/source.h"
#include "agent/sources/source_parts.h"

namespace zendrix::agent {

class BpfSource : public Source {
 public:
  static constexpr std::int64_t kLookEveryNs = 30'000'000'000;
  static constexpr std::int64_t kLooksApartNs = 1'000'000'000;  // at least, whatever asks for them
  static constexpr std::size_t kMostRecords = 16'384;           // of one Drain

  // What `parts` refers to outlives the object.
  BpfSource(SourceParts parts, OpenedStream opened);

  std::span<const std::string_view> Monitors() const override;
  SourceLevel level() const override;
  int Handle() const override { return stream_ ? stream_->Handle() : -1; }
  std::int64_t RestMs() const override { return stream_ && stream_->Wakes() ? kQuietRestMs : kDrainMs; }
  std::int64_t GatherMs() const override { return kDrainMs; }
  void Drain(std::vector<Observation>& into) override;

 private:
  void Take(std::string_view bytes, std::vector<Observation>& into);
  void Take(const ModuleSeen& seen, std::vector<Observation>& into);
  void CountLosses(std::int64_t now_ns, std::vector<Observation>& into);
  void TellLost(std::string_view monitor_name, std::uint64_t count, std::int64_t now_ns,
                std::vector<Observation>& into);
  void Look(std::int64_t now_ns, std::vector<Observation>& into);

  SourceParts parts_;
  std::unique_ptr<KernelStream> stream_;
  const std::string refusal_;
  ProgramNamer namer_;
  ProcessTable processes_;
  SocketTable sockets_;
  std::vector<std::uint64_t> lost_;  // told so far
  std::uint64_t damaged_ = 0;        // records that could not be read, not told yet
  std::uint64_t overflow_ = 0;       // told so far
  bool must_look_ = true;
  bool exec_lost_ = false;
  std::int64_t looked_ns_ = 0;
};

// The one of the running kernel.
std::unique_ptr<Source> MakeBpfSource(HostView& host, std::uint64_t own_pid);

}  // namespace zendrix::agent
