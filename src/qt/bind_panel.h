// Panels of a status bar, as plain text. A screen reader reads what a panel is and what stands in it.
#pragma once

#include "qt/bind.h"
#include "widgets/panel.h"

class QLabel;

namespace zendrix::qt {

// The panel is told how wide it is.
QLabel* MakePanel(widgets::Panel& panel, const QString& accessible_name);

}  // namespace zendrix::qt
