// The icon in the notification area.
#pragma once

#include "qt/bind.h"
#include "widgets/tray.h"

class QMenu;

namespace zendrix::qt {

// `menu` opens where the desktop opens an icon's menu. `owner` keeps the icon.
void BindTray(widgets::Tray& tray, QMenu* menu, QWidget* owner, const Toolkit& kit);

}  // namespace zendrix::qt
