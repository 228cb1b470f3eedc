// The two options that say how long a program of this product runs and how often it looks, the same for all
// of them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace zendrix::platform {

struct RunTime {
  std::int64_t interval_seconds;            // between two looks; 1 to 3600
  std::optional<std::int64_t> for_seconds;  // no value: until it is told to stop; ten years at most
};

// Takes the value of "--interval" or "--for". The error, or an empty text; nothing when the option is
// another.
std::optional<std::string> TakeRunTime(const std::string& name, const std::string& value, RunTime& into);

}  // namespace zendrix::platform
