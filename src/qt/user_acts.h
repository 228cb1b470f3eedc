// Whether a person has just acted on a widget: released the left mouse button, pressed Enter or lifted a
// finger over it. A browser reports a script's click on a link as it reports a person's; this tells the two
// apart, since only a person's goes through the toolkit. Each act counts once, for a short time; the second
// half of a double click is no act of its own.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <functional>

class QWidget;

namespace zendrix::qt {

class UserActs : public QObject {
 public:
  // `widget` returns the current widget, or null. Acts on its descendants count as well.
  explicit UserActs(std::function<QWidget*()> widget);

  // Whether there was an act since the last call; each is reported once.
  bool Take();
  void Forget() { since_.invalidate(); }

  bool eventFilter(QObject* receiver, QEvent* event) override;

 private:
  bool IsAct(const QEvent& event);
  bool IsInside(const QObject* receiver) const;

  std::function<QWidget*()> widget_;
  QElapsedTimer since_;
  bool double_click_ = false;
};

}  // namespace zendrix::qt
