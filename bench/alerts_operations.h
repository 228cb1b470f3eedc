// Operations of the alert list.
#pragma once

#include <string>
#include <vector>

#include "measure.h"

namespace zendrix::bench {

// The Home console's alert list from the loaded file, with the lookup of every alert.
Operation Alerts(const std::string& file, const std::vector<std::string>& arguments);

}  // namespace zendrix::bench
