#include "agent/host/netlink.h"

#include <linux/netlink.h>
#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "platform/linux/posix.h"

namespace zendrix::agent {
namespace {

constexpr std::size_t kDatagramRoom = 65536;  // a dump comes in pieces of 32 KB at most

std::size_t Aligned(std::size_t size) {
  return (size + NLMSG_ALIGNTO - 1) / NLMSG_ALIGNTO * NLMSG_ALIGNTO;
}

class KernelSocket : public NetlinkStream {
 public:
  explicit KernelSocket(platform::FileDescriptor file) : file_(std::move(file)) {}

  bool Send(std::string_view message) override {
    sockaddr_nl kernel = {};
    kernel.nl_family = AF_NETLINK;
    const ssize_t sent = sendto(file_.get(), message.data(), message.size(), 0,
                                reinterpret_cast<const sockaddr*>(&kernel), sizeof kernel);
    return sent == static_cast<ssize_t>(message.size());
  }

  Outcome Receive(std::string& datagram, int wait_ms) override {
    for (;;) {
      sockaddr_nl sender = {};
      socklen_t size = sizeof sender;
      datagram.resize(kDatagramRoom);
      const ssize_t got = recvfrom(file_.get(), datagram.data(), datagram.size(), MSG_DONTWAIT,
                                   reinterpret_cast<sockaddr*>(&sender), &size);
      datagram.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
      if (got >= 0 && size == sizeof sender && sender.nl_pid == 0) return Outcome::kGot;
      if (got >= 0 || errno == EINTR) continue;
      if (errno == ENOBUFS) return Outcome::kLost;
      if (wait_ms <= 0) return Outcome::kNone;
      pollfd wanted = {file_.get(), POLLIN, 0};
      if (poll(&wanted, 1, std::exchange(wait_ms, 0)) <= 0) return Outcome::kNone;
    }
  }

  int Handle() const override { return file_.get(); }

 private:
  platform::FileDescriptor file_;
};

}  // namespace

std::vector<NetlinkMessage> SplitMessages(std::string_view datagram) {
  std::vector<NetlinkMessage> messages;
  nlmsghdr head;
  while (datagram.size() >= sizeof head) {
    std::memcpy(&head, datagram.data(), sizeof head);
    if (head.nlmsg_len < sizeof head || head.nlmsg_len > datagram.size()) break;
    messages.push_back(
        {head.nlmsg_type, head.nlmsg_flags, datagram.substr(sizeof head, head.nlmsg_len - sizeof head)});
    datagram.remove_prefix(std::min(datagram.size(), Aligned(head.nlmsg_len)));
  }
  return messages;
}

std::vector<NetlinkAttribute> SplitAttributes(std::string_view bytes) {
  std::vector<NetlinkAttribute> attributes;
  nlattr head;
  while (bytes.size() >= sizeof head) {
    std::memcpy(&head, bytes.data(), sizeof head);
    if (head.nla_len < sizeof head || head.nla_len > bytes.size()) break;
    attributes.push_back({static_cast<std::uint16_t>(head.nla_type & NLA_TYPE_MASK),
                          bytes.substr(sizeof head, head.nla_len - sizeof head)});
    bytes.remove_prefix(std::min(bytes.size(), Aligned(head.nla_len)));
  }
  return attributes;
}

std::string MessageText(std::uint16_t type, std::uint16_t flags, std::string_view body) {
  nlmsghdr head = {};
  head.nlmsg_len = static_cast<std::uint32_t>(sizeof head + body.size());
  head.nlmsg_type = type;
  head.nlmsg_flags = flags;
  std::string text(reinterpret_cast<const char*>(&head), sizeof head);
  text.append(body);
  text.resize(Aligned(text.size()));
  return text;
}

std::string AttributeText(std::uint16_t type, std::string_view value) {
  nlattr head = {};
  head.nla_len = static_cast<std::uint16_t>(sizeof head + value.size());
  head.nla_type = type;
  std::string text(reinterpret_cast<const char*>(&head), sizeof head);
  text.append(value);
  text.resize(Aligned(text.size()));
  return text;
}

platform::Result<std::unique_ptr<NetlinkStream>> OpenNetlink(int protocol, std::uint32_t groups, int room) {
  platform::FileDescriptor file(socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, protocol));
  sockaddr_nl own = {};
  own.nl_family = AF_NETLINK;
  own.nl_groups = groups;
  if (!file || bind(file.get(), reinterpret_cast<const sockaddr*>(&own), sizeof own) != 0)
    return platform::ErrorFromErrno(errno, "netlink");
  // Beyond the system's limit only with the right to set it; otherwise up to that limit.
  if (setsockopt(file.get(), SOL_SOCKET, SO_RCVBUFFORCE, &room, sizeof room) != 0)
    setsockopt(file.get(), SOL_SOCKET, SO_RCVBUF, &room, sizeof room);
  return std::unique_ptr<NetlinkStream>(std::make_unique<KernelSocket>(std::move(file)));
}

}  // namespace zendrix::agent
