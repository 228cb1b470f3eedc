#include "platform/linux/bus_message.h"

#include <dlfcn.h>

namespace zendrix::platform {
namespace {

// The message's handle is there for derived classes only; the pointer to member is taken as one.
class MessageHandle : public sdbus::Message {
 public:
  static void* Of(const sdbus::Message& message) { return message.*(&MessageHandle::msg_); }
};

}  // namespace

void AllowInteractiveAuthorization(const sdbus::Message& call) {
  using Function = int (*)(void* message, int allow);
  void* const found = dlsym(RTLD_DEFAULT, "sd_bus_message_set_allow_interactive_authorization");
  if (found) reinterpret_cast<Function>(found)(MessageHandle::Of(call), 1);
}

bool AllowsInteractiveAuthorization(const sdbus::Message& call) {
  using Function = int (*)(void* message);
  void* const found = dlsym(RTLD_DEFAULT, "sd_bus_message_get_allow_interactive_authorization");
  return found && reinterpret_cast<Function>(found)(MessageHandle::Of(call)) > 0;
}

}  // namespace zendrix::platform
