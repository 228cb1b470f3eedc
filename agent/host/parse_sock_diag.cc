#include "agent/host/parse_sock_diag.h"

#include <linux/inet_diag.h>
#include <linux/netlink.h>
#include <linux/sock_diag.h>
#include <netinet/in.h>

#include <cstring>

namespace zendrix::agent {
namespace {

// States as include/net/tcp_states.h of the kernel numbers them.
constexpr std::uint8_t kEstablished = 1;
constexpr std::uint8_t kSynSent = 2;
constexpr std::uint8_t kListen = 10;

SocketState StateOf(std::uint8_t number) {
  if (number == kEstablished) return SocketState::kEstablished;
  if (number == kSynSent) return SocketState::kConnecting;
  return number == kListen ? SocketState::kListening : SocketState::kOther;
}

Endpoint EndOf(std::uint8_t family, const __be32 (&address)[4], __be16 port) {
  unsigned char bytes[sizeof address];
  std::memcpy(bytes, address, sizeof bytes);
  Endpoint end = family == AF_INET6 ? EndpointOfV6(bytes) : EndpointOfV4(bytes);
  end.port = ntohs(port);
  return end;
}

}  // namespace

std::string SocketDumpQuestion(std::uint8_t family) {
  inet_diag_req_v2 question = {};
  question.sdiag_family = family;
  question.sdiag_protocol = IPPROTO_TCP;
  question.idiag_states = 1U << kEstablished | 1U << kSynSent | 1U << kListen;
  return MessageText(SOCK_DIAG_BY_FAMILY, NLM_F_REQUEST | NLM_F_DUMP,
                     std::string_view(reinterpret_cast<const char*>(&question), sizeof question));
}

std::optional<Socket> ReadDiagMessage(const NetlinkMessage& message) {
  inet_diag_msg told;
  if (message.type != SOCK_DIAG_BY_FAMILY || message.body.size() < sizeof told) return {};
  std::memcpy(&told, message.body.data(), sizeof told);
  if (told.idiag_family != AF_INET && told.idiag_family != AF_INET6) return {};
  Socket socket;
  socket.local = EndOf(told.idiag_family, told.id.idiag_src, told.id.idiag_sport);
  socket.remote = EndOf(told.idiag_family, told.id.idiag_dst, told.id.idiag_dport);
  socket.state = StateOf(told.idiag_state);
  socket.inode = told.idiag_inode;
  return socket;
}

DumpPart ReadDumpPart(std::string_view datagram, std::vector<Socket>& into) {
  for (const NetlinkMessage& message : SplitMessages(datagram)) {
    if (message.type == NLMSG_ERROR) return DumpPart::kRefused;
    if (message.type == NLMSG_DONE) return DumpPart::kDone;
    if (auto socket = ReadDiagMessage(message)) into.push_back(std::move(*socket));
  }
  return DumpPart::kMore;
}

}  // namespace zendrix::agent
