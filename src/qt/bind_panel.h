// What a status bar holds: panels, as plain text, and the bar of progress between them. A screen reader reads
// what a panel is and what stands in it. Both may change with every few lines of a load, and are painted at
// most twenty times a second.
#pragma once

#include "qt/bind.h"
#include "widgets/panel.h"
#include "widgets/progress_bar.h"

class QLabel;
class QProgressBar;

namespace zendrix::qt {

// The panel is told how wide it is.
QLabel* MakePanel(widgets::Panel& panel, const QString& accessible_name);
// Seen while it stands above 0; it keeps its room.
QProgressBar* MakeProgressBar(widgets::ProgressBar& bar, const QString& accessible_name);

}  // namespace zendrix::qt
