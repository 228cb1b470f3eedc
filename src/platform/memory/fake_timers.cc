#include "platform/memory/fake_timers.h"

#include <algorithm>
#include <limits>

namespace zendrix::platform {

struct FakeTimers::State {
  std::function<void()> on_tick;
  std::int64_t due = 0;
  std::int64_t interval = 0;
  std::uint64_t order = 0;
  bool running = false;
  bool once = false;
};

class FakeTimers::FakeTimer : public Timer {
 public:
  FakeTimer(FakeTimers& owner, std::shared_ptr<State> state) : owner_(owner), state_(std::move(state)) {}
  ~FakeTimer() override { state_->running = false; }

  void Start(std::int64_t interval_ms) override { Arm(std::max<std::int64_t>(interval_ms, 1), false); }
  void StartOnce(std::int64_t interval_ms) override { Arm(std::max<std::int64_t>(interval_ms, 0), true); }
  void Stop() override { state_->running = false; }
  bool Running() const override { return state_->running; }

 private:
  void Arm(std::int64_t interval, bool once) {
    state_->interval = interval;
    state_->due = owner_.clock_.MonotonicMs() + interval;
    state_->order = owner_.NextOrder();
    state_->once = once;
    state_->running = true;
  }

  FakeTimers& owner_;
  std::shared_ptr<State> state_;
};

std::unique_ptr<Timer> FakeTimers::MakeTimer(std::function<void()> on_tick) {
  auto state = std::make_shared<State>();
  state->on_tick = std::move(on_tick);
  std::erase_if(timers_, [](const auto& timer) { return timer.expired(); });
  timers_.push_back(state);
  return std::make_unique<FakeTimer>(*this, std::move(state));
}

int FakeTimers::RunningTimers() const {
  return static_cast<int>(std::count_if(timers_.begin(), timers_.end(), [](const auto& timer) {
    const auto state = timer.lock();
    return state && state->running;
  }));
}

void FakeTimers::RunQueue() {
  // Only what waits now: a call that posts itself again must not keep the loop for ever.
  for (std::size_t left = queue_.size(); left > 0 && !queue_.empty(); --left) {
    const auto call = std::move(queue_.front());
    queue_.pop_front();
    call();
  }
}

std::shared_ptr<FakeTimers::State> FakeTimers::NextDue(std::int64_t until, std::uint64_t last_order) {
  std::shared_ptr<State> next;
  for (const auto& candidate : timers_) {
    auto timer = candidate.lock();
    if (!timer || !timer->running || timer->due > until || timer->order > last_order) continue;
    if (!next || timer->due < next->due || (timer->due == next->due && timer->order < next->order)) {
      next = std::move(timer);
    }
  }
  return next;
}

void FakeTimers::Fire(const std::shared_ptr<State>& timer) {
  if (timer->once) {
    timer->running = false;
  } else {
    // Ticks that were missed while the thread rested are not made up for.
    const std::int64_t now = clock_.MonotonicMs();
    timer->due = (timer->due + timer->interval > now ? timer->due : now) + timer->interval;
    timer->order = NextOrder();
  }
  timer->on_tick();
}

void FakeTimers::ProcessMessages() {
  ++process_messages_count_;
  RunQueue();
  const std::int64_t now = clock_.MonotonicMs();
  // Each timer at most once: what is started again on the way waits for the next call.
  const std::uint64_t last_order = orders_;
  while (const auto timer = NextDue(now, last_order)) Fire(timer);
}

void FakeTimers::Advance(std::int64_t milliseconds) {
  const std::int64_t end = clock_.MonotonicMs() + milliseconds;
  RunQueue();
  while (const auto timer = NextDue(end, std::numeric_limits<std::uint64_t>::max())) {
    clock_.Advance(std::max<std::int64_t>(timer->due - clock_.MonotonicMs(), 0));
    Fire(timer);
    RunQueue();
  }
  clock_.Advance(std::max<std::int64_t>(end - clock_.MonotonicMs(), 0));
}

}  // namespace zendrix::platform
