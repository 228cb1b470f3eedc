// Toolbars: a button for each command, with the picture of its key, reached by the Tab key.
#pragma once

#include <QString>
#include <vector>

#include "qt/bind.h"
#include "widgets/menu.h"

class QToolBar;

namespace zendrix::qt {

QToolBar* MakeBarOfTools(const QString& name, const std::vector<widgets::MenuItem*>& items,
                         const Toolkit& kit);

}  // namespace zendrix::qt
