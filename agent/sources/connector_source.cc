#include "agent/sources/connector_source.h"

#include <linux/connector.h>
#include <linux/netlink.h>

#include <array>
#include <cstring>
#include <ctime>
#include <utility>

#include "agent/host/boot_time.h"
#include "agent/host/text.h"

namespace zendrix::agent {
namespace {

constexpr int kNoticeRoom = 8 << 20;
constexpr int kEndRoom = 16 << 20;  // a notice of an end takes more than a kilobyte there
constexpr int kAnswerMs = 500;
constexpr std::size_t kMostAnswers = 100'000;  // datagrams to look through for an answer
constexpr std::size_t kProcessorsLimit = 4096;
constexpr char kEndedBefore[] = "it ended before it could be looked at";
constexpr char kRanAnother[] = "it ran another program before it could be looked at";

std::string WordOf(std::uint32_t error) {
  return std::strerror(static_cast<int>(error));
}

// Reads until `take` has found what it looks for.
template <class Take>
bool Await(NetlinkStream& stream, Take take) {
  std::string datagram;
  for (std::size_t i = 0; i < kMostAnswers; ++i) {
    const auto outcome = stream.Receive(datagram, kAnswerMs);
    if (outcome == NetlinkStream::Outcome::kNone) return false;
    if (outcome == NetlinkStream::Outcome::kGot && take(datagram)) return true;
  }
  return false;
}

// Without taskstats the source does with less, and says so.
void OpenEnds(HostView& host, OpenedConnector& opened) {
  auto stream = OpenNetlink(NETLINK_GENERIC, 0, kEndRoom);
  const auto processors = host.ReadText("/sys/devices/system/cpu/possible", kProcessorsLimit);
  if (!stream || !processors || !stream.value()->Send(TaskstatsFamilyQuestion())) return;
  std::optional<std::uint16_t> family;
  const bool known = Await(*stream.value(), [&](std::string_view datagram) {
    family = ReadTaskstatsFamily(datagram);
    return family || ReadErrorNumber(datagram);
  });
  if (!known || !family) return;
  if (!stream.value()->Send(LastProgramsQuestion(*family, std::string(Trim(*processors))))) return;
  std::optional<int> error;
  Await(*stream.value(), [&](std::string_view datagram) {
    error = ReadErrorNumber(datagram);
    return error.has_value();
  });
  if (error != 0) return;
  opened.ends = std::move(stream.value());
  opened.family = *family;
}

OpenedConnector OpenConnector(HostView& host) {
  OpenedConnector opened;
  auto stream = OpenNetlink(NETLINK_CONNECTOR, CN_IDX_PROC, kNoticeRoom);
  if (!stream) {
    opened.refusal = "the kernel refused: " + stream.error().text;
    return opened;
  }
  std::optional<std::uint32_t> error;
  // Where a process is in a namespace of its own the kernel does not even answer.
  if (stream.value()->Send(ProcessNoticesQuestion())) {
    Await(*stream.value(), [&](std::string_view datagram) {
      for (const ProcessNotice& notice : ReadProcessNotices(datagram)) {
        if (notice.kind == ProcessNotice::Kind::kAnswered) error = notice.error;
      }
      return error.has_value();
    });
  }
  if (error != 0U) {
    opened.refusal =
        error ? "the kernel refused: " + WordOf(*error)
              : "the kernel does not answer: the right is missing (CAP_NET_ADMIN), or it is a container";
    return opened;
  }
  opened.notices = std::move(stream.value());
  OpenEnds(host, opened);
  return opened;
}

}  // namespace

ConnectorSource::ConnectorSource(SourceParts parts, OpenedConnector opened)
    : parts_(std::move(parts)),
      opened_(std::move(opened)),
      namer_(parts_.host),
      index_(parts_.host),
      processes_(namer_, parts_.own_pid) {}

std::span<const std::string_view> ConnectorSource::Monitors() const {
  static constexpr std::array kMonitors = {monitor::kProcesses};
  return kMonitors;
}

SourceLevel ConnectorSource::level() const {
  if (!opened_.notices) return {Level::kNone, "process connector", opened_.refusal};
  return {Level::kNotices, "process connector",
          opened_.ends ? "what ends at once is known by the number of its file alone"
                       : "what ends at once cannot be named"};
}

bool ConnectorSource::ReadNotices(std::vector<ProcessNotice>& into) {
  std::string datagram;
  while (into.size() < kMostNotices) {
    switch (opened_.notices->Receive(datagram, 0)) {
      case NetlinkStream::Outcome::kNone:
        return false;
      case NetlinkStream::Outcome::kLost:
        // How many it were the numbers of the next ones say.
        must_look_ = start_lost_ = true;
        break;
      case NetlinkStream::Outcome::kGot:
        const auto notices = ReadProcessNotices(datagram);
        CountLosses(notices);
        into.insert(into.end(), notices.begin(), notices.end());
        break;
    }
  }
  return true;
}

void ConnectorSource::CountLosses(const std::vector<ProcessNotice>& notices) {
  for (const ProcessNotice& notice : notices) {
    if (notice.kind == ProcessNotice::Kind::kAnswered) continue;
    const auto [next, is_new] = next_numbers_.try_emplace(notice.processor, notice.number);
    const std::uint32_t missing = notice.number - next->second;
    next->second = notice.number + 1;
    // Numbers that go back mean a counter that began anew, not four billion losses.
    if (missing == 0 || missing > 0x7FFFFFFFU) continue;
    lost_ += missing;
    must_look_ = start_lost_ = true;
  }
}

void ConnectorSource::ReadEnds() {
  ends_before_ = std::exchange(ends_, {});
  if (!opened_.ends) return;
  std::string datagram;
  for (std::size_t i = 0; i < 2 * kMostNotices; ++i) {
    const auto outcome = opened_.ends->Receive(datagram, 0);
    if (outcome == NetlinkStream::Outcome::kNone) return;
    if (outcome == NetlinkStream::Outcome::kLost) continue;  // only names are lost by it
    for (LastProgram& last : ReadLastPrograms(datagram, opened_.family)) {
      const std::uint64_t pid = last.pid;
      ends_.insert_or_assign(pid, std::move(last));
    }
  }
}

ConnectorSource::Fates ConnectorSource::FatesOf(const std::vector<ProcessNotice>& notices) {
  Fates fates;
  for (std::size_t i = 0; i < notices.size(); ++i) {
    const ProcessNotice& notice = notices[i];
    if (notice.is_thread || notice.kind == ProcessNotice::Kind::kOther ||
        notice.kind == ProcessNotice::Kind::kAnswered) {
      continue;
    }
    Fate& fate = fates[notice.pid];
    if (notice.kind == ProcessNotice::Kind::kForked) {
      fate = {};  // the number was used before
      fate.parent = notice.parent;
    }
    if (notice.kind == ProcessNotice::Kind::kExecuted) fate.last_start = i + 1;
    if (notice.kind == ProcessNotice::Kind::kEnded) fate.end = i + 1;
  }
  for (auto& [pid, fate] : fates) {
    if (fate.end == 0 && pid != parts_.own_pid) fate.seen = ReadProcess(parts_.host, pid);
  }
  return fates;
}

void ConnectorSource::Drain(std::vector<Observation>& into) {
  if (!opened_.notices) return;
  const std::int64_t now_ns = parts_.now_ns();
  std::vector<ProcessNotice> notices = std::exchange(later_, {});
  bool more = ReadNotices(notices);
  Fates fates = FatesOf(notices);
  ReadEnds();
  // What /proc showed may be the program of a notice that came only now.
  more = ReadNotices(later_) || more;
  for (const ProcessNotice& notice : later_) {
    const auto fate = fates.find(notice.pid);
    if (fate != fates.end() && notice.kind == ProcessNotice::Kind::kExecuted)
      fate->second.starts_later = true;
  }
  const std::set<std::uint64_t> waits = Unexplained(fates);
  std::vector<ProcessNotice> held;
  for (std::size_t i = 0; i < notices.size(); ++i) {
    const auto fate = fates.find(notices[i].pid);
    if (waits.contains(notices[i].pid)) {
      held.push_back(notices[i]);
      continue;
    }
    if (fate != fates.end() && !notices[i].is_thread) Take(notices[i], i + 1, fate->second, now_ns, into);
  }
  later_.insert(later_.begin(), held.begin(), held.end());
  held_ = waits;
  if (lost_ > 0) {
    Observation observation;
    observation.kind = Observation::Kind::kLost;
    observation.seen_ns = now_ns;
    observation.item.monitor = monitor::kProcesses;
    observation.lost = std::exchange(lost_, 0);
    into.push_back(std::move(observation));
  }
  const std::int64_t since_ns = now_ns - looked_ns_;
  const bool due = looked_ns_ == 0 || since_ns >= kLookEveryNs || (must_look_ && since_ns >= kLooksApartNs);
  // A look says how things stand now; notices that still wait are taken for news by it. On a busy computer
  // some always wait.
  const bool overdue = looked_ns_ == 0 || since_ns >= kLookEveryNs + kLooksApartNs;
  if (due && !more && (later_.empty() || overdue)) Look(now_ns, into);
  processes_.TellSettled(now_ns, into);
}

void ConnectorSource::Take(const ProcessNotice& notice, std::size_t position, const Fate& fate,
                           std::int64_t now_ns, std::vector<Observation>& into) {
  switch (notice.kind) {
    case ProcessNotice::Kind::kExecuted:
      TakeStart(notice, position, fate, now_ns, into);
      break;
    case ProcessNotice::Kind::kEnded:
      if (const auto start = processes_.StartOf(notice.pid))
        processes_.Take(ExitSeen{{notice.pid, *start, now_ns}}, into);
      break;
    case ProcessNotice::Kind::kForked:
      // A copy that runs a program of its own is told by that.
      if (fate.seen && fate.last_start == 0 && !fate.starts_later) {
        const ProcessStat& stat = fate.seen->stat;
        processes_.Take(ForkSeen{{notice.pid, stat.start_ticks, now_ns}, notice.parent, stat.name});
      }
      break;
    case ProcessNotice::Kind::kAnswered:
    case ProcessNotice::Kind::kOther:
      break;
  }
}

// A process that is about to end shows nothing any more a moment before taskstats tells of it. So what nobody
// can name yet waits for one more turn, and no longer.
std::set<std::uint64_t> ConnectorSource::Unexplained(const Fates& fates) const {
  std::set<std::uint64_t> waits;
  if (!opened_.ends) return waits;
  for (const auto& [pid, fate] : fates) {
    const bool is_named = fate.seen || fate.starts_later || EndOf(pid) != nullptr;
    if (fate.last_start > 0 && !is_named && pid != parts_.own_pid && !held_.contains(pid)) waits.insert(pid);
  }
  return waits;
}

const LastProgram* ConnectorSource::EndOf(std::uint64_t pid) const {
  for (const auto* const ends : {&ends_, &ends_before_}) {
    const auto found = ends->find(pid);
    if (found != ends->end()) return &found->second;
  }
  return nullptr;
}

// A program is named only by what cannot be another's: a process that runs one program after the other shows
// only the last of them.
void ConnectorSource::TakeStart(const ProcessNotice& notice, std::size_t position, const Fate& fate,
                                std::int64_t now_ns, std::vector<Observation>& into) {
  Doer by = {notice.pid, 0, now_ns};
  std::uint64_t parent = fate.parent;
  std::string comm;
  Program program = UnknownProgram(kRanAnother);
  if (position == fate.last_start && !fate.starts_later) {
    const LastProgram* const end = EndOf(notice.pid);
    if (fate.seen) {
      program = namer_.NameOf(*fate.seen);
      by.start_ticks = fate.seen->stat.start_ticks;
      parent = fate.seen->stat.parent;
      comm = fate.seen->stat.name;
      index_.Learn(HostPathOf(program));
    } else {
      program = UnknownProgram(kEndedBefore);
      if (end != nullptr) {
        parent = end->parent;
        comm = end->comm;
        Process process;
        process.program.path = index_.PathOf(end->file, now_ns).value_or("");
        if (!process.program.path.empty()) program = ProgramOf(process);
      }
    }
  }
  processes_.Take(by, parent, std::move(program), comm, into);
}

void ConnectorSource::Look(std::int64_t now_ns, std::vector<Observation>& into) {
  const std::vector<Process> processes = ReadProcesses(parts_.host, parts_.own_pid);
  for (const Process& process : processes) {
    if (looked_ns_ == 0) index_.Learn(HostPathOf(namer_.NameOf(process)));
  }
  processes_.Compare(processes, start_lost_, now_ns, into);
  must_look_ = false;
  start_lost_ = false;
  looked_ns_ = now_ns;
}

std::unique_ptr<Source> MakeConnectorSource(HostView& host, std::uint64_t own_pid) {
  return std::make_unique<ConnectorSource>(SourceParts{host, own_pid, BootTimeNs}, OpenConnector(host));
}

}  // namespace zendrix::agent
