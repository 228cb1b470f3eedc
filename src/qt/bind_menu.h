// Menus and the tray icon.
#pragma once

#include "qt/bind.h"
#include "widgets/menu.h"
#include "widgets/tray.h"

class QAction;
class QMenu;

namespace zendrix::qt {

QAction* MakeAction(widgets::MenuItem& item, QObject* owner, const Toolkit& kit);
QMenu* MakeMenu(widgets::Menu& menu, QWidget* owner, const Toolkit& kit);
// The icon in the notification area; `menu` opens where the desktop opens an icon's menu. `owner` keeps it.
void BindTray(widgets::Tray& tray, QMenu* menu, QWidget* owner, const Toolkit& kit);

}  // namespace zendrix::qt
