#include "qt/bind_form.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QWindow>

#include "qt/text_edge.h"

namespace zendrix::qt {

using widgets::WindowState;

FormWindow::FormWindow(widgets::Form& form, const Toolkit& kit, Qt::WindowFlags flags)
    : QMainWindow(nullptr, flags), form_(form), kit_(kit) {
  setObjectName(ToQt(form.name()));
  Reflect(this, form_.title, [this](const std::string& text) { setWindowTitle(ToQt(text)); });
  Keep(this, form_.bring_forward.Connect([this] {
    // A desktop takes a window that is activated out of the task bar.
    if (!isVisible() || form_.state.Get() == WindowState::kMinimised) return;
    raise();
    activateWindow();
  }));
  Keep(this, form_.on_top.changed.Connect([this] { setWindowFlag(Qt::WindowStaysOnTopHint, form_.on_top); }));
  Keep(this, form_.visible.changed.Connect([this] { ShowInState(); }));
  Keep(this, form_.state.changed.Connect([this] {
    if (form_.visible && !applying_) ShowInState();
  }));
  Keep(this, form_.centre.Connect([this] {
    if (const QScreen* on = screen()) move(on->availableGeometry().center() - rect().center());
  }));
  BindPlace();
}

void FormWindow::BindPlace() {
  for (widgets::Observed<int>* part : {&form_.left, &form_.top, &form_.width, &form_.height}) {
    Keep(this, part->changed.Connect([this] {
      if (applying_ || form_.width <= 0 || form_.height <= 0) return;
      const QRect place(form_.left, form_.top, form_.width, form_.height);
      for (const QScreen* on : QGuiApplication::screens()) {
        if (!on->availableGeometry().intersects(place)) continue;
        applying_ = true;
        move(place.topLeft());
        resize(place.size());
        applying_ = false;
        return;
      }
    }));
  }
}

void FormWindow::ShowInState() {
  applying_ = true;
  if (!form_.visible) {
    hide();
  } else if (form_.state.Get() == WindowState::kMinimised) {
    showMinimized();
  } else if (form_.state.Get() == WindowState::kMaximised) {
    showMaximized();
  } else {
    showNormal();
    raise();
    activateWindow();
  }
  applying_ = false;
  TellPlace();
}

void FormWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  kit_.guard(form_.name(), [&] { form_.Unload(widgets::UnloadCause::kCloseBox); });
}

void FormWindow::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() == QEvent::ActivationChange && isActiveWindow() && form_.loaded()) {
    kit_.guard(form_.name(), [&] { form_.Activate(); });
  } else if (event->type() == QEvent::WindowStateChange && !applying_) {
    applying_ = true;
    form_.state = isMinimized()   ? WindowState::kMinimised
                  : isMaximized() ? WindowState::kMaximised
                                  : WindowState::kNormal;
    applying_ = false;
  }
}

void FormWindow::TellPlace() {
  if (applying_ || !isVisible() || isMinimized() || isMaximized()) return;
  applying_ = true;
  form_.left = x();
  form_.top = y();
  form_.width = width();
  form_.height = height();
  applying_ = false;
}

void FormWindow::moveEvent(QMoveEvent* event) {
  QMainWindow::moveEvent(event);
  TellPlace();
}

void FormWindow::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  TellPlace();
}

void FormWindow::keyPressEvent(QKeyEvent* event) {
  if (escape_closes && event->key() == Qt::Key_Escape)
    close();
  else
    QMainWindow::keyPressEvent(event);
}

FormDialog::FormDialog(widgets::Form& form, const Toolkit& kit) : form_(form), kit_(kit) {
  setObjectName(ToQt(form.name()));
  Reflect(this, form_.title, [this](const std::string& text) { setWindowTitle(ToQt(text)); });
  Keep(this, form_.visible.changed.Connect([this] { setVisible(form_.visible); }));
  Keep(this, form_.bring_forward.Connect([this] {
    raise();
    activateWindow();
  }));
  Keep(this, form_.centre.Connect([this] { in_screen_ = true; }));
}

void FormDialog::showEvent(QShowEvent* event) {
  adjustSize();
  const QWindow* const owner = windowHandle() ? windowHandle()->transientParent() : nullptr;
  if (in_screen_ && screen())
    move(screen()->availableGeometry().center() - rect().center());
  else if (owner)
    move(owner->frameGeometry().center() - rect().center());
  QDialog::showEvent(event);
}

void FormDialog::closeEvent(QCloseEvent* event) {
  event->ignore();
  reject();
}

void FormDialog::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  if (event->type() == QEvent::ActivationChange && isActiveWindow() && form_.loaded())
    kit_.guard(form_.name(), [&] { form_.Activate(); });
}

void FormDialog::reject() {
  kit_.guard(form_.name(), [&] { form_.Unload(widgets::UnloadCause::kCloseBox); });
}

}  // namespace zendrix::qt
