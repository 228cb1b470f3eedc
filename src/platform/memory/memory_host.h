// Facts about the machine that a test chooses.
#pragma once

#include <string>

#include "platform/host_info.h"

namespace zendrix::platform {

class MemoryHost : public HostInfo {
 public:
  std::string ComputerName() override { return computer_name; }
  std::string SystemInformationTool() override { return system_information_tool; }
  std::string UserName() override { return user_name; }
  bool RunsAsRoot() override { return runs_as_root; }

  std::string computer_name = "TESTHOST";
  std::string system_information_tool;
  std::string user_name = "ann";
  bool runs_as_root = false;
};

}  // namespace zendrix::platform
