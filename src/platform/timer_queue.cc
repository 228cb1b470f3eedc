#include "platform/timer_queue.h"

#include <algorithm>
#include <limits>

namespace zendrix::platform {
namespace {

constexpr std::int64_t kAnyTime = std::numeric_limits<std::int64_t>::max();
constexpr std::uint64_t kAnyOrder = std::numeric_limits<std::uint64_t>::max();

}  // namespace

struct TimerQueue::State {
  std::function<void()> on_tick;
  std::int64_t due = 0;
  std::int64_t interval = 0;
  std::uint64_t order = 0;
  bool running = false;
  bool once = false;
};

class TimerQueue::QueuedTimer : public Timer {
 public:
  QueuedTimer(TimerQueue& owner, std::shared_ptr<State> state) : owner_(owner), state_(std::move(state)) {}
  QueuedTimer(const QueuedTimer&) = delete;
  QueuedTimer& operator=(const QueuedTimer&) = delete;
  ~QueuedTimer() override { state_->running = false; }

  void Start(std::int64_t interval_ms) override { Arm(std::max<std::int64_t>(interval_ms, 1), false); }
  void StartOnce(std::int64_t interval_ms) override { Arm(std::max<std::int64_t>(interval_ms, 0), true); }
  void Stop() override { state_->running = false; }
  bool Running() const override { return state_->running; }

 private:
  void Arm(std::int64_t interval, bool once) {
    state_->interval = interval;
    state_->due = owner_.now_() + interval;
    state_->order = ++owner_.orders_;
    state_->once = once;
    state_->running = true;
  }

  TimerQueue& owner_;
  std::shared_ptr<State> state_;
};

std::unique_ptr<Timer> TimerQueue::MakeTimer(std::function<void()> on_tick) {
  auto state = std::make_shared<State>();
  state->on_tick = std::move(on_tick);
  std::erase_if(timers_, [](const auto& timer) { return timer.expired(); });
  timers_.push_back(state);
  return std::make_unique<QueuedTimer>(*this, std::move(state));
}

int TimerQueue::Running() const {
  return static_cast<int>(std::count_if(timers_.begin(), timers_.end(), [](const auto& timer) {
    const auto state = timer.lock();
    return state && state->running;
  }));
}

std::shared_ptr<TimerQueue::State> TimerQueue::First(std::int64_t until, std::uint64_t last_order) const {
  std::shared_ptr<State> first;
  for (const auto& candidate : timers_) {
    auto timer = candidate.lock();
    if (!timer || !timer->running || timer->due > until || timer->order > last_order) continue;
    if (!first || timer->due < first->due || (timer->due == first->due && timer->order < first->order)) {
      first = std::move(timer);
    }
  }
  return first;
}

std::optional<std::int64_t> TimerQueue::NextDue() const {
  const auto first = First(kAnyTime, kAnyOrder);
  if (!first) return std::nullopt;
  return first->due;
}

void TimerQueue::Fire(const std::shared_ptr<State>& timer) {
  if (timer->once) {
    timer->running = false;
  } else {
    const std::int64_t now = now_();
    timer->due = (timer->due + timer->interval > now ? timer->due : now) + timer->interval;
    timer->order = ++orders_;
  }
  timer->on_tick();
}

bool TimerQueue::FireNext(std::int64_t until) {
  const auto first = First(until, kAnyOrder);
  if (first) Fire(first);
  return first != nullptr;
}

void TimerQueue::FireDue() {
  const std::int64_t now = now_();
  const std::uint64_t last_order = orders_;
  while (const auto first = First(now, last_order)) Fire(first);
}

}  // namespace zendrix::platform
