// What makes the numbers of memory and network better than looks at /proc alone: the kernel's word that
// memory runs short (a pressure-stall trigger, Documentation/accounting/psi.rst), so that it is looked at in
// that very moment, and the counters of the interfaces by rtnetlink(7). Neither takes a right. What cannot be
// had is said, and the looks go on without it.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "agent/host/netlink.h"
#include "platform/result.h"

namespace zendrix::agent {

// The trigger; a test's twin says what it is told to.
class PressureTrigger {
 public:
  virtual ~PressureTrigger() = default;
  // Whether memory ran short since the last call. An error: it will never tell any more.
  virtual platform::Result<bool> Fired() = 0;
};

class Numbers {
 public:
  Numbers(platform::Result<std::unique_ptr<PressureTrigger>> trigger,
          platform::Result<std::unique_ptr<NetlinkStream>> links);

  // Whether memory ran short since the last call.
  bool IsPressed();
  // Bytes moved by all interfaces but the loopback; nothing where the kernel does not answer, and then it is
  // not asked again.
  std::optional<std::uint64_t> TrafficBytes();

  // Why there is no trigger or no answer; empty where there is.
  const std::string& pressure_refusal() const { return pressure_refusal_; }
  const std::string& links_refusal() const { return links_refusal_; }

 private:
  std::unique_ptr<PressureTrigger> trigger_;
  std::unique_ptr<NetlinkStream> links_;
  std::string pressure_refusal_;
  std::string links_refusal_;
};

// Tells when tasks waited for memory for 200 of 2,000 milliseconds, which every user may ask for.
platform::Result<std::unique_ptr<PressureTrigger>> OpenPressureTrigger();

// Those of the running kernel.
std::unique_ptr<Numbers> MakeNumbers();

}  // namespace zendrix::agent
