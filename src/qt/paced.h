// Shows what may change thousands of times a second at most twenty times a second: the first change at once,
// the last one always. While nothing changes no timer runs.
#pragma once

#include <QObject>
#include <QTimer>
#include <functional>

namespace zendrix::qt {

class Paced : public QObject {
 public:
  Paced(QObject* parent, std::function<void()> show) : QObject(parent), show_(std::move(show)) {
    timer_.setSingleShot(true);
    connect(&timer_, &QTimer::timeout, this, [this] {
      if (std::exchange(waiting_, false)) Show();
    });
  }

  void Changed() {
    if (timer_.isActive())
      waiting_ = true;
    else
      Show();
  }

 private:
  void Show() {
    constexpr int kPauseMs = 50;
    timer_.start(kPauseMs);
    show_();
  }

  std::function<void()> show_;
  QTimer timer_;
  bool waiting_ = false;
};

}  // namespace zendrix::qt
