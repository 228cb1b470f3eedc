#include "qt/bind_splitter.h"

#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

namespace zendrix::qt {
namespace {

constexpr int kStep = 10;  // pixels

class SplitterInterface : public QAccessibleWidget, public QAccessibleValueInterface {
 public:
  explicit SplitterInterface(SplitterBar* bar) : QAccessibleWidget(bar, QAccessible::Separator), bar_(*bar) {}

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
  }
  QVariant currentValue() const override { return bar_.Place(); }
  void setCurrentValue(const QVariant& value) override { bar_.MoveTo(value.toInt()); }
  QVariant minimumValue() const override { return 0; }
  QVariant maximumValue() const override { return bar_.window()->height(); }
  QVariant minimumStepSize() const override { return kStep; }

 private:
  SplitterBar& bar_;
};

QAccessibleInterface* MakeSplitterInterface(const QString&, QObject* object) {
  auto* const bar = dynamic_cast<SplitterBar*>(object);
  return bar ? new SplitterInterface(bar) : nullptr;
}

}  // namespace

SplitterBar::SplitterBar(widgets::Splitter& bar, const QString& accessible_name, const Toolkit& kit)
    : bar_(bar), kit_(kit) {
  // First of all, as a name is told to assistive programs. The toolkit takes it once.
  QAccessible::installFactory(MakeSplitterInterface);
  BindControl(bar, this, accessible_name);
  setCursor(Qt::SplitVCursor);
  setFocusPolicy(Qt::TabFocus);
  Keep(this, bar_.Top.changed.Connect([this] {
    QAccessibleValueChangeEvent moved(this, Place());
    QAccessible::updateAccessibility(&moved);
  }));
}

int SplitterBar::Place() const {
  return bar_.Top / kTwipsPerPixel;
}

void SplitterBar::MoveTo(int place) {
  Drag((place - Place()) * kTwipsPerPixel + widgets::Splitter::kGrip);
}

void SplitterBar::Drag(int twips) {
  kit_.guard(bar_.name(), [&] { bar_.dragged.Raise(twips); });
}

void SplitterBar::mouseMoveEvent(QMouseEvent* event) {
  if (event->buttons().testFlag(Qt::LeftButton))
    Drag(static_cast<int>(event->position().y() * kTwipsPerPixel));
}

void SplitterBar::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Up)
    MoveTo(Place() - kStep);
  else if (event->key() == Qt::Key_Down)
    MoveTo(Place() + kStep);
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
