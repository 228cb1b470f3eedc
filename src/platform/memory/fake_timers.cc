#include "platform/memory/fake_timers.h"

#include <algorithm>

namespace zendrix::platform {

void FakeTimers::RunQueue() {
  // Only what waits now: a call that posts itself again must not keep the loop for ever.
  for (std::size_t left = queue_.size(); left > 0 && !queue_.empty(); --left) {
    const auto call = std::move(queue_.front());
    queue_.pop_front();
    call();
  }
}

void FakeTimers::ProcessMessages() {
  ++process_messages_count_;
  RunQueue();
  timers_.FireDue();
}

void FakeTimers::Advance(std::int64_t milliseconds) {
  const std::int64_t end = clock_.MonotonicMs() + milliseconds;
  RunQueue();
  while (const auto due = timers_.NextDue()) {
    if (*due > end) break;
    clock_.Advance(std::max<std::int64_t>(*due - clock_.MonotonicMs(), 0));
    timers_.FireNext(*due);
    RunQueue();
  }
  clock_.Advance(std::max<std::int64_t>(end - clock_.MonotonicMs(), 0));
}

}  // namespace zendrix::platform
