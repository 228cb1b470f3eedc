// The helper's side of the bus: the calls of platform/act_names.h, handed to Acting. Who calls is asked of
// the bus; nothing that a caller says about himself counts.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "act/acting.h"

namespace sdbus {
class IConnection;
class IObject;
class IProxy;
}  // namespace sdbus

namespace zendrix::act {

class Service {
 public:
  // What it refers to outlives the object.
  Service(sdbus::IConnection& bus, Acting& acting);
  ~Service();

  // Calls so far.
  std::uint64_t calls() const { return calls_; }

 private:
  // The one whose call is being handled; nothing when he is gone.
  std::optional<Caller> CallerNow();

  sdbus::IConnection& bus_;
  Acting& acting_;
  std::unique_ptr<sdbus::IProxy> daemon_;
  std::unique_ptr<sdbus::IObject> object_;
  std::uint64_t calls_ = 0;
};

}  // namespace zendrix::act
