// The message loop and its timers on the toolkit's event loop.
#pragma once

#include <QElapsedTimer>

#include "platform/message_loop.h"
#include "qt/slot_guard.h"

namespace zendrix::qt {

class QtMessageLoop : public platform::MessageLoop {
 public:
  // A load asks for this with every few lines. The queue is served a hundred times a second at most, which
  // nobody notices; each time costs as much as hundreds of lines.
  void ProcessMessages() override;
  void WaitForMessages(std::int64_t longest_ms) override;

 private:
  QElapsedTimer since_served_;
};

class QtTimers : public platform::TimerMaker {
 public:
  // The guard keeps a tick's exceptions from the toolkit; it has to be set before the first timer starts.
  void SetGuard(const SlotGuard* guard) { guard_ = guard; }
  std::unique_ptr<platform::Timer> MakeTimer(std::function<void()> on_tick) override;

 private:
  const SlotGuard* guard_ = nullptr;
};

}  // namespace zendrix::qt
