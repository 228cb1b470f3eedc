#include "agent/sources/program_namer.h"

#include "agent/host/text.h"

namespace zendrix::agent {
namespace {

constexpr std::size_t kStatLimit = 4096;

// "mnt:[4026531841]"
std::uint64_t ReadNamespace(HostView& host, const std::string& process) {
  const auto target = host.ReadLink("/proc/" + process + "/ns/mnt");
  std::uint64_t number = 0;
  if (!target || !target->starts_with("mnt:[") || !target->ends_with("]")) return 0;
  ReadNumber(std::string_view(*target).substr(5, target->size() - 6), number);
  return number;
}

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

ProgramNamer::ProgramNamer(HostView& host) : host_(host), host_namespace_(ReadNamespace(host, "1")) {
  if (host_namespace_ == 0) host_namespace_ = ReadNamespace(host, "self");
}

Program ProgramNamer::Named(const ProgramFile& file, std::uint64_t mount_namespace,
                            const FileIdentity& identity) {
  Program program;
  program.name = CleanName(file.path);
  program.subject = program.name;
  program.file = file;
  if (file.in_memory || mount_namespace == host_namespace_ || host_namespace_ == 0) return program;
  const auto facts = host_.LookThrough(file.path);
  if (facts && IdentityOf(*facts) == identity) return program;
  if (mount_namespace == 0) {
    program.name += " in no mount namespace";
    program.subject = program.name;
  } else {
    // The number differs from one start of a container to the next. It is shown; what is known about the
    // program does not hang on it.
    program.name += " in mount namespace " + std::to_string(mount_namespace);
    program.subject += " in another mount namespace";
  }
  return program;
}

Program ProgramNamer::NameOf(const ExecSeen& seen) {
  if (!seen.path_cut) return Named(seen.program, seen.mount_namespace, seen.file);
  const auto found = LookUp(seen.by.pid, seen.by.start_ticks);
  return found ? *found : UnknownProgram("its path is too long");
}

std::optional<Program> ProgramNamer::LookUp(std::uint64_t pid, std::uint64_t start_ticks) {
  const std::string folder = "/proc/" + std::to_string(pid);
  // The program first: what the state then says about the start held for the program as well.
  const auto target = host_.ReadLink(folder + "/exe");
  const auto text = host_.ReadText(folder + "/stat", kStatLimit);
  auto stat = text ? ParseProcessStat(*text) : std::nullopt;
  if (!target || !stat || stat->start_ticks != start_ticks) return {};
  Process process;
  process.stat = std::move(*stat);
  process.program = ParseProgramFile(*target);
  return NameOf(process);
}

Program ProgramNamer::NameOf(const Process& process) {
  if (process.program.path.empty()) return ProgramOf(process);
  const std::string pid = std::to_string(process.stat.pid);
  const std::uint64_t mount_namespace = ReadNamespace(host_, pid);
  if (mount_namespace == 0 || mount_namespace == host_namespace_) return ProgramOf(process);
  const auto facts = host_.LookThrough("/proc/" + pid + "/exe");
  return Named(process.program, mount_namespace, facts ? IdentityOf(*facts) : FileIdentity{});
}

}  // namespace zendrix::agent
