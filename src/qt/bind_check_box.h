// Check boxes.
#pragma once

#include <QChar>

#include "qt/bind.h"
#include "widgets/check_box.h"

class QCheckBox;

namespace zendrix::qt {

QCheckBox* MakeCheckBox(widgets::CheckBox& box, const Toolkit& kit, QChar access_key = {});

}  // namespace zendrix::qt
