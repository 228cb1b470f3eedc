// A child process that is stopped at every system call, before and after it.
#pragma once

#include <functional>

namespace zendrix::test {

struct Stop {
  int number = 0;    // from 1
  long call = -1;    // SYS_..., before the call; -1 after it
  int argument = 0;  // the call's first one
};

// What happens at a stop. Returning false kills the child there.
using AtStop = std::function<bool(const Stop& stop)>;

// Runs the body in a child. True when it came to its end, false when it was killed at a stop. Throws when it
// ended in any other way.
bool RunTraced(const std::function<void()>& body, const AtStop& at_stop);

}  // namespace zendrix::test
