// Menu commands as actions, and menus of them.
#pragma once

#include "qt/bind.h"
#include "widgets/menu.h"

class QAction;
class QMenu;

namespace zendrix::qt {

QAction* MakeAction(widgets::MenuItem& item, QObject* owner, const Toolkit& kit);
QMenu* MakeMenu(widgets::Menu& menu, QWidget* owner, const Toolkit& kit);

}  // namespace zendrix::qt
