// One console per executable, whichever user starts it, as far as the holder can be told for a console
// (docs/decisions/0006-instance-lock.md). The lock lives exactly as long as the process that holds it,
// however that process ends.
#pragma once

#include <functional>
#include <string>

namespace zendrix::platform {

class InstanceLock {
 public:
  virtual ~InstanceLock() = default;
  // Takes the lock of this name if it is free. Returns false when another process holds it.
  virtual bool Acquire(const std::string& name) = 0;
  // Lets go early; the end of the process does the same.
  virtual void Release() = 0;
  // Asks the process that holds the lock of this name to bring its window forward. Says nothing of whether it
  // will.
  virtual void AskToComeForward(const std::string& name) = 0;
  // What to do when another process asks; called on the user-interface thread from the message loop.
  virtual void OnAskedToComeForward(std::function<void()> handler) = 0;
};

}  // namespace zendrix::platform
