// The message loop and its timers, driven by a fake clock. Time passes only in Advance (and in the clock's
// own Sleep, during which nothing fires: what fell due meanwhile fires once, late, as in a real loop). A tick
// may stop, restart or destroy its own timer, and may re-enter through ProcessMessages or Advance.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>

#include "platform/memory/fake_clock.h"
#include "platform/message_loop.h"
#include "platform/timer_queue.h"

namespace zendrix::platform {

class FakeTimers : public TimerMaker, public MessageLoop {
 public:
  explicit FakeTimers(FakeClock& clock) : clock_(clock), timers_([&clock] { return clock.MonotonicMs(); }) {}

  // Lets time pass; everything that falls due fires at its own moment, in order.
  void Advance(std::int64_t milliseconds);
  // Puts a call into the queue, for the next ProcessMessages or Advance.
  void Post(std::function<void()> call) { queue_.push_back(std::move(call)); }

  // Calls of ProcessMessages so far.
  int ProcessMessagesCount() const { return process_messages_count_; }
  // Timers that are counting down at present.
  int RunningTimers() const { return timers_.Running(); }

  void ProcessMessages() override;
  // Nothing comes by itself: the whole time passes, and what falls due in it fires.
  void WaitForMessages(std::int64_t longest_ms) override { Advance(longest_ms); }
  std::unique_ptr<Timer> MakeTimer(std::function<void()> on_tick) override {
    return timers_.MakeTimer(std::move(on_tick));
  }

 private:
  void RunQueue();

  FakeClock& clock_;
  TimerQueue timers_;
  std::deque<std::function<void()>> queue_;
  int process_messages_count_ = 0;
};

}  // namespace zendrix::platform
