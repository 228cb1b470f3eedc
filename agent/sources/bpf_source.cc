#include "agent/sources/bpf_source.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <utility>

#include "agent/bpf/records.h"
#include "agent/host/boot_time.h"
#include "agent/host/text.h"

namespace zendrix::agent {
namespace {

// "net:[4026531840]"
std::uint64_t OwnNetwork(HostView& host) {
  const auto target = host.ReadLink("/proc/self/ns/net");
  std::uint64_t number = 0;
  if (!target || !target->starts_with("net:[") || !target->ends_with("]")) return 0;
  ReadNumber(std::string_view(*target).substr(5, target->size() - 6), number);
  return number;
}

std::string_view MonitorOf(std::size_t kind) {
  if (kind == kRecordSocket) return monitor::kConnections;
  return kind == kRecordModule ? monitor::kSystem : monitor::kProcesses;
}

template <class... Functions>
struct Overloaded : Functions... {
  using Functions::operator()...;
};
template <class... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

}  // namespace

BpfSource::BpfSource(SourceParts parts, OpenedStream opened)
    : parts_(std::move(parts)),
      stream_(std::move(opened.stream)),
      refusal_(std::move(opened.refusal)),
      namer_(parts_.host),
      processes_(namer_, parts_.own_pid),
      sockets_(processes_, OwnNetwork(parts_.host)) {}

std::span<const std::string_view> BpfSource::Monitors() const {
  static constexpr std::array kMonitors = {monitor::kProcesses, monitor::kPorts, monitor::kConnections,
                                           monitor::kSystem};
  return kMonitors;
}

SourceLevel BpfSource::level() const {
  if (!stream_) return {Level::kNone, "BPF", refusal_};
  return {Level::kEvents, "BPF", stream_->Lacks()};
}

void BpfSource::Drain(std::vector<Observation>& into) {
  if (!stream_) return;
  const bool more = stream_->Read(kMostRecords, [&](std::string_view bytes) { Take(bytes, into); });
  const std::int64_t now_ns = parts_.now_ns();
  CountLosses(now_ns, into);
  const bool due = must_look_ || sockets_.WantsLook() || now_ns - looked_ns_ >= kLookEveryNs;
  const bool first = looked_ns_ == 0;
  // A look says how things stand now; records that still wait would be taken for news.
  if (due && !more && (first || now_ns - looked_ns_ >= kLooksApartNs)) Look(now_ns, into);
  processes_.TellSettled(now_ns, into);
}

void BpfSource::Take(std::string_view bytes, std::vector<Observation>& into) {
  const auto record = ReadKernelRecord(bytes);
  if (!record) {
    ++damaged_;
    return;
  }
  std::visit(Overloaded{[&](const ExecSeen& seen) { processes_.Take(seen, into); },
                        [&](const ForkSeen& seen) { processes_.Take(seen); },
                        [&](const ExitSeen& seen) { processes_.Take(seen, into); },
                        [&](const SocketSeen& seen) { sockets_.Take(seen, into); },
                        [&](const ModuleSeen& seen) { Take(seen, into); }},
             *record);
}

void BpfSource::Take(const ModuleSeen& seen, std::vector<Observation>& into) {
  const auto program = processes_.ProgramOf(seen.by);
  Observation observation;
  observation.kind = Observation::Kind::kHappened;
  observation.seen_ns = seen.by.seen_ns;
  observation.item.monitor = monitor::kSystem;
  observation.item.description = "kernel module " + CleanName(seen.name) + " loaded by " + program->name;
  observation.item.subject = program->subject;
  into.push_back(std::move(observation));
}

void BpfSource::CountLosses(std::int64_t now_ns, std::vector<Observation>& into) {
  const std::vector<std::uint64_t> lost = stream_->Lost();
  lost_.resize(std::max(lost_.size(), lost.size()));
  std::uint64_t processes = 0;
  for (std::size_t kind = 0; kind < lost.size(); ++kind) {
    const std::uint64_t more = lost[kind] - std::exchange(lost_[kind], lost[kind]);
    if (more > 0 && kind == kRecordExec) exec_lost_ = true;
    if (MonitorOf(kind) == monitor::kProcesses) {
      processes += more;
    } else {
      TellLost(MonitorOf(kind), more, now_ns, into);
    }
  }
  TellLost(monitor::kProcesses, processes, now_ns, into);
  TellLost(monitor::kConnections, sockets_.overflow() - std::exchange(overflow_, sockets_.overflow()), now_ns,
           into);
  if (damaged_ > 0) exec_lost_ = true;
  TellLost({}, std::exchange(damaged_, 0), now_ns, into);
}

void BpfSource::TellLost(std::string_view monitor_name, std::uint64_t count, std::int64_t now_ns,
                         std::vector<Observation>& into) {
  if (count == 0) return;
  Observation observation;
  observation.kind = Observation::Kind::kLost;
  observation.seen_ns = now_ns;
  observation.item.monitor = monitor_name;
  observation.lost = count;
  into.push_back(std::move(observation));
  must_look_ = true;
}

void BpfSource::Look(std::int64_t now_ns, std::vector<Observation>& into) {
  const std::vector<Process> processes = ReadProcesses(parts_.host, parts_.own_pid);
  processes_.Compare(processes, exec_lost_, now_ns, into);
  const auto found = [&]() -> const std::vector<Process>& { return processes; };
  sockets_.Compare(parts_.host, found, namer_, now_ns, into);
  must_look_ = false;
  exec_lost_ = false;
  looked_ns_ = now_ns;
}

std::unique_ptr<Source> MakeBpfSource(HostView& host, std::uint64_t own_pid) {
  return std::make_unique<BpfSource>(SourceParts{host, own_pid, BootTimeNs}, OpenKernelStream());
}

}  // namespace zendrix::agent
