// Facts about the machine.
#pragma once

#include <string>

namespace zendrix::platform {

class HostInfo {
 public:
  virtual ~HostInfo() = default;
  // The computer's own name, at most 255 characters; empty when it has none.
  virtual std::string ComputerName() = 0;
  // Path of the system information tool, or empty when there is none.
  virtual std::string SystemInformationTool() = 0;
  // The name of this process's user; empty when he has none.
  virtual std::string UserName() = 0;
  // Whether this process has the rights of the system's administrator.
  virtual bool RunsAsRoot() = 0;
};

}  // namespace zendrix::platform
