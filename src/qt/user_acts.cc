#include "qt/user_acts.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWidget>
#include <utility>

namespace zendrix::qt {
namespace {

// A browser on a busy host may take its time to answer a click.
constexpr qint64 kLongestAnswerMs = 3000;

}  // namespace

// The browser makes and replaces the widgets that get its input as it likes, so the application is watched.
UserActs::UserActs(std::function<QWidget*()> widget) : widget_(std::move(widget)) {
  QCoreApplication::instance()->installEventFilter(this);
}

bool UserActs::Take() {
  const bool act = since_.isValid() && since_.elapsed() <= kLongestAnswerMs;
  Forget();
  return act;
}

bool UserActs::eventFilter(QObject* receiver, QEvent* event) {
  switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonRelease:
    case QEvent::KeyPress:
    case QEvent::TouchEnd:
      if (event->spontaneous() && IsInside(receiver) && IsAct(*event)) since_.start();
      break;
    default:
      break;
  }
  return false;
}

bool UserActs::IsAct(const QEvent& event) {
  switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
      double_click_ = event.type() == QEvent::MouseButtonDblClick;
      return false;
    case QEvent::MouseButtonRelease:
      return !double_click_ && static_cast<const QMouseEvent&>(event).button() == Qt::LeftButton;
    case QEvent::KeyPress: {
      const int key = static_cast<const QKeyEvent&>(event).key();
      return key == Qt::Key_Return || key == Qt::Key_Enter;
    }
    default:
      return true;
  }
}

bool UserActs::IsInside(const QObject* receiver) const {
  if (!receiver->isWidgetType()) return false;
  const QWidget* const outer = widget_();
  const auto* const inner = static_cast<const QWidget*>(receiver);
  return outer && (inner == outer || outer->isAncestorOf(inner));
}

}  // namespace zendrix::qt
