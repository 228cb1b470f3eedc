// The Help pane.
#pragma once

#include "home/help_pane.h"
#include "qt/bind.h"

class QWidget;

namespace zendrix::qt {

QWidget* MakeHelpPane(home::HelpPane& pane, const Toolkit& kit);

}  // namespace zendrix::qt
