// Processes by pidfd_open(2). What /proc says of a number is believed only as long as the handle, opened
// before, says that its process lives: then it was said of that process.
#pragma once

#include "act/processes.h"

namespace zendrix::act {

class LinuxProcesses : public Processes {
 public:
  std::unique_ptr<HeldProcess> Hold(pid_t process) override;
};

}  // namespace zendrix::act
