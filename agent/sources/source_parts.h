// What a source that asks the kernel is put together from. What it refers to outlives the source.
#pragma once

#include <cstdint>
#include <functional>

#include "agent/host/host_view.h"

namespace zendrix::agent {

struct SourceParts {
  HostView& host;
  std::uint64_t own_pid = 0;
  std::function<std::int64_t()> now_ns;  // CLOCK_BOOTTIME
};

}  // namespace zendrix::agent
