// Option buttons. Those of one group share a parent widget and nothing else of their kind in it: the arrow
// keys then move among them.
#pragma once

#include "qt/bind.h"
#include "widgets/option_button.h"

class QRadioButton;

namespace zendrix::qt {

QRadioButton* MakeOptionButton(widgets::OptionButton& option, const Toolkit& kit);

}  // namespace zendrix::qt
