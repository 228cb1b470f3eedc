#include "platform/linux/linux_process.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>

namespace zendrix::platform {

void LinuxProcess::End(int status) {
  std::cout.flush();
  std::cerr.flush();
  std::fflush(nullptr);
  std::_Exit(status);
}

}  // namespace zendrix::platform
