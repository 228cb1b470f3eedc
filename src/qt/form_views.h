// Which window shows which form: the table that a new window adds one line to.
#pragma once

#include <memory>

#include "qt/bind.h"
#include "widgets/form.h"

class QWidget;

namespace zendrix::qt {

// The window of a form, hidden, bound to it; null for a form that has no line in the table.
std::unique_ptr<QWidget> MakeView(widgets::Form& form, const Toolkit& kit);

}  // namespace zendrix::qt
