// Lists that drop down, each entry with its picture where the list has any. The list is filled when it is
// opened, and when the keyboard asks for its entries without opening it; Delete and Backspace choose none.
#pragma once

#include "qt/bind.h"
#include "widgets/combo_box.h"

class QComboBox;

namespace zendrix::qt {

// Pictures are those of the numbered list `picture_list` ("grid").
QComboBox* MakeComboBox(widgets::ComboBox& box, const QString& accessible_name, const QString& picture_list,
                        const Toolkit& kit);

}  // namespace zendrix::qt
