// The Summary pane.
#pragma once

#include "home/summary_pane.h"
#include "qt/bind.h"

class QWidget;

namespace zendrix::qt {

QWidget* MakeSummaryPane(home::SummaryPane& pane, const Toolkit& kit);

}  // namespace zendrix::qt
