#include "qt/qt_loop.h"

#include <QCoreApplication>
#include <QTimer>

namespace zendrix::qt {

namespace {

class QtTimer : public platform::Timer {
 public:
  QtTimer(std::function<void()> on_tick, const SlotGuard* const& guard) {
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [tick = std::move(on_tick), &guard] {
      // A tick may destroy its own timer, and this closure with it.
      const auto kept = tick;
      if (guard)
        (*guard)("Timer", kept);
      else
        kept();
    });
    timer_.setTimerType(Qt::CoarseTimer);
  }
  void Start(std::int64_t interval_ms) override {
    timer_.setSingleShot(false);
    timer_.start(static_cast<int>(interval_ms));
  }
  void StartOnce(std::int64_t interval_ms) override {
    timer_.setSingleShot(true);
    timer_.start(static_cast<int>(interval_ms));
  }
  void Stop() override { timer_.stop(); }
  bool Running() const override { return timer_.isActive(); }

 private:
  QTimer timer_;
};

}  // namespace

void QtMessageLoop::ProcessMessages() {
  constexpr qint64 kPauseMs = 10;
  if (since_served_.isValid() && since_served_.elapsed() < kPauseMs) return;
  QCoreApplication::processEvents();
  since_served_.start();
}

void QtMessageLoop::WaitForMessages(std::int64_t longest_ms) {
  QTimer wake;
  wake.setSingleShot(true);
  wake.start(static_cast<int>(longest_ms));
  QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

std::unique_ptr<platform::Timer> QtTimers::MakeTimer(std::function<void()> on_tick) {
  return std::make_unique<QtTimer>(std::move(on_tick), guard_);
}

}  // namespace zendrix::qt
