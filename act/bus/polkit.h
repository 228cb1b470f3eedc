// The computer's authority over the bus: org.freedesktop.PolicyKit1. Asked about the caller by his name on
// the bus, so that it finds out itself who he is.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "act/authority.h"

namespace sdbus {
class IConnection;
class IProxy;
}  // namespace sdbus

namespace zendrix::act {

class Polkit : public Authority {
 public:
  // `bus` outlives the object. `patience` is how long a user may take to answer.
  Polkit(sdbus::IConnection& bus, std::chrono::milliseconds patience);
  ~Polkit() override;

  void Ask(const Caller& caller, std::string_view action, const AskedAbout& about, std::uint64_t ticket,
           std::function<void(Verdict)> answer) override;
  void Withdraw(std::uint64_t ticket) override;

 private:
  std::unique_ptr<sdbus::IProxy> proxy_;
  const std::chrono::milliseconds patience_;
};

}  // namespace zendrix::act
