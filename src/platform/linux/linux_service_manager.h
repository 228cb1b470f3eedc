// systemd over the system bus. The service "ZENDRIX" is the unit "zendrix.service". The user may be asked for
// the right to start or stop it by his desktop's own agent; the call waits for that. Every call makes its own
// connection, so that a bus that was restarted is no trouble.
//
// Results of Run: 0 accepted; 10 start of a service that is running (or starting); 6 stop of one that is not
// running; otherwise what RefusalOf says. "running" is asked before, because systemd itself calls both a
// success. Errors: kNotFound when there is no such unit, kUnavailable when the bus or systemd does not
// answer.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/service_manager.h"

namespace zendrix::platform {

class LinuxServiceManager : public ServiceManager {
 public:
  Result<int> Run(const std::string& service, ServiceMethod method) override;
  // State: "Running", "Start Pending", "Stop Pending" or "Stopped"; start mode: "Auto" for a unit that is
  // enabled, "Disabled" for one that is masked, otherwise "Manual".
  Result<ServiceProperties> Properties(const std::string& service) override;
};

// "ZENDRIX" -> "zendrix.service"; nothing for a name that no unit can have.
std::optional<std::string> UnitName(std::string_view service);

// A D-Bus error as a number of the service manager: 1 not supported, 2 no access, 4 invalid control code, 5
// state of the service, 7 time-out, 14 disabled (masked), 18 circular dependencies, 21 invalid parameters, 8
// all others; or as the error that the method could not be run at all.
Result<int> RefusalOf(std::string_view dbus_error, const std::string& text);

}  // namespace zendrix::platform
