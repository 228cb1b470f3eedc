// The running number of lines, 32 bits wide like the ID that is made of it.
#pragma once

#include <cstdint>
#include <limits>

#include "core/run_time_error.h"

namespace zendrix::store {

// The number of the next line; raises 6 beyond 32 bits.
inline void CountUp(std::int32_t& counter) {
  if (counter == std::numeric_limits<std::int32_t>::max()) core::Raise(core::kOverflow);
  ++counter;
}

}  // namespace zendrix::store
