// The Options pane.
#pragma once

#include "home/options_pane.h"
#include "qt/bind.h"

class QWidget;

namespace zendrix::qt {

QWidget* MakeOptionsPane(home::OptionsPane& pane, const Toolkit& kit);

}  // namespace zendrix::qt
