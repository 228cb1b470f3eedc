// The text of a version number.
#pragma once

#include <string>

namespace zendrix::core {

// "1.0.0.1" for 1, 0, 1; stops behind the minor ("1.0") when no revision is given (negative).
std::string FormatVersion(int major, int minor, int revision = -1);

}  // namespace zendrix::core
