// The end of this process: what is still buffered for standard output is written, then nothing more runs,
// neither destructors nor exit handlers.
#pragma once

#include "platform/process.h"

namespace zendrix::platform {

class LinuxProcess : public Process {
 public:
  [[noreturn]] void End(int status) override;
};

}  // namespace zendrix::platform
