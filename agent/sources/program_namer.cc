#include "agent/sources/program_namer.h"

#include <utility>
#include <vector>

namespace zendrix::agent {
namespace {

FileIdentity IdentityOf(const EntryFacts& facts) {
  return {facts.device, facts.inode};
}

}  // namespace

Program UnknownProgram(const char* reason) {
  Program program;
  program.subject = "an unknown program";
  program.name = program.subject + " (" + reason + ")";
  return program;
}

ProgramNamer::ProgramNamer(HostView& host) : host_(host), host_namespace_(ReadHostNamespace(host)) {}

Program ProgramNamer::Named(ProgramFile file, std::uint64_t mount_namespace, const FileIdentity& identity) {
  const auto is_it = [&](const std::string& path) {
    const auto facts = host_.LookThrough(path);
    return facts && IdentityOf(*facts) == identity;
  };
  Process process;
  process.program = std::move(file);
  const ProgramFile& named = process.program;
  const bool is_hosts = named.in_memory || mount_namespace == host_namespace_ || host_namespace_ == 0;
  if (!is_hosts && !is_it(named.path)) process.foreign_namespace = mount_namespace;
  Program program = ProgramOf(process);
  program.inode = identity.inode;
  if (!is_hosts && mount_namespace == 0 && !is_it(named.path)) {
    program.name += " in no mount namespace";
    program.subject = program.name;
  }
  return program;
}

Program ProgramNamer::NameOf(const ExecSeen& seen) {
  if (!seen.path_cut) return Named(seen.program, seen.mount_namespace, seen.file);
  const auto found = LookUp(seen.by.pid, seen.by.start_ticks);
  return found ? *found : UnknownProgram("its path is too long");
}

std::optional<Program> ProgramNamer::LookUp(std::uint64_t pid, std::uint64_t start_ticks) {
  const auto process = ReadProcess(host_, pid);
  if (!process || process->program.path.empty() || process->stat.start_ticks != start_ticks) return {};
  return NameOf(*process);
}

Program ProgramNamer::NameOf(const Process& process) {
  std::vector<Process> one = {process};
  if (host_namespace_ != 0) TellForeignOnes(host_, one);
  return ProgramOf(one.front());
}

}  // namespace zendrix::agent
