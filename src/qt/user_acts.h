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
  // `widget` gives the widget of the moment, or null. Acts on what is in it count as well.
  explicit UserActs(std::function<QWidget*()> widget);

  // Whether there was an act that nobody has taken yet. It is taken by the question.
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
