// The end of the process as an exception, for tests and the inspector, which have something to do afterwards.
#pragma once

#include <optional>

#include "platform/process.h"

namespace zendrix::platform {

class ThrowingProcess : public Process {
 public:
  [[noreturn]] void End(int status) override {
    ended = status;
    throw ProcessEnded{status};
  }

  // The status of the last End, if there was one.
  std::optional<int> ended;
};

}  // namespace zendrix::platform
