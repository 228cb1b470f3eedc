// One line of text. The field tells the logic when the keyboard comes, what is typed, and when the keyboard
// is about to go to another control of the window; going to another window or a menu is no leaving, nor is
// being hidden. When the text keeps the keyboard, the click that was to take it away does nothing else
// either.
#pragma once

#include "qt/bind.h"
#include "widgets/text_box.h"

class QLineEdit;

namespace zendrix::qt {

QLineEdit* MakeTextBox(widgets::TextBox& box, const QString& accessible_name, const Toolkit& kit);

}  // namespace zendrix::qt
