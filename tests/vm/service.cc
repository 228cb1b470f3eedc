// zendrix-vm-service start|stop|state: asks the service manager for the Agent by the console's own code, and
// prints the number that the console would turn into a sentence, or state and start mode.
#include <iostream>
#include <string>

#include "platform/linux/linux_service_manager.h"

int main(int argc, char** argv) {
  constexpr char kService[] = "ZENDRIX";
  const std::string what = argc == 2 ? argv[1] : "";
  zendrix::platform::LinuxServiceManager services;
  if (what == "state") {
    const auto found = services.Properties(kService);
    if (!found) return 1;
    std::cout << found.value().state << " " << found.value().start_mode << "\n";
    return 0;
  }
  if (what != "start" && what != "stop") return 2;
  const auto method =
      what == "start" ? zendrix::platform::ServiceMethod::kStart : zendrix::platform::ServiceMethod::kStop;
  const auto result = services.Run(kService, method);
  if (!result) return 1;
  std::cout << result.value() << "\n";
}
