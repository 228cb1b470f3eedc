// The logs in the Advanced pane.
#pragma once

#include "home/logs_pane.h"
#include "qt/bind.h"

class QWidget;

namespace zendrix::qt {

QWidget* MakeLogs(home::LogsPane& pane, const Toolkit& kit);

}  // namespace zendrix::qt
