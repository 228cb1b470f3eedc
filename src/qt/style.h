// The drawing style: Fusion, with pictures that keep their colours in a selected row, buttons of dialogs
// without pictures, the program's own signs in message boxes, and check boxes and option buttons whose
// frame is visible in a dark palette too.
#pragma once

#include <QProxyStyle>

#include "qt/pictures.h"

namespace zendrix::qt {

class Style : public QProxyStyle {
 public:
  explicit Style(Pictures& pictures) : QProxyStyle(QStringLiteral("Fusion")), pictures_(pictures) {}

  QPixmap generatedIconPixmap(QIcon::Mode mode, const QPixmap& pixmap,
                              const QStyleOption* option) const override;
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* data) const override;
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  QIcon standardIcon(StandardPixmap which, const QStyleOption* option, const QWidget* widget) const override;

 private:
  Pictures& pictures_;
};

}  // namespace zendrix::qt
