// Programs as the process connector and taskstats tell of them (process_notices.h), where the kernel takes no
// programs of the Agent's. Each start and end is told, but the program has to be looked up: under /proc while
// it lives, and by the number of its file when it has ended before. What neither finds is called unknown. It
// takes CAP_NET_ADMIN in the first namespaces; every half minute, and when notices were lost, the table is
// held against /proc.
//
// Where the kernel refuses, the level is kNone with the reason, and the source gives nothing.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "agent/host/host_view.h"
#include "agent/host/netlink.h"
#include "agent/sources/process_notices.h"
#include "agent/sources/process_table.h"
#include "agent/sources/program_index.h"
#include "agent/sources/program_namer.h"
#include "agent/sources/source.h"
#include "agent/sources/source_parts.h"

namespace zendrix::agent {

struct OpenedConnector {
  std::unique_ptr<NetlinkStream> notices;  // null when it was refused
  std::string refusal;                     // why, for a person
  std::unique_ptr<NetlinkStream> ends;     // of taskstats; null when that was refused
  std::uint16_t family = 0;                // of taskstats
};

class ConnectorSource : public Source {
 public:
  static constexpr std::int64_t kLookEveryNs = 30'000'000'000;
  static constexpr std::int64_t kLooksApartNs = 1'000'000'000;  // at least, whatever asks for them
  static constexpr std::size_t kMostNotices = 16'384;           // of one Drain

  // What `parts` refers to outlives the object.
  ConnectorSource(SourceParts parts, OpenedConnector opened);

  std::span<const std::string_view> Monitors() const override;
  SourceLevel level() const override;
  int Handle() const override { return opened_.notices ? opened_.notices->Handle() : -1; }
  void Drain(std::vector<Observation>& into) override;

 private:
  // What became of a process within the notices at hand.
  struct Fate {
    std::size_t last_start = 0;   // position of its last kExecuted, from 1
    std::size_t end = 0;          // position of its kEnded, from 1
    std::optional<Process> seen;  // as /proc has it now
    bool starts_later = false;    // runs another program in notices to come
    std::uint64_t parent = 0;     // when its coming is among them
  };
  using Fates = std::map<std::uint64_t, Fate>;

  bool ReadNotices(std::vector<ProcessNotice>& into);
  void ReadEnds();
  void CountLosses(const std::vector<ProcessNotice>& notices);
  Fates FatesOf(const std::vector<ProcessNotice>& notices);
  void Take(const ProcessNotice& notice, std::size_t position, const Fate& fate, std::int64_t now_ns,
            std::vector<Observation>& into);
  void TakeStart(const ProcessNotice& notice, std::size_t position, const Fate& fate, std::int64_t now_ns,
                 std::vector<Observation>& into);
  std::set<std::uint64_t> Unexplained(const Fates& fates) const;
  const LastProgram* EndOf(std::uint64_t pid) const;
  void Look(std::int64_t now_ns, std::vector<Observation>& into);

  SourceParts parts_;
  OpenedConnector opened_;
  ProgramNamer namer_;
  ProgramIndex index_;
  ProcessTable processes_;
  std::vector<ProcessNotice> later_;                     // read, and not taken yet
  std::set<std::uint64_t> held_;                         // processes that wait among them for want of a name
  std::map<std::uint64_t, LastProgram> ends_;            // by process, since the last Drain
  std::map<std::uint64_t, LastProgram> ends_before_;     // and of the one before
  std::map<std::uint32_t, std::uint32_t> next_numbers_;  // by processor
  std::uint64_t lost_ = 0;                               // not told yet
  bool must_look_ = true;
  bool start_lost_ = false;
  std::int64_t looked_ns_ = 0;
};

// The one of the running kernel.
std::unique_ptr<Source> MakeConnectorSource(HostView& host, std::uint64_t own_pid);

}  // namespace zendrix::agent
