// A service manager with the services that were put into it; none at first. Names are compared without regard
// to letter case. Run changes the state at once and answers as the real one does (0; 10 for a start of a
// running service, 14 of a disabled one; 6 for a stop of a stopped one, 5 of one that is stopping), unless an
// answer was scripted: then the state stays.
#pragma once

#include <deque>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/service_manager.h"

namespace zendrix::platform {

class FakeServiceManager : public ServiceManager {
 public:
  void SetRunning(const std::string& service) { Set(service, "Running"); }
  void SetStopped(const std::string& service) { Set(service, "Stopped"); }
  void SetMissing(const std::string& service);
  // The properties of a service that is there, to change at will.
  ServiceProperties& At(const std::string& service);
  // The answer of the next run of this method; several wait in order.
  void Script(ServiceMethod method, int result) { scripted_[method].push_back(result); }
  // The manager itself does not answer.
  bool unavailable = false;
  // Everything that was run, with the names as given.
  std::vector<std::pair<std::string, ServiceMethod>> runs;

  Result<int> Run(const std::string& service, ServiceMethod method) override;
  Result<ServiceProperties> Properties(const std::string& service) override;

 private:
  void Set(const std::string& service, const std::string& state);

  std::map<std::string, ServiceProperties> services_;  // by name in lower case
  std::map<ServiceMethod, std::deque<int>> scripted_;
};

}  // namespace zendrix::platform
