// Readers of the network tables under /proc/net. Pure functions on text: a line that cannot be read is left
// out. Addresses come out without colons, because a colon separates the parts of a connection's description:
// an IPv6 address has "-" in their place ("fe80--1"), an IPv4 address inside IPv6 is written as IPv4.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zendrix::agent {

enum class AddressReach { kAny, kLoopback, kOther };

struct Endpoint {
  std::string address;
  AddressReach reach = AddressReach::kOther;
  std::uint16_t port = 0;
};

// An address as the kernel holds it, 4 or 16 bytes in the order of the network; the port is left 0.
Endpoint EndpointOfV4(const unsigned char* bytes);
Endpoint EndpointOfV6(const unsigned char* bytes);

enum class SocketState { kEstablished, kConnecting, kListening, kOther };

struct Socket {
  Endpoint local;
  Endpoint remote;
  SocketState state = SocketState::kOther;
  std::uint64_t inode = 0;  // 0 when the socket belongs to no process any more
};

// /proc/net/tcp and /proc/net/tcp6; which of them is told by the width of the addresses.
std::vector<Socket> ParseSocketTable(std::string_view text);

// Bytes received and sent since boot by all interfaces but the loopback, from /proc/net/dev; no value when
// the table has no other interface.
std::optional<std::uint64_t> ParseTrafficBytes(std::string_view text);

// Share of memory in use in per cent, from /proc/meminfo.
std::optional<double> ParseMemoryPercent(std::string_view text);

}  // namespace zendrix::agent
