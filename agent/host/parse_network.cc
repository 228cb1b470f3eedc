#include "agent/host/parse_network.h"

#include <arpa/inet.h>
#include <netinet/in.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>

#include "agent/host/text.h"

namespace zendrix::agent {
namespace {

constexpr std::size_t kHexPerWord = 8;

// The kernel prints each 32-bit word of an address as a number of the machine's own byte order.
bool ReadAddressWords(std::string_view hex, unsigned char* bytes) {
  for (std::size_t i = 0; i * kHexPerWord < hex.size(); ++i) {
    std::uint64_t word = 0;
    if (!ReadHex(hex.substr(i * kHexPerWord, kHexPerWord), word)) return false;
    const auto narrow = static_cast<std::uint32_t>(word);
    std::memcpy(bytes + i * sizeof narrow, &narrow, sizeof narrow);
  }
  return true;
}

// 0100007F:0019
std::optional<Endpoint> ParseEndpoint(std::string_view text) {
  const std::size_t colon = text.find(':');
  std::uint64_t port = 0;
  if (colon == std::string_view::npos || !ReadHex(text.substr(colon + 1), port) || port > 0xFFFF) return {};
  const std::string_view hex = text.substr(0, colon);
  if (hex.size() != kHexPerWord && hex.size() != 4 * kHexPerWord) return {};
  std::array<unsigned char, 16> bytes = {};
  if (!ReadAddressWords(hex, bytes.data())) return {};
  Endpoint end = hex.size() == kHexPerWord ? EndpointOfV4(bytes.data()) : EndpointOfV6(bytes.data());
  end.port = static_cast<std::uint16_t>(port);
  return end;
}

SocketState StateOf(std::uint64_t number) {
  switch (number) {
    case 0x01:
      return SocketState::kEstablished;
    case 0x02:
      return SocketState::kConnecting;
    case 0x0A:
      return SocketState::kListening;
    default:
      return SocketState::kOther;
  }
}

}  // namespace

Endpoint EndpointOfV4(const unsigned char* bytes) {
  std::array<char, INET_ADDRSTRLEN> text = {};
  // By hand: every connection asks for two of them, and inet_ntop takes a second for a million.
  char* at = text.data();
  for (int i = 0; i < 4; ++i) {
    if (i > 0) *at++ = '.';
    at = std::to_chars(at, text.data() + text.size(), bytes[i]).ptr;
  }
  Endpoint end;
  end.address.assign(text.data(), at);
  if (bytes[0] == 127) end.reach = AddressReach::kLoopback;
  if (end.address == "0.0.0.0") end.reach = AddressReach::kAny;
  return end;
}

Endpoint EndpointOfV6(const unsigned char* bytes) {
  in6_addr address = {};
  std::memcpy(&address, bytes, sizeof address);
  if (IN6_IS_ADDR_V4MAPPED(&address)) return EndpointOfV4(bytes + 12);
  std::array<char, INET6_ADDRSTRLEN> text = {};
  inet_ntop(AF_INET6, bytes, text.data(), text.size());
  Endpoint end;
  end.address = text.data();
  std::replace(end.address.begin(), end.address.end(), ':', '-');
  if (IN6_IS_ADDR_LOOPBACK(&address)) end.reach = AddressReach::kLoopback;
  if (IN6_IS_ADDR_UNSPECIFIED(&address)) end.reach = AddressReach::kAny;
  return end;
}

//   0: 00000000:07E8 00000000:0000 0A 00000000:00000000 00:00000000 00000000     0        0 1599 1 ...
std::vector<Socket> ParseSocketTable(std::string_view text) {
  constexpr std::size_t kInodeWord = 9;
  std::vector<Socket> sockets;
  for (const std::string_view line : SplitLines(text)) {
    const auto words = SplitWords(line);
    if (words.size() <= kInodeWord) continue;
    const auto local = ParseEndpoint(words[1]);
    const auto remote = ParseEndpoint(words[2]);
    std::uint64_t state = 0;
    std::uint64_t inode = 0;
    if (!local || !remote || !ReadHex(words[3], state) || !ReadNumber(words[kInodeWord], inode)) continue;
    sockets.push_back({*local, *remote, StateOf(state), inode});
  }
  return sockets;
}

//   eth0: 124865456    4071    0    0    0     0          0         0   134964    1740 ...
std::optional<std::uint64_t> ParseTrafficBytes(std::string_view text) {
  constexpr std::size_t kSentWord = 8;
  std::optional<std::uint64_t> total;
  for (const std::string_view line : SplitLines(text)) {
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos || Trim(line.substr(0, colon)) == "lo") continue;
    const auto words = SplitWords(line.substr(colon + 1));
    std::uint64_t received = 0;
    std::uint64_t sent = 0;
    if (words.size() <= kSentWord || !ReadNumber(words[0], received) || !ReadNumber(words[kSentWord], sent)) {
      continue;
    }
    total = total.value_or(0) + received + sent;
  }
  return total;
}

// MemTotal:       24684096 kB
std::optional<double> ParseMemoryPercent(std::string_view text) {
  std::uint64_t total = 0;
  std::optional<std::uint64_t> available;
  for (const std::string_view line : SplitLines(text)) {
    const auto words = SplitWords(line);
    std::uint64_t kilobytes = 0;
    if (words.size() < 2 || !ReadNumber(words[1], kilobytes)) continue;
    if (words[0] == "MemTotal:") total = kilobytes;
    if (words[0] == "MemAvailable:") available = kilobytes;
  }
  if (total == 0 || !available || *available > total) return {};
  return 100.0 * static_cast<double>(total - *available) / static_cast<double>(total);
}

}  // namespace zendrix::agent
