#include "qt/home/pop_up_window.h"

#include <QApplication>
#include <QBoxLayout>
#include <QCheckBox>
#include <QCursor>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QShowEvent>
#include <QTimer>
#include <QWindow>

#include "qt/bind_check_box.h"
#include "qt/bind_label.h"
#include "qt/pane_looks.h"

namespace zendrix::qt {
namespace {

constexpr int kTextWidth = 420;    // pixels
constexpr int kFromEdge = 16;      // pixels between the window and the edges of the screen
constexpr int kFrameGuess = 36;    // pixels of a title bar, until the desktop has told them
constexpr int kSettlingMs = 1000;  // in which a desktop decides who has the keyboard

QScreen* ActiveScreen() {
  if (const QWindow* const active = QGuiApplication::focusWindow()) return active->screen();
  if (QScreen* const under_pointer = QGuiApplication::screenAt(QCursor::pos())) return under_pointer;
  return QGuiApplication::primaryScreen();
}

}  // namespace

PopUpWindow::PopUpWindow(widgets::Form& form, const Parts& parts, const Toolkit& kit)
    : FormDialog(form, kit) {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(18, 16, 18, 14);
  row->setSpacing(14);
  row->setSizeConstraint(QLayout::SetFixedSize);
  auto* sign = new QLabel;
  sign->setPixmap(kit.pictures.Pixmap(QString::fromLatin1(parts.picture), 32, devicePixelRatioF()));
  row->addWidget(sign, 0, Qt::AlignTop);
  auto* column = new QVBoxLayout;
  column->setSpacing(8);
  column->addWidget(WithRole(MakeLabel(parts.title, kit), "heading"));
  message_ = MakeLabel(parts.message, kit);
  message_->setFixedWidth(kTextWidth);
  column->addWidget(message_);
  column->addSpacing(4);
  column->addWidget(MakeCheckBox(parts.choice, kit));
  auto* buttons = new QHBoxLayout;
  buttons->addStretch(1);
  for (widgets::Label* label : parts.buttons) {
    QPushButton* button = MakeButton(*label, "flat", kit);
    button->setAutoDefault(false);
    buttons->addWidget(button);
  }
  column->addLayout(buttons);
  row->addLayout(column, 1);
  // Behind the layout's own work, which a change of the text sets off.
  const auto settle_later = [this](const std::string&) {
    QTimer::singleShot(0, this, [this] {
      if (isVisible()) Settle();
    });
  };
  Reflect(this, parts.message.caption, settle_later);
}

void PopUpWindow::Settle() {
  // A layout asks wrapped text for its height as if it stood in a wider place.
  message_->setFixedHeight(message_->heightForWidth(kTextWidth));
  adjustSize();
  const QScreen* const on = ActiveScreen();
  if (!on) return;
  const QRect free = on->availableGeometry();
  const int frame = frameGeometry().height() - height();
  int bottom = free.bottom() - kFromEdge;
  for (const QWidget* other : QApplication::topLevelWidgets()) {
    const bool there = other != this && other->isVisible() && dynamic_cast<const PopUpWindow*>(other);
    if (there && free.intersects(other->frameGeometry()))
      bottom = std::min(bottom, other->frameGeometry().top() - kFromEdge);
  }
  move(std::max(free.left(), free.right() - width() - kFromEdge),
       std::max(free.top(), bottom - height() - (frame > 0 ? frame : kFrameGuess)));
}

void PopUpWindow::showEvent(QShowEvent* event) {
  FormDialog::showEvent(event);
  if (event->spontaneous()) return;
  Settle();
  QTimer::singleShot(kSettlingMs, this, [this] { LetTheKeyboardIn(); });
}

// On the window below, whose desktop is told without taking it down and putting it up again.
void PopUpWindow::LetTheKeyboardIn() {
  if (QWindow* const window = windowHandle()) window->setFlag(Qt::WindowDoesNotAcceptFocus, false);
}

}  // namespace zendrix::qt
