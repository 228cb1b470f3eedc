#include "qt/style.h"

namespace zendrix::qt {

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

QIcon Style::standardIcon(StandardPixmap which, const QStyleOption* option, const QWidget* widget) const {
  QIcon icon;
  if (which == SP_MessageBoxInformation) icon = pictures_.Icon(QStringLiteral("lst32/info"));
  if (which == SP_MessageBoxWarning) icon = pictures_.Icon(QStringLiteral("lst32/warning"));
  if (which == SP_MessageBoxCritical) icon = pictures_.Icon(QStringLiteral("lst32/error"));
  return icon.isNull() ? QProxyStyle::standardIcon(which, option, widget) : icon;
}

}  // namespace zendrix::qt
