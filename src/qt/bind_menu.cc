#include "qt/bind_menu.h"

#include <QAction>
#include <QCursor>
#include <QMenu>
#include <QSystemTrayIcon>
#include <QTimer>

#include "qt/text_edge.h"

namespace zendrix::qt {

QAction* MakeAction(widgets::MenuItem& item, QObject* owner, const Toolkit& kit) {
  auto* action = new QAction(owner);
  action->setObjectName(ToQt(item.name()));
  Reflect(action, item.caption, [action](const std::string& text) { action->setText(ToQt(text)); });
  Reflect(action, item.visible, [action](bool shown) { action->setVisible(shown); });
  Reflect(action, item.enabled, [action](bool usable) { action->setEnabled(usable); });
  // Behind the act: a command may open a modal window, and the menu is to be gone by then.
  QObject::connect(action, &QAction::triggered, action, [&item, action, guard = &kit.guard] {
    QTimer::singleShot(0, action, [&item, guard] { (*guard)(item.name(), [&] { item.clicked.Raise(); }); });
  });
  return action;
}

QMenu* MakeMenu(widgets::Menu& menu, QWidget* owner, const Toolkit& kit) {
  auto* widget = new QMenu(owner);
  widget->setObjectName(ToQt(menu.name()));
  Reflect(widget, menu.caption, [widget](const std::string& text) { widget->setTitle(ToQt(text)); });
  for (widgets::MenuItem* item : menu.items) widget->addAction(MakeAction(*item, widget, kit));
  Keep(widget, menu.popup.Connect([widget] { widget->popup(QCursor::pos()); }));
  return widget;
}

void BindTray(widgets::Tray& tray, QMenu* menu, QWidget* owner, const Toolkit& kit) {
  auto* icon = new QSystemTrayIcon(owner);
  icon->setObjectName(QStringLiteral("tray"));
  // Some desktops open the menu themselves and never report the button.
  icon->setContextMenu(menu);
  Pictures* pictures = &kit.pictures;
  Reflect(icon, tray.icon, [icon, pictures](widgets::TrayIcon which) {
    icon->setIcon(pictures->Icon(which == widgets::TrayIcon::kForm ? QStringLiteral("tray")
                                                                   : QStringLiteral("tray-notable")));
  });
  Reflect(icon, tray.tip, [icon](const std::string& text) { icon->setToolTip(ToQt(text)); });
  Reflect(icon, tray.shown, [icon](bool shown) { icon->setVisible(shown); });
  QObject::connect(icon, &QSystemTrayIcon::activated, icon,
                   [&tray, guard = &kit.guard](QSystemTrayIcon::ActivationReason reason) {
                     const int message = reason == QSystemTrayIcon::DoubleClick ? widgets::kTrayLeftDouble
                                         : reason == QSystemTrayIcon::Trigger   ? widgets::kTrayLeftUp
                                                                                : 0;
                     (*guard)("Tray", [&] { tray.mouse.Raise(message); });
                   });
}

}  // namespace zendrix::qt
