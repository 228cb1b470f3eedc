// What a program is called, so that it never passes for another. A path names a file only together with the
// mount namespace that it is looked up in: a process in a container, or in a namespace that a user made for
// himself, may run its own file at the path of one of the host's. So a program of another mount namespace has
// that namespace in its name, unless the file is the very one that the host has at this path (as it is for
// most services, which the system starts in namespaces of their own).
#pragma once

#include <cstdint>
#include <optional>

#include "agent/host/host_view.h"
#include "agent/host/observe_processes.h"
#include "agent/sources/kernel_records.h"

namespace zendrix::agent {

class ProgramNamer {
 public:
  // `host` outlives the object. The host's mount namespace is that of process 1, since the Agent itself may
  // be given one of its own; where that cannot be seen, the Agent's.
  explicit ProgramNamer(HostView& host);

  Program NameOf(const ExecSeen& seen);
  // The program that /proc shows of a process; no value when it shows none of this start.
  std::optional<Program> LookUp(std::uint64_t pid, std::uint64_t start_ticks);
  Program NameOf(const Process& process);

 private:
  Program Named(ProgramFile file, std::uint64_t mount_namespace, const FileIdentity& identity);

  HostView& host_;
  std::uint64_t host_namespace_ = 0;
};

// Called "an unknown program" with the reason, in the place of a guess.
Program UnknownProgram(const char* reason);

}  // namespace zendrix::agent
