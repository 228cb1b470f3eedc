// Reader of the records that the kernel programs leave (agent/bpf/records.h). Pure functions on bytes: a
// record that is short, of an unknown kind or does not hold what it says gives no value. Names and paths come
// out as the raw bytes that somebody chose.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "agent/host/parse_network.h"
#include "agent/host/parse_processes.h"

namespace zendrix::agent {

// Who did it and when.
struct Doer {
  std::uint64_t pid = 0;
  std::uint64_t start_ticks = 0;  // since boot, as /proc/PID/stat tells it
  std::int64_t seen_ns = 0;       // CLOCK_BOOTTIME
};

// A file, whatever it is called. The device is numbered as stat(2) numbers it.
struct FileIdentity {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

struct ExecSeen {
  Doer by;
  std::uint64_t parent = 0;
  ProgramFile program;  // path from the root of its mount namespace; without its beginning when `path_cut`
  bool path_cut = false;
  FileIdentity file;
  std::uint64_t mount_namespace = 0;  // 0: the file is in none
  std::string comm;                   // what the process is called, at most 15 bytes
};

struct ForkSeen {
  Doer by;  // the new process
  std::uint64_t parent = 0;
  std::string comm;
};

struct ExitSeen {
  Doer by;
};

enum class SocketEvent { kConnects, kAccepted, kListens, kEnded };

struct SocketSeen {
  Doer by;  // the owner where it connects or listens, otherwise whoever ran
  SocketEvent event = SocketEvent::kEnded;
  bool by_kernel = false;    // connects or listens on the kernel's own behalf
  std::uint64_t socket = 0;  // tells sockets apart as long as they live
  std::uint64_t inode = 0;   // 0: none (yet)
  std::uint64_t network_namespace = 0;
  bool is_v6 = false;
  std::uint16_t local_port = 0;  // 0: not chosen yet
  std::uint16_t remote_port = 0;
  std::array<unsigned char, 16> local_address = {};  // in the order of the network
  std::array<unsigned char, 16> remote_address = {};

  // Made when they are asked for: the end of a known socket needs neither.
  Endpoint Local() const;
  Endpoint Remote() const;
};

struct ModuleSeen {
  Doer by;
  std::string name;
};

using KernelRecord = std::variant<ExecSeen, ForkSeen, ExitSeen, SocketSeen, ModuleSeen>;

std::optional<KernelRecord> ReadKernelRecord(std::string_view bytes);

}  // namespace zendrix::agent
