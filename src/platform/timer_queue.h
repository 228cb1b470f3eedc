// The timers of one thread, without a loop of their own: a loop asks which is due first and fires it. A tick
// may stop, restart or destroy its own timer, and may re-enter the loop. Ticks that were missed while the
// thread did other things are not made up for: a repeating timer that is late fires once.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/message_loop.h"

namespace zendrix::platform {

class TimerQueue : public TimerMaker {
 public:
  // `now` gives milliseconds of a clock that never goes back.
  explicit TimerQueue(std::function<std::int64_t()> now) : now_(std::move(now)) {}

  // The queue must outlive its timers.
  std::unique_ptr<Timer> MakeTimer(std::function<void()> on_tick) override;

  // When the first of the running timers is due; nothing when none runs.
  std::optional<std::int64_t> NextDue() const;
  // Fires the timer that is due first, if that is at `until` or before; of equals the one that was armed
  // first.
  bool FireNext(std::int64_t until);
  // Fires everything that is due now, each timer at most once: what is armed on the way waits for the next
  // call.
  void FireDue();
  // Timers that are counting down.
  int Running() const;

 private:
  struct State;
  class QueuedTimer;

  std::shared_ptr<State> First(std::int64_t until, std::uint64_t last_order) const;
  void Fire(const std::shared_ptr<State>& timer);

  std::function<std::int64_t()> now_;
  std::vector<std::weak_ptr<State>> timers_;
  std::uint64_t orders_ = 0;  // one for each arming
};

}  // namespace zendrix::platform
