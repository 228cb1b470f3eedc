#include "qt/bind_click.h"

#include <QMouseEvent>
#include <QWidget>

namespace zendrix::qt {
namespace {

class Clicks : public QObject {
 public:
  Clicks(std::string name, widgets::Signal<>& clicked, QWidget* widget, const Toolkit& kit)
      : QObject(widget), name_(std::move(name)), clicked_(clicked), guard_(kit.guard) {
    widget->setCursor(Qt::PointingHandCursor);
    widget->installEventFilter(this);
  }

  bool eventFilter(QObject* receiver, QEvent* event) override {
    if (event->type() != QEvent::MouseButtonPress && event->type() != QEvent::MouseButtonRelease)
      return false;
    const auto* const mouse = static_cast<QMouseEvent*>(event);
    if (mouse->button() != Qt::LeftButton) return false;
    const bool inside = static_cast<QWidget*>(receiver)->rect().contains(mouse->position().toPoint());
    const bool clicked = event->type() == QEvent::MouseButtonRelease && pressed_ && inside;
    pressed_ = event->type() == QEvent::MouseButtonPress;
    if (clicked) guard_(name_, [this] { clicked_.Raise(); });
    return true;
  }

 private:
  std::string name_;
  widgets::Signal<>& clicked_;
  SlotGuard& guard_;
  bool pressed_ = false;
};

}  // namespace

void BindClick(const std::string& name, widgets::Signal<>& clicked, QWidget* widget, const Toolkit& kit) {
  new Clicks(name, clicked, widget, kit);
}

}  // namespace zendrix::qt
