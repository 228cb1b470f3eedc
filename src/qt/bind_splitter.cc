#include "qt/bind_splitter.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

namespace zendrix::qt {

SplitterBar::SplitterBar(widgets::Splitter& bar, const QString& accessible_name, const Toolkit& kit)
    : bar_(bar), kit_(kit) {
  BindControl(bar, this, accessible_name);
  setCursor(Qt::SplitVCursor);
  setFocusPolicy(Qt::TabFocus);
}

void SplitterBar::Drag(int twips) {
  kit_.guard(bar_.name(), [&] { bar_.dragged.Raise(twips); });
}

void SplitterBar::mouseMoveEvent(QMouseEvent* event) {
  if (event->buttons().testFlag(Qt::LeftButton))
    Drag(static_cast<int>(event->position().y() * kTwipsPerPixel));
}

void SplitterBar::keyPressEvent(QKeyEvent* event) {
  constexpr int kStep = 10 * kTwipsPerPixel;
  if (event->key() == Qt::Key_Up)
    Drag(widgets::Splitter::kGrip - kStep);
  else if (event->key() == Qt::Key_Down)
    Drag(widgets::Splitter::kGrip + kStep);
  else
    QWidget::keyPressEvent(event);
}

// A short line to take hold of, which stands out while the keyboard is there.
void SplitterBar::paintEvent(QPaintEvent*) {
  constexpr int kLength = 40;
  constexpr int kThickness = 2;
  const Tokens& tokens = kit_.theme.tokens();
  QRect line(0, 0, kLength, kThickness);
  line.moveCenter(rect().center());
  QPainter(this).fillRect(line, hasFocus() ? tokens.accent : tokens.border);
}

}  // namespace zendrix::qt
