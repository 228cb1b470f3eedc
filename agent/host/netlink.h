// Messages of netlink(7), the kernel's way of answering questions about itself and of telling what happens:
// how they lie in a datagram, and the sockets that bring them. The readers are pure functions on bytes; a
// message or attribute that is cut or claims more than there is ends the list. The twin of a socket in
// sources/memory/ plays what a test gives it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/result.h"

namespace zendrix::agent {

struct NetlinkMessage {
  std::uint16_t type = 0;
  std::uint16_t flags = 0;
  std::string_view body;  // of the datagram's bytes
};

struct NetlinkAttribute {
  std::uint16_t type = 0;  // without the bits that say how it is nested
  std::string_view value;
};

std::vector<NetlinkMessage> SplitMessages(std::string_view datagram);
std::vector<NetlinkAttribute> SplitAttributes(std::string_view bytes);

// The same the other way round, for questions.
std::string MessageText(std::uint16_t type, std::uint16_t flags, std::string_view body);
std::string AttributeText(std::uint16_t type, std::string_view value);

class NetlinkStream {
 public:
  enum class Outcome {
    kGot,
    kNone,  // nothing waits
    kLost,  // the kernel found no room for some; there may be more
  };
  virtual ~NetlinkStream() = default;
  virtual bool Send(std::string_view message) = 0;
  // The next datagram of the kernel's. What others send is passed over. Waits up to `wait_ms`.
  virtual Outcome Receive(std::string& datagram, int wait_ms) = 0;
  virtual int Handle() const = 0;
};

// `protocol` and `groups` (a mask) as in netlink(7); `room` is the bytes that may wait, which the kernel
// rounds as it may.
platform::Result<std::unique_ptr<NetlinkStream>> OpenNetlink(int protocol, std::uint32_t groups, int room);

}  // namespace zendrix::agent
