// A message loop without a toolkit, over poll and the monotonic clock, for programs that have no window. It
// runs the timers it makes and watches file descriptors. Everything but Quit belongs to one thread.
#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <memory>

#include "platform/linux/posix.h"
#include "platform/message_loop.h"
#include "platform/timer_queue.h"

namespace zendrix::platform {

class PollLoop : public MessageLoop, public TimerMaker {
 public:
  PollLoop();

  // Handles timers and descriptors until Quit. A Quit that came before ends it at once.
  void Run();
  // Ends Run. May be called from any thread and from a signal handler.
  void Quit();

  // Calls `on_readable` whenever something can be read from the descriptor (the end of a stream included),
  // until StopWatching; at most one call per descriptor. The descriptor stays the caller's.
  void WatchReadable(int fd, std::function<void()> on_readable);
  void StopWatching(int fd);

  void ProcessMessages() override;
  void WaitForMessages(std::int64_t longest_ms) override;
  std::unique_ptr<Timer> MakeTimer(std::function<void()> on_tick) override {
    return timers_.MakeTimer(std::move(on_tick));
  }

 private:
  // How long to wait for the next timer; -1 (for ever) when none runs.
  std::int64_t UntilNextTimer() const;
  // Waits for at most so long (-1: for ever) and calls what became readable.
  void Poll(int timeout_ms);

  TimerQueue timers_;
  std::map<int, std::function<void()>> watched_;
  FileDescriptor wake_;
  std::atomic<bool> quit_{false};
};

}  // namespace zendrix::platform
