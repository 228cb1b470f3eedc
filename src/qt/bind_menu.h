// Menu commands as actions, and menus of them.
#pragma once

#include "qt/bind.h"
#include "widgets/menu.h"

class QAction;
class QMenu;

namespace zendrix::qt {

QAction* MakeAction(widgets::MenuItem& item, QObject* owner, const Toolkit& kit);
// A menu opens under the pointer, or where the widget with the keyboard says: it has this property, a QPoint
// in the screen's coordinates, while it asks for the menu.
inline constexpr char kMenuPlace[] = "zendrixMenuPlace";

QMenu* MakeMenu(widgets::Menu& menu, QWidget* owner, const Toolkit& kit);

}  // namespace zendrix::qt
