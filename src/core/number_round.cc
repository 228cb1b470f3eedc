// Numbers narrowed to the integer types, ties to even.
#include <cmath>
#include <limits>

#include "core/number_rules.h"
#include "core/run_time_error.h"

namespace zendrix::core {
namespace {

template <class Integer>
Integer Narrow(double value) {
  // The default rounding mode is to nearest, ties to even; nothing in the program changes it.
  const double rounded = std::nearbyint(value);
  const bool fits = rounded >= static_cast<double>(std::numeric_limits<Integer>::min()) &&
                    rounded <= static_cast<double>(std::numeric_limits<Integer>::max());
  if (!fits) Raise(kOverflow);
  return static_cast<Integer>(rounded);
}

}  // namespace

std::int32_t RoundToLong(double value) {
  return Narrow<std::int32_t>(value);
}
std::int16_t RoundToInt(double value) {
  return Narrow<std::int16_t>(value);
}
std::uint8_t RoundToByte(double value) {
  return Narrow<std::uint8_t>(value);
}

}  // namespace zendrix::core
