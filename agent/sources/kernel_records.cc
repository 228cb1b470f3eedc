#include "agent/sources/kernel_records.h"

#include <sys/sysmacros.h>

#include <cstring>
#include <limits>
#include <type_traits>
#include <vector>

#include "agent/bpf/records.h"

namespace zendrix::agent {
namespace {

constexpr std::uint64_t kNsPerTick =
    10'000'000;                          // user space counts in hundredths of a second on every kernel
constexpr std::uint16_t kFamilyV4 = 2;   // AF_INET
constexpr std::uint16_t kFamilyV6 = 10;  // AF_INET6

// Records lie in the ring at any address, so they are copied, never pointed into.
template <class Record>
bool Copy(std::string_view bytes, Record& record) {
  static_assert(std::is_trivially_copyable_v<Record>);
  if (bytes.size() < sizeof record) return false;
  std::memcpy(&record, bytes.data(), sizeof record);
  return true;
}

template <std::size_t Size>
std::string TextOf(const char (&field)[Size]) {
  return std::string(field, strnlen(field, Size));
}

bool ReadDoer(const RecordHead& head, Doer& doer) {
  if (head.time_ns > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) return false;
  doer = {head.pid, head.start_ns / kNsPerTick, static_cast<std::int64_t>(head.time_ns)};
  return true;
}

// "bash\0bin\0usr\0" is /usr/bin/bash.
std::optional<std::string> PathOfNames(std::string_view names, bool stands_alone) {
  if (names.empty() || names.back() != '\0') return {};
  std::vector<std::string_view> parts;
  while (!names.empty()) {
    const std::string_view name = names.substr(0, names.find('\0'));
    // Only what stands in no folder may have a slash in its name: its maker chose it freely.
    if (name.empty() || (!stands_alone && name.find('/') != std::string_view::npos)) return {};
    parts.push_back(name);
    names.remove_prefix(name.size() + 1);
  }
  std::string path;
  for (auto part = parts.rbegin(); part != parts.rend(); ++part) path.append("/").append(*part);
  return path;
}

std::optional<KernelRecord> ReadExec(std::string_view bytes) {
  ExecRecord record = {};
  ExecSeen seen;
  if (!Copy(bytes, record) || !ReadDoer(record.head, seen.by)) return {};
  bytes.remove_prefix(sizeof record);
  // The ring rounds a record's length up; what stands behind the path is nobody's.
  if (record.path_size > bytes.size() || record.path_size > kPathRoom + kNameRoom) return {};
  const bool detached = (record.flags & kExecDetached) != 0;
  auto path = PathOfNames(bytes.substr(0, record.path_size), detached);
  if (!path) return {};
  seen.program.path = std::move(*path);
  seen.program.deleted = (record.flags & (kExecUnlinked | kExecLinkless)) != 0;
  seen.program.in_memory = detached && seen.program.path.starts_with("/memfd:");
  seen.path_cut = (record.flags & kExecPathCut) != 0;
  seen.parent = record.parent;
  seen.file = {makedev(record.device >> 20U, record.device & 0xFFFFFU), record.inode};
  seen.mount_namespace = record.mount_namespace;
  seen.comm = TextOf(record.comm);
  return seen;
}

std::optional<KernelRecord> ReadFork(std::string_view bytes) {
  ForkRecord record = {};
  ForkSeen seen;
  if (!Copy(bytes, record) || !ReadDoer(record.head, seen.by)) return {};
  seen.parent = record.parent;
  seen.comm = TextOf(record.comm);
  return seen;
}

std::optional<KernelRecord> ReadExit(std::string_view bytes) {
  ExitRecord record = {};
  ExitSeen seen;
  if (!Copy(bytes, record) || !ReadDoer(record.head, seen.by)) return {};
  return seen;
}

std::optional<SocketEvent> EventOf(const SocketRecord& record) {
  if (record.new_state == kTcpSynSent) return SocketEvent::kConnects;
  if (record.new_state == kTcpListen) return SocketEvent::kListens;
  if (record.new_state == kTcpEstablished) {
    return record.old_state == kTcpSynReceived ? std::optional(SocketEvent::kAccepted) : std::nullopt;
  }
  const bool ended = record.old_state == kTcpEstablished || record.old_state == kTcpSynSent ||
                     record.old_state == kTcpListen;
  return ended ? std::optional(SocketEvent::kEnded) : std::nullopt;
}

std::optional<KernelRecord> ReadSocket(std::string_view bytes) {
  SocketRecord record = {};
  SocketSeen seen;
  if (!Copy(bytes, record) || !ReadDoer(record.head, seen.by)) return {};
  if (record.family != kFamilyV4 && record.family != kFamilyV6) return {};
  const auto event = EventOf(record);
  if (!event) return {};
  seen.event = *event;
  seen.by_kernel = record.kernel != 0;
  seen.socket = record.socket;
  seen.inode = record.inode;
  seen.network_namespace = record.network_namespace;
  seen.is_v6 = record.family == kFamilyV6;
  seen.local_port = record.local_port;
  seen.remote_port = record.remote_port;
  static_assert(sizeof record.local == std::tuple_size_v<decltype(seen.local_address)>);
  std::memcpy(seen.local_address.data(), record.local, sizeof record.local);
  std::memcpy(seen.remote_address.data(), record.remote, sizeof record.remote);
  return seen;
}

std::optional<KernelRecord> ReadModule(std::string_view bytes) {
  ModuleRecord record = {};
  ModuleSeen seen;
  if (!Copy(bytes, record) || !ReadDoer(record.head, seen.by)) return {};
  seen.name = TextOf(record.name);
  if (seen.name.empty()) return {};
  return seen;
}

Endpoint EndpointOf(bool is_v6, const std::array<unsigned char, 16>& address, std::uint16_t port) {
  Endpoint end = is_v6 ? EndpointOfV6(address.data()) : EndpointOfV4(address.data());
  end.port = port;
  return end;
}

}  // namespace

Endpoint SocketSeen::Local() const {
  return EndpointOf(is_v6, local_address, local_port);
}

Endpoint SocketSeen::Remote() const {
  return EndpointOf(is_v6, remote_address, remote_port);
}

std::optional<KernelRecord> ReadKernelRecord(std::string_view bytes) {
  RecordHead head = {};
  if (!Copy(bytes, head)) return {};
  switch (head.kind) {
    case kRecordExec:
      return ReadExec(bytes);
    case kRecordFork:
      return ReadFork(bytes);
    case kRecordExit:
      return ReadExit(bytes);
    case kRecordSocket:
      return ReadSocket(bytes);
    case kRecordModule:
      return ReadModule(bytes);
    default:
      return {};
  }
}

}  // namespace zendrix::agent
