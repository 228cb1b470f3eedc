// The operating system's service manager, as far as the Agent's control needs it.
#pragma once

#include <string>

#include "platform/result.h"

namespace zendrix::platform {

struct ServiceProperties {
  std::string state;  // "Running", "Stopped", ...
  std::string display_name;
  std::string start_mode;  // "Auto", "Manual", "Disabled"
};

enum class ServiceMethod { kStop, kStart };

class ServiceManager {
 public:
  virtual ~ServiceManager() = default;
  // Runs the method and returns the manager's numeric result (0 success, 1 to 24 the refusals that the
  // Agent control knows). An error means that the method could not be run at all: no such service, no
  // manager.
  virtual Result<int> Run(const std::string& service, ServiceMethod method) = 0;
  virtual Result<ServiceProperties> Properties(const std::string& service) = 0;
};

}  // namespace zendrix::platform
