// The end of the process.
#pragma once

namespace zendrix::platform {

class Process {
 public:
  virtual ~Process() = default;
  // Ends the process with this exit status. The in-memory twin throws ProcessEnded instead, the one exception
  // that is allowed to pass through everything, because nothing may go on after this call.
  [[noreturn]] virtual void End(int status) = 0;
};

// Deliberately not derived from std::exception: no handler but a test's or the inspector's own may catch it.
struct ProcessEnded {
  int status = 0;
};

}  // namespace zendrix::platform
