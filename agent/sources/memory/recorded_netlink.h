// A netlink socket that plays what a test gives it.
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "agent/host/netlink.h"

namespace zendrix::agent {

// What the test keeps of a stream that its source owns.
struct NetlinkScript {
  std::deque<std::optional<std::string>> waiting;  // nothing: the kernel found no room
  std::vector<std::string> sent;
  // Called when all that waited has been read, to play what came meanwhile; once.
  std::function<void()> on_empty;
};

class RecordedNetlink : public NetlinkStream {
 public:
  explicit RecordedNetlink(NetlinkScript& script) : script_(script) {}
  bool Send(std::string_view message) override {
    script_.sent.emplace_back(message);
    return true;
  }
  Outcome Receive(std::string& datagram, int /*wait_ms*/) override {
    if (script_.waiting.empty()) {
      if (auto then = std::exchange(script_.on_empty, {})) then();
      return Outcome::kNone;
    }
    auto next = std::move(script_.waiting.front());
    script_.waiting.pop_front();
    datagram = next.value_or("");
    return next ? Outcome::kGot : Outcome::kLost;
  }
  int Handle() const override { return -1; }

 private:
  NetlinkScript& script_;
};

}  // namespace zendrix::agent
