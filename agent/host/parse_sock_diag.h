// Reader of what sock_diag(7) answers about TCP sockets, in answer to a question or as a notice that a socket
// ended. Pure functions on bytes: a message that is short or of another kind is left out.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "agent/host/netlink.h"
#include "agent/host/parse_network.h"

namespace zendrix::agent {

// The question for all sockets of one family (AF_INET, AF_INET6) that listen, connect or are connected.
std::string SocketDumpQuestion(std::uint8_t family);

enum class DumpPart { kMore, kDone, kRefused };
// One datagram of the answer.
DumpPart ReadDumpPart(std::string_view datagram, std::vector<Socket>& into);

// What one message tells of; no value when that is no TCP socket.
std::optional<Socket> ReadDiagMessage(const NetlinkMessage& message);

}  // namespace zendrix::agent
