// The one thread's message loop and its timers. Re-entry through ProcessMessages is the only concurrency
// in the system.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

namespace zendrix::platform {

class MessageLoop {
 public:
  virtual ~MessageLoop() = default;
  // Handles everything that waits in the queue (timers that are due included), then returns.
  virtual void ProcessMessages() = 0;
  // Rests until something comes into the queue or this many milliseconds are over, and handles what came.
  virtual void WaitForMessages(std::int64_t longest_ms) = 0;
};

// Counts down on the message loop. A timer that is destroyed never fires.
class Timer {
 public:
  virtual ~Timer() = default;
  // (Re)starts with this interval in milliseconds, repeating until stopped.
  virtual void Start(std::int64_t interval_ms) = 0;
  // One shot.
  virtual void StartOnce(std::int64_t interval_ms) = 0;
  virtual void Stop() = 0;
  virtual bool Running() const = 0;
};

class TimerMaker {
 public:
  virtual ~TimerMaker() = default;
  // A stopped timer that calls `on_tick` on the user-interface thread. A tick may stop, restart or destroy
  // its own timer.
  virtual std::unique_ptr<Timer> MakeTimer(std::function<void()> on_tick) = 0;
};

}  // namespace zendrix::platform
