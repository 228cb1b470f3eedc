// Records as the kernel programs write them, for tests of their readers.
#pragma once

#include <arpa/inet.h>
#include <sys/socket.h>

#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "agent/bpf/records.h"

namespace zendrix::agent::test_records {

inline constexpr std::uint64_t kTick = 10'000'000;        // nanoseconds
inline constexpr std::uint64_t kHostMounts = 4026531841;  // namespaces of FakeHost in these tests
inline constexpr std::uint64_t kHostNetwork = 4026531840;

template <class Record>
std::string BytesOf(const Record& record) {
  return std::string(reinterpret_cast<const char*>(&record), sizeof record);
}

inline RecordHead Head(std::uint32_t kind, std::uint32_t pid, std::uint64_t start_ticks,
                       std::uint64_t at_ns) {
  return {kind, pid, at_ns, start_ticks * kTick};
}

template <std::size_t Size>
void SetText(char (&field)[Size], std::string_view text) {
  std::memcpy(field, text.data(), std::min(text.size(), Size));
}

// "/usr/bin/true" as the kernel program writes it: "true\0bin\0usr\0".
inline std::string Names(std::string path) {
  std::string names;
  while (!path.empty()) {
    const std::size_t slash = path.rfind('/');
    names.append(path.substr(slash + 1)).append(1, '\0');
    path.resize(slash);
  }
  return names;
}

struct Exec {
  std::uint32_t pid = 100;
  std::uint64_t start_ticks = 7;
  std::string path = "/usr/bin/true";
  std::uint64_t at_ns = 1000;
  std::uint32_t flags = 0;
  std::string comm = "true";
  std::uint32_t mount_namespace = kHostMounts;
  std::uint32_t device = 0x00800001;  // 8:1
  std::uint64_t inode = 55;
  std::uint32_t parent = 1;

  std::string Bytes() const { return BytesWith(Names(path)); }
  std::string BytesWith(const std::string& names) const {
    ExecRecord record = {};
    record.head = Head(kRecordExec, pid, start_ticks, at_ns);
    record.inode = inode;
    record.device = device;
    record.mount_namespace = mount_namespace;
    record.flags = flags;
    record.path_size = static_cast<std::uint32_t>(names.size());
    record.parent = parent;
    SetText(record.comm, comm);
    return BytesOf(record) + names;
  }
};

inline std::string Fork(std::uint32_t pid, std::uint64_t start_ticks, std::uint32_t parent,
                        std::uint64_t at_ns, std::string_view comm = "sh") {
  ForkRecord record = {};
  record.head = Head(kRecordFork, pid, start_ticks, at_ns);
  record.parent = parent;
  SetText(record.comm, comm);
  return BytesOf(record);
}

inline std::string Exit(std::uint32_t pid, std::uint64_t start_ticks, std::uint64_t at_ns = 2000) {
  return BytesOf(ExitRecord{Head(kRecordExit, pid, start_ticks, at_ns)});
}

struct Tcp {
  std::uint8_t old_state = 7;  // closed
  std::uint8_t new_state = kTcpSynSent;
  std::string local = "192.0.2.5";
  std::uint16_t local_port = 0;
  std::string remote = "198.51.100.7";
  std::uint16_t remote_port = 443;
  std::uint32_t pid = 100;
  std::uint64_t start_ticks = 7;
  std::uint64_t socket = 0xA1;
  std::uint64_t inode = 900;
  std::uint32_t network = kHostNetwork;
  bool kernel = false;
  std::uint64_t at_ns = 3000;

  std::string Bytes() const {
    SocketRecord record = {};
    record.head = Head(kRecordSocket, pid, start_ticks, at_ns);
    record.socket = socket;
    record.inode = inode;
    record.network_namespace = network;
    record.family = remote.find(':') == std::string::npos ? AF_INET : AF_INET6;
    record.local_port = local_port;
    record.remote_port = remote_port;
    record.old_state = old_state;
    record.new_state = new_state;
    inet_pton(record.family, local.c_str(), record.local);
    inet_pton(record.family, remote.c_str(), record.remote);
    record.kernel = kernel ? 1 : 0;
    return BytesOf(record);
  }
};

inline std::string Module(std::string_view name, std::uint32_t pid, std::uint64_t start_ticks) {
  ModuleRecord record = {};
  record.head = Head(kRecordModule, pid, start_ticks, 4000);
  SetText(record.name, name);
  return BytesOf(record);
}

}  // namespace zendrix::agent::test_records
