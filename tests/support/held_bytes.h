// How many bytes of the heap are in use at the moment, as the allocator itself counts them.
#pragma once

#include <cstddef>

#include "support/sanitizers.h"

#ifdef ZENDRIX_ADDRESS_SANITIZER
#include <sanitizer/allocator_interface.h>
#else
#include <malloc.h>
#endif

namespace zendrix::test {

inline std::size_t HeldBytes() {
#ifdef ZENDRIX_ADDRESS_SANITIZER
  return __sanitizer_get_current_allocated_bytes();
#else
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
#endif
}

}  // namespace zendrix::test
