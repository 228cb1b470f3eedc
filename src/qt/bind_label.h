// Labels as plain text, and labels that are clicked as links or flat buttons.
#pragma once

#include <QChar>

#include "qt/bind.h"
#include "widgets/label.h"

class QLabel;
class QPushButton;

namespace zendrix::qt {

// Text only. The widget's own colour, unless `with_colour`.
QLabel* MakeLabel(widgets::Label& label, const Toolkit& kit, bool with_colour = false);
// The text beside an input, whose access key leads there.
QLabel* MakeFieldLabel(widgets::Label& label, QWidget* field, QChar access_key, const Toolkit& kit);
// A standing warning: the same colours on light and on dark paper, and a stop for the keyboard, where a
// screen reader reads it.
QLabel* MakeWarning(widgets::Label& label, const Toolkit& kit);
// Looks like a link ("link", or "striplink" on the navigation strip), a flat button ("flat"), the button that
// a window is about ("primary") or an entry of the navigation ("nav"). A flat button tells the label when it
// is held down and let go.
QPushButton* MakeButton(widgets::Label& label, const char* role, const Toolkit& kit);

}  // namespace zendrix::qt
