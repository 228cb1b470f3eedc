#include "agent/host/observe_processes.h"

#include <algorithm>
#include <map>

#include "agent/host/distinct_name.h"
#include "agent/host/places.h"
#include "agent/host/text.h"

namespace zendrix::agent {
namespace {

constexpr std::size_t kStatLimit = 4096;
constexpr std::size_t kStatusLimit = 16384;

std::string FolderOf(std::uint64_t pid) {
  return "/proc/" + std::to_string(pid);
}

// Memory that the processes of a program hold.
struct Held {
  std::uint64_t kilobytes = 0;
  std::vector<std::uint64_t> pids;
};

constexpr std::size_t kMostNamed = 2;
constexpr std::size_t kMostWeighed = 4;  // programs of which the shares are looked at
constexpr std::size_t kMostShares = 40;  // processes; each look makes the kernel walk all its memory

// What programs have in common counts for each of them, so that many small processes look like a large
// program. The shares say better; but only all of them can be compared, and of other users' processes they
// are root's to see.
bool TakeShares(HostView& host, const std::vector<std::string>& names,
                std::map<std::string, Held>& programs) {
  std::map<std::string, std::uint64_t> shares;
  std::size_t looks = 0;
  for (const std::string& name : names) {
    for (const std::uint64_t pid : programs[name].pids) {
      if (++looks > kMostShares) return false;
      const auto text = host.ReadText(FolderOf(pid) + "/smaps_rollup", kStatusLimit);
      const auto kilobytes = text ? ParseShareKb(*text) : std::nullopt;
      if (!kilobytes) return false;
      shares[name] += *kilobytes;
    }
  }
  for (const auto& [name, share] : shares) programs[name].kilobytes = share;
  return true;
}

}  // namespace

std::optional<Process> ReadProcess(HostView& host, std::uint64_t pid) {
  // The program before the state: a process that ends between the two has ended, and is not taken for one
  // whose program may not be read.
  const auto target = host.ReadLink(FolderOf(pid) + "/exe");
  const auto text = host.ReadText(FolderOf(pid) + "/stat", kStatLimit);
  auto stat = text ? ParseProcessStat(*text) : std::nullopt;
  if (!stat || stat->kernel_thread || stat->ended) return {};
  Process process;
  process.stat = std::move(*stat);
  if (target) process.program = ParseProgramFile(*target);
  // The kernel appends the word to the name of a file that is gone, but a file may bear it in its own name.
  const bool says_deleted = process.program.deleted && !process.program.in_memory;
  if (says_deleted && IsSameFile(host, *target, FolderOf(pid) + "/exe")) {
    process.program.path = *target;
    process.program.deleted = false;
  }
  return process;
}

// "mnt:[4026531841]"
std::uint64_t ReadMountNamespace(HostView& host, const std::string& process) {
  const auto target = host.ReadLink("/proc/" + process + "/ns/mnt");
  std::uint64_t number = 0;
  if (!target || !target->starts_with("mnt:[") || !target->ends_with("]")) return 0;
  ReadNumber(std::string_view(*target).substr(5, target->size() - 6), number);
  return number;
}

std::uint64_t ReadHostNamespace(HostView& host) {
  const std::uint64_t number = ReadMountNamespace(host, "1");
  return number != 0 ? number : ReadMountNamespace(host, "self");
}

bool IsSameFile(HostView& host, const std::string& path, const std::string& other) {
  const auto facts = host.LookThrough(path);
  const auto others = facts ? host.LookThrough(other) : std::nullopt;
  return facts && others && facts->device == others->device && facts->inode == others->inode;
}

void TellForeignOnes(HostView& host, std::vector<Process>& processes) {
  const std::uint64_t own = ReadHostNamespace(host);
  if (own == 0) return;
  for (Process& process : processes) {
    if (process.program.path.empty() || process.program.in_memory) continue;
    const std::uint64_t number = ReadMountNamespace(host, std::to_string(process.stat.pid));
    if (number == 0 || number == own) continue;
    if (!IsSameFile(host, process.program.path, FolderOf(process.stat.pid) + "/exe"))
      process.foreign_namespace = number;
  }
}

std::vector<Process> ReadProcesses(HostView& host, std::uint64_t own_pid) {
  std::vector<Process> processes;
  for (const std::string& name : host.List("/proc")) {
    std::uint64_t pid = 0;
    if (!ReadNumber(name, pid) || pid == own_pid) continue;
    if (auto process = ReadProcess(host, pid)) processes.push_back(std::move(*process));
  }
  return processes;
}

std::string ProgramName(const Process& process) {
  if (!process.program.path.empty()) return DistinctName(process.program.path);
  // A process may call itself by any path.
  return process.stat.name.find('/') == std::string::npos ? DistinctName(process.stat.name)
                                                          : MarkedName(process.stat.name);
}

Program ProgramOf(const Process& process) {
  Program program;
  program.name = ProgramName(process);
  program.subject = program.name;
  program.file = process.program;
  if (process.foreign_namespace != 0) {
    // The number differs from one start of a container to the next. It is shown; what is known about the
    // program does not hang on it.
    program.name += " in mount namespace " + std::to_string(process.foreign_namespace);
    program.subject += " in another mount namespace";
  }
  return program;
}

std::string HostPathOf(const Program& program) {
  const ProgramFile& file = program.file;
  const bool is_there = !file.in_memory && !file.deleted && program.subject == DistinctName(file.path);
  return is_there ? file.path : "";
}

std::string ParentKeyOf(const Program& program) {
  const std::string path = HostPathOf(program);
  return path.empty() ? program.subject : path;
}

RuleSet RulesOfProgram(const ProgramFile& program) {
  RuleSet rules;
  if (program.path.empty()) return rules;
  if (program.in_memory) return {Rule::kProgramInMemory};  // the other facts follow from this one
  if (program.deleted) rules.Add(Rule::kProgramDeleted);
  if (InTemporaryFolder(program.path)) {
    rules.Add(Rule::kProgramInTemporaryFolder);
  } else if (!InSystemFolder(program.path)) {
    rules.Add(Rule::kProgramOutsideSystem);
  }
  if (IsHidden(program.path)) rules.Add(Rule::kProgramHidden);
  if (IsLoader(program.path)) rules.Add(Rule::kStartedByLoader);
  return rules;
}

RuleSet RulesOfProcess(const Program& program, std::string_view process_name) {
  RuleSet rules = RulesOfProgram(program.file);
  if (LooksLikeKernelThread(process_name)) rules.Add(Rule::kNamedLikeKernelThread);
  return rules;
}

Item ProcessItem(const Program& program, std::uint64_t pid, std::uint64_t start_ticks, RuleSet rules) {
  Item item;
  item.monitor = monitor::kProcesses;
  item.subject = program.subject;
  item.description = program.name + ":" + std::to_string(pid);
  item.identity = std::to_string(start_ticks);
  item.rules = rules;
  item.program = HostPathOf(program);
  item.inode = program.inode;
  item.process = pid;
  return item;
}

std::vector<Item> ObserveProcesses(const std::vector<Process>& processes) {
  std::vector<Item> items;
  std::map<std::uint64_t, const Process*> by_pid;
  for (const Process& process : processes) by_pid[process.stat.pid] = &process;
  for (const Process& process : processes) {
    const Program program = ProgramOf(process);
    items.push_back(ProcessItem(program, process.stat.pid, process.stat.start_ticks,
                                RulesOfProcess(program, process.stat.name)));
    const auto parent = by_pid.find(process.stat.parent);
    if (parent != by_pid.end()) items.back().parent = ParentKeyOf(ProgramOf(*parent->second));
  }
  return items;
}

std::vector<std::string> LargestPrograms(HostView& host, const std::vector<Process>& processes) {
  std::map<std::string, Held> programs;
  for (const Process& process : processes) {
    const auto text = host.ReadText(FolderOf(process.stat.pid) + "/status", kStatusLimit);
    const auto kilobytes = text ? ParseResidentKb(*text) : std::nullopt;
    if (!kilobytes) continue;
    const std::string name = ProgramName(process);
    Held& held = programs[name.substr(name.rfind('/') + 1)];
    held.kilobytes += *kilobytes;
    held.pids.push_back(process.stat.pid);
  }
  std::vector<std::string> names;
  for (const auto& [name, held] : programs) names.push_back(name);
  const auto sort = [&] {
    std::stable_sort(names.begin(), names.end(), [&](const std::string& a, const std::string& b) {
      return programs[a].kilobytes > programs[b].kilobytes;
    });
  };
  sort();
  names.resize(std::min(names.size(), kMostWeighed));
  if (TakeShares(host, names, programs)) sort();
  names.resize(std::min(names.size(), kMostNamed));
  return names;
}

}  // namespace zendrix::agent
