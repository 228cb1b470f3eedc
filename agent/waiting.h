// The rest between two turns: until a source has something, and then for as long as that may gather, so that
// a source that is told of thousands of changes wakes the Agent a few times a second (epoll(7)).
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "agent/sources/source.h"
#include "platform/clock.h"
#include "platform/linux/posix.h"

namespace zendrix::agent {

class Waiting {
 public:
  // `sources` and `clock` outlive the object. A source keeps the handle that it has now.
  Waiting(const std::vector<std::unique_ptr<Source>>& sources, platform::Clock& clock);

  // At most about twice as long.
  void Rest(std::int64_t milliseconds);

 private:
  platform::Clock& clock_;
  platform::FileDescriptor epoll_;
};

}  // namespace zendrix::agent
