#include "qt/style.h"

#include <QPainter>
#include <QStyleOption>

namespace zendrix::qt {

namespace {

// The colour of an indicator's frame: visible on any paper, and another one under the keyboard.
QColor FrameOf(const QStyleOption& option) {
  return option.palette.color(option.state.testFlag(QStyle::State_HasFocus) ? QPalette::Link
                                                                            : QPalette::PlaceholderText);
}

void DrawRadio(const QStyleOption& option, QPainter& painter) {
  const bool checked = option.state.testFlag(QStyle::State_On);
  const QRectF circle = QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5);
  const qreal inset = circle.width() * 0.3;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(FrameOf(option));
  painter.setBrush(checked ? option.palette.highlight() : option.palette.base());
  painter.drawEllipse(circle);
  if (checked) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(option.palette.highlightedText());
    painter.drawEllipse(circle.adjusted(inset, inset, -inset, -inset));
  }
  painter.restore();
}

}  // namespace

QPixmap Style::generatedIconPixmap(QIcon::Mode mode, const QPixmap& pixmap,
                                   const QStyleOption* option) const {
  if (mode == QIcon::Selected || mode == QIcon::Active) return pixmap;
  return QProxyStyle::generatedIconPixmap(mode, pixmap, option);
}

int Style::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                     QStyleHintReturn* data) const {
  if (hint == SH_DialogButtonBox_ButtonsHaveIcons) return 0;
  return QProxyStyle::styleHint(hint, option, widget, data);
}

void Style::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                          const QWidget* widget) const {
  if (element == PE_IndicatorRadioButton) return DrawRadio(*option, *painter);
  if (element != PE_IndicatorCheckBox) return QProxyStyle::drawPrimitive(element, option, painter, widget);
  constexpr qreal kRadius = 3;
  const QPalette& palette = option->palette;
  const bool checked = option->state.testFlag(State_On);
  const QRectF box = QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5);
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setPen(FrameOf(*option));
  painter->setBrush(checked ? palette.highlight() : palette.base());
  painter->drawRoundedRect(box, kRadius, kRadius);
  if (checked) {
    const auto at = [&](qreal x, qreal y) {
      return QPointF(box.left() + x * box.width(), box.top() + y * box.height());
    };
    const QPointF tick[] = {at(0.22, 0.52), at(0.42, 0.72), at(0.78, 0.30)};
    painter->setPen(QPen(palette.highlightedText(), 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->drawPolyline(tick, 3);
  }
  painter->restore();
}

QIcon Style::standardIcon(StandardPixmap which, const QStyleOption* option, const QWidget* widget) const {
  QIcon icon;
  if (which == SP_MessageBoxInformation) icon = pictures_.Icon(QStringLiteral("lst32/info"));
  if (which == SP_MessageBoxWarning) icon = pictures_.Icon(QStringLiteral("lst32/warning"));
  if (which == SP_MessageBoxCritical) icon = pictures_.Icon(QStringLiteral("lst32/error"));
  return icon.isNull() ? QProxyStyle::standardIcon(which, option, widget) : icon;
}

}  // namespace zendrix::qt
