#include "qt/bind_tray.h"

#include <QGuiApplication>
#include <QMenu>
#include <QStyleHints>
#include <QSystemTrayIcon>
#include <QTimer>

#include "qt/text_edge.h"

namespace zendrix::qt {

void BindTray(widgets::Tray& tray, QMenu* menu, QWidget* owner, const Toolkit& kit) {
  auto* icon = new QSystemTrayIcon(owner);
  icon->setObjectName(QStringLiteral("tray"));
  // Some desktops open the menu themselves and never report the button.
  Reflect(icon, tray.has_menu, [icon, menu](bool has) { icon->setContextMenu(has ? menu : nullptr); });
  Pictures* pictures = &kit.pictures;
  Reflect(icon, tray.icon, [icon, pictures](widgets::TrayIcon which) {
    icon->setIcon(pictures->Icon(which == widgets::TrayIcon::kForm ? QStringLiteral("tray")
                                                                   : QStringLiteral("tray-notable")));
  });
  Reflect(icon, tray.tip, [icon](const std::string& text) { icon->setToolTip(ToQt(text)); });
  tray.hosted = [] { return QSystemTrayIcon::isSystemTrayAvailable(); };
  Reflect(icon, tray.shown, [icon](bool shown) { icon->setVisible(shown); });
  auto* held = new QTimer(icon);
  held->setSingleShot(true);
  QObject::connect(held, &QTimer::timeout, icon, [&tray, guard = &kit.guard] {
    (*guard)("Tray", [&] { tray.mouse.Raise(widgets::kTrayLeftUp); });
  });
  QObject::connect(icon, &QSystemTrayIcon::activated, icon,
                   [&tray, held, guard = &kit.guard](QSystemTrayIcon::ActivationReason reason) {
                     (*guard)("Tray", [&] {
                       held->stop();
                       if (reason == QSystemTrayIcon::Context) return tray.menu_opens.Raise();
                       const bool click = reason == QSystemTrayIcon::Trigger;
                       if (click && tray.click_waits)
                         return held->start(QGuiApplication::styleHints()->mouseDoubleClickInterval());
                       const int message = reason == QSystemTrayIcon::DoubleClick ? widgets::kTrayLeftDouble
                                           : click                                ? widgets::kTrayLeftUp
                                                                                  : 0;
                       tray.mouse.Raise(message);
                     });
                   });
}

}  // namespace zendrix::qt
