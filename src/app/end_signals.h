// The signals that ask a program to end (a log-off, a stop from a terminal), brought into the message loop.
#pragma once

#include <QObject>
#include <functional>

class QSocketNotifier;

namespace zendrix::app {

class EndSignals : public QObject {
 public:
  // Keeps the signals from ending the process at once. To be called before any thread is started.
  static void Block();
  // `on_end` runs on the user-interface thread, behind whatever runs now.
  explicit EndSignals(std::function<void()> on_end);
  ~EndSignals() override;

 private:
  std::function<void()> on_end_;
  QSocketNotifier* notifier_ = nullptr;
  int descriptor_ = -1;
};

}  // namespace zendrix::app
