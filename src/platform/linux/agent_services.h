// Who looks after the Agent on this machine. In a folder into which the Agent beside the console has
// written, it is that Agent, whatever services the machine has: what the console shows comes from there.
// Otherwise it is the service manager when it has the service; and where there is no service manager, or it
// does not know the service, again the Agent, when one stands beside the console.
//
// A service manager that is there and refuses, or does not answer in time, is never passed over: two Agents
// at once would be worse than none.
#pragma once

#include "platform/linux/local_service_manager.h"
#include "platform/service_manager.h"

namespace zendrix::platform {

class AgentServices : public ServiceManager {
 public:
  // Both outlive the object.
  AgentServices(ServiceManager& manager, LocalServiceManager& local) : manager_(manager), local_(local) {}

  Result<int> Run(const std::string& service, ServiceMethod method) override;
  Result<ServiceProperties> Properties(const std::string& service) override;

 private:
  ServiceManager& manager_;
  LocalServiceManager& local_;
};

}  // namespace zendrix::platform
