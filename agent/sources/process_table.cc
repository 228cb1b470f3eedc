#include "agent/sources/process_table.h"

#include <unordered_set>
#include <utility>

#include "agent/host/places.h"

namespace zendrix::agent {
namespace {

constexpr char kStartNotSeen[] = "it ended before it could be looked at";

}  // namespace

std::shared_ptr<const Program> ProcessTable::KnownProgram(std::uint64_t pid) const {
  const auto found = entries_.find(pid);
  return found == entries_.end() ? nullptr : found->second.program;
}

std::optional<std::uint64_t> ProcessTable::StartOf(std::uint64_t pid) const {
  const auto found = entries_.find(pid);
  return found == entries_.end() ? std::nullopt : std::optional(found->second.start_ticks);
}

ProcessTable::Entry* ProcessTable::Find(std::uint64_t pid, std::uint64_t start_ticks) {
  const auto found = entries_.find(pid);
  return found != entries_.end() && found->second.start_ticks == start_ticks ? &found->second : nullptr;
}

// Null when the table is full, which only lost ends can bring about; a comparison with /proc then makes room.
ProcessTable::Entry* ProcessTable::Add(std::uint64_t pid, std::uint64_t start_ticks) {
  if (entries_.size() >= kMostProcesses && !entries_.contains(pid)) return nullptr;
  Entry& entry = entries_[pid];
  entry = {};
  entry.start_ticks = start_ticks;
  return &entry;
}

void ProcessTable::Tell(std::uint64_t pid, Entry& entry, std::int64_t at_ns, std::vector<Observation>& into) {
  Observation seen;
  seen.kind = Observation::Kind::kCame;
  seen.seen_ns = at_ns;
  seen.item = ProcessItem(*entry.program, pid, entry.start_ticks, entry.rules);
  if (entry.parent) seen.item.parent = ParentKeyOf(*entry.parent);
  into.push_back(std::move(seen));
  entry.told = true;
}

void ProcessTable::TellGone(std::uint64_t pid, const Entry& entry, std::int64_t at_ns,
                            std::vector<Observation>& into) {
  if (!entry.told) return;
  Observation seen;
  seen.kind = Observation::Kind::kWent;
  seen.seen_ns = at_ns;
  seen.item = ProcessItem(*entry.program, pid, entry.start_ticks, entry.rules);
  into.push_back(std::move(seen));
}

void ProcessTable::Take(const ExecSeen& seen, std::vector<Observation>& into) {
  if (seen.by.pid == own_pid_) return;
  Take(seen.by, seen.parent, namer_.NameOf(seen), seen.comm, into);
}

void ProcessTable::Take(const Doer& by, std::uint64_t parent, Program program, std::string_view comm,
                        std::vector<Observation>& into) {
  if (by.pid == own_pid_) return;
  const auto before = entries_.find(by.pid);
  if (before != entries_.end()) TellGone(by.pid, before->second, by.seen_ns, into);
  Entry* entry = Add(by.pid, by.start_ticks);
  if (!entry) return;
  entry->parent = KnownProgram(parent);
  entry->program = std::make_shared<const Program>(std::move(program));
  entry->named_like_kernel = LooksLikeKernelThread(comm);
  entry->rules = RulesOfProcess(*entry->program, comm);
  Tell(by.pid, *entry, by.seen_ns, into);
}

void ProcessTable::Take(const ForkSeen& seen) {
  if (seen.by.pid == own_pid_ || Find(seen.by.pid, seen.by.start_ticks)) return;
  const std::shared_ptr<const Program> program = KnownProgram(seen.parent);
  Entry* entry = Add(seen.by.pid, seen.by.start_ticks);
  if (!entry) return;
  entry->program = program;
  entry->parent = program;
  entry->named_like_kernel = LooksLikeKernelThread(seen.comm);
  if (program) entry->rules = RulesOfProcess(*program, seen.comm);
  copies_.push_back({seen.by.pid, seen.by.start_ticks, seen.by.seen_ns});
}

void ProcessTable::Take(const ExitSeen& seen, std::vector<Observation>& into) {
  const Entry* entry = Find(seen.by.pid, seen.by.start_ticks);
  if (!entry) return;
  TellGone(seen.by.pid, *entry, seen.by.seen_ns, into);
  entries_.erase(seen.by.pid);
}

void ProcessTable::TellSettled(std::int64_t now_ns, std::vector<Observation>& into) {
  while (!copies_.empty() && now_ns - copies_.front().seen_ns >= kSettledAfterNs) {
    const Copy copy = copies_.front();
    copies_.pop_front();
    Entry* entry = Find(copy.pid, copy.start_ticks);
    if (!entry || entry->told) continue;
    if (!entry->program) {
      auto program = namer_.LookUp(copy.pid, copy.start_ticks);
      if (!program) continue;  // its end is on the way, or the next comparison finds it
      entry->program = std::make_shared<const Program>(std::move(*program));
      entry->rules = RulesOfProgram(entry->program->file);
      if (entry->named_like_kernel) entry->rules.Add(Rule::kNamedLikeKernelThread);
    }
    Tell(copy.pid, *entry, copy.seen_ns, into);
  }
}

void ProcessTable::CompareOne(const Process& process, bool exec_lost, std::int64_t now_ns,
                              std::vector<Observation>& into) {
  const std::uint64_t pid = process.stat.pid;
  Entry* entry = Find(pid, process.stat.start_ticks);
  const bool is_copy = entry && !entry->told;  // tells itself when it has settled
  if (is_copy && entry->program) return;
  const bool runs_another = entry && entry->program && exec_lost && !process.program.path.empty() &&
                            entry->program->file.path != process.program.path;
  if (!entry || !entry->program || runs_another) {
    const auto before = entries_.find(pid);
    if (before != entries_.end()) TellGone(pid, before->second, now_ns, into);
    entry = Add(pid, process.stat.start_ticks);
    if (!entry) return;
    entry->program = std::make_shared<const Program>(namer_.NameOf(process));
    entry->parent = KnownProgram(process.stat.parent);
    entry->rules = RulesOfProcess(*entry->program, process.stat.name);
    Tell(pid, *entry, now_ns, into);
    return;
  }
  // What it did since to its name or to its file is a fact about it too.
  RuleSet rules = entry->rules;
  if (LooksLikeKernelThread(process.stat.name)) rules.Add(Rule::kNamedLikeKernelThread);
  if (process.program.deleted && !process.program.in_memory) rules.Add(Rule::kProgramDeleted);
  if (rules == entry->rules) return;
  entry->rules = rules;
  Tell(pid, *entry, now_ns, into);
}

void ProcessTable::Compare(const std::vector<Process>& processes, bool exec_lost, std::int64_t now_ns,
                           std::vector<Observation>& into) {
  std::unordered_set<std::uint64_t> there;
  for (const Process& process : processes) {
    there.insert(process.stat.pid);
    if (process.stat.pid != own_pid_) CompareOne(process, exec_lost, now_ns, into);
  }
  // A /proc that hides other users' processes says nothing about who went.
  if (!there.contains(1)) return;
  std::erase_if(entries_, [&](const auto& entry) {
    if (there.contains(entry.first)) return false;
    TellGone(entry.first, entry.second, now_ns, into);
    return true;
  });
}

std::shared_ptr<const Program> ProcessTable::ProgramOf(const Doer& doer) {
  const Entry* entry = Find(doer.pid, doer.start_ticks);
  if (entry && entry->program) return entry->program;
  auto program = namer_.LookUp(doer.pid, doer.start_ticks);
  return std::make_shared<const Program>(program ? std::move(*program) : UnknownProgram(kStartNotSeen));
}

}  // namespace zendrix::agent
