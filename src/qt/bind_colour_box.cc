#include "qt/bind_colour_box.h"

#include <QPainter>
#include <QWidget>

namespace zendrix::qt {
namespace {

class Swatch : public QWidget {
 public:
  Swatch(const widgets::ColourBox& box, const Theme& theme) : box_(box), theme_(theme) {
    constexpr int kWidth = 56, kHeight = 28;
    setFixedSize(kWidth, kHeight);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    constexpr qreal kRadius = 4;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.setBrush(theme_.ColourOf(box_.colour));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kRadius, kRadius);
  }

 private:
  const widgets::ColourBox& box_;
  const Theme& theme_;
};

}  // namespace

QWidget* MakeColourBox(widgets::ColourBox& box, const QString& accessible_name, const Toolkit& kit) {
  auto* widget = new Swatch(box, kit.theme);
  BindControl(box, widget, accessible_name);
  Reflect(widget, box.colour, [widget, kit](widgets::Colour colour) {
    widget->setAccessibleDescription(ColourText(colour, kit));
    widget->update();
  });
  return widget;
}

QString ColourText(widgets::Colour colour, const Toolkit& kit) {
  return kit.theme.ColourOf(colour).name().toUpper();
}

}  // namespace zendrix::qt
