// Operations of the event store's reader.
#pragma once

#include <string>
#include <vector>

#include "measure.h"

namespace zendrix::bench {

Operation LoadHome(const std::string& file, const std::vector<std::string>& arguments);
Operation Tick(const std::string& file, const std::vector<std::string>& arguments);
Operation TickIdle(const std::string& file, const std::vector<std::string>& arguments);

}  // namespace zendrix::bench
