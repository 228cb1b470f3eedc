// Running processes. Kernel threads, ended processes and the Agent itself are left out. The Agent reads
// no command lines and no environments: they hold passwords, and the monitoring file is no place for them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "agent/events/snapshot.h"
#include "agent/host/host_view.h"
#include "agent/host/parse_processes.h"

namespace zendrix::agent {

struct Process {
  ProcessStat stat;
  ProgramFile program;  // path empty when it may not be read
  // Of the mount namespace that the program's path belongs to; 0 where it is the host's, the file is the very
  // one that the host has at this path, or nothing can be told.
  std::uint64_t foreign_namespace = 0;
};

// Number of a process's mount namespace; 0 where it may not be seen. The host's is that of process 1, since
// the Agent itself may be given one of its own; where that cannot be seen, the Agent's.
std::uint64_t ReadMountNamespace(HostView& host, const std::string& process);
std::uint64_t ReadHostNamespace(HostView& host);

// Whether both paths lead to one file.
bool IsSameFile(HostView& host, const std::string& path, const std::string& other);

// Finds out which of these run files of other mount namespaces.
void TellForeignOnes(HostView& host, std::vector<Process>& processes);

// No value when it has ended, or is the kernel's own.
std::optional<Process> ReadProcess(HostView& host, std::uint64_t pid);
std::vector<Process> ReadProcesses(HostView& host, std::uint64_t own_pid);

// A program as lines call it.
struct Program {
  std::string name;         // clean: its path, and what tells it from the host's program of that path
  std::string subject;      // what facts about it are weighed under; mostly the name
  ProgramFile file;         // path empty when it is not known
  std::uint64_t inode = 0;  // of the file, as the kernel told it of the start; 0: not told
};

Program ProgramOf(const Process& process);

// The path of the program's file on this host, its bytes; empty when there is no such file any more, there
// never was one, or it is a container's.
std::string HostPathOf(const Program& program);
// What other programs are told to have been started by: that path, or what facts about it are weighed under.
std::string ParentKeyOf(const Program& program);

// What a line calls the program: its path, or the process name when the path may not be read.
std::string ProgramName(const Process& process);

// What a program file's place says about it.
RuleSet RulesOfProgram(const ProgramFile& program);

RuleSet RulesOfProcess(const Program& program, std::string_view process_name);

// "path:pid" of one process.
Item ProcessItem(const Program& program, std::uint64_t pid, std::uint64_t start_ticks, RuleSet rules);

// "path:pid" for each process.
std::vector<Item> ObserveProcesses(const std::vector<Process>& processes);

// File names of the programs that hold most memory, at most two, largest first.
std::vector<std::string> LargestPrograms(HostView& host, const std::vector<Process>& processes);

}  // namespace zendrix::agent
