// Which processes run and which program each of them runs, kept up from the kernel's records. A process that
// is only a copy of its parent is told when it has lived for a second: before, it is most likely about to
// become another program. Every process that was told as come is told as gone, once.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "agent/sources/kernel_records.h"
#include "agent/sources/program_namer.h"
#include "agent/sources/source.h"

namespace zendrix::agent {

class ProcessTable {
 public:
  static constexpr std::int64_t kSettledAfterNs = 1'000'000'000;
  static constexpr std::size_t kMostProcesses = 200'000;

  // `own_pid` is left out: the Agent does not report itself.
  ProcessTable(ProgramNamer& namer, std::uint64_t own_pid) : namer_(namer), own_pid_(own_pid) {}

  void Take(const ExecSeen& seen, std::vector<Observation>& into);
  // The same with a program that has its name already.
  void Take(const Doer& by, std::uint64_t parent, Program program, std::string_view comm,
            std::vector<Observation>& into);
  void Take(const ForkSeen& seen);
  void Take(const ExitSeen& seen, std::vector<Observation>& into);
  // Tells the copies that have lived long enough.
  void TellSettled(std::int64_t now_ns, std::vector<Observation>& into);
  // Compares with what /proc shows. All records up to this moment have been taken. `exec_lost`: the programs
  // that /proc shows count, since a change of one may have gone unseen.
  void Compare(const std::vector<Process>& processes, bool exec_lost, std::int64_t now_ns,
               std::vector<Observation>& into);

  // The program of a process that did something; "unknown" with the reason when nobody knows.
  std::shared_ptr<const Program> ProgramOf(const Doer& doer);
  // When the process of this number began, in ticks since boot; no value when none is known.
  std::optional<std::uint64_t> StartOf(std::uint64_t pid) const;
  std::size_t size() const { return entries_.size(); }

 private:
  struct Entry {
    std::uint64_t start_ticks = 0;
    std::shared_ptr<const Program> program;  // null: not known yet
    std::shared_ptr<const Program> parent;   // what started it; null: not known
    RuleSet rules;
    bool named_like_kernel = false;
    bool told = false;
  };
  struct Copy {
    std::uint64_t pid = 0;
    std::uint64_t start_ticks = 0;
    std::int64_t seen_ns = 0;
  };

  std::shared_ptr<const Program> KnownProgram(std::uint64_t pid) const;
  Entry* Find(std::uint64_t pid, std::uint64_t start_ticks);
  Entry* Add(std::uint64_t pid, std::uint64_t start_ticks);
  void Tell(std::uint64_t pid, Entry& entry, std::int64_t at_ns, std::vector<Observation>& into);
  static void TellGone(std::uint64_t pid, const Entry& entry, std::int64_t at_ns,
                       std::vector<Observation>& into);
  void CompareOne(const Process& process, bool exec_lost, std::int64_t now_ns,
                  std::vector<Observation>& into);

  ProgramNamer& namer_;
  const std::uint64_t own_pid_;
  std::unordered_map<std::uint64_t, Entry> entries_;  // by pid
  std::deque<Copy> copies_;                           // not told yet, oldest first
};

}  // namespace zendrix::agent
