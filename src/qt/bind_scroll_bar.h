// Standing scroll bars that the keyboard reaches.
#pragma once

#include "qt/bind.h"
#include "widgets/scroll_bar.h"

class QScrollBar;

namespace zendrix::qt {

QScrollBar* MakeScrollBar(widgets::ScrollBar& bar, const QString& accessible_name, const Toolkit& kit);

}  // namespace zendrix::qt
