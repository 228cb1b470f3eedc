// What panes and dialogs have in common on the screen.
#pragma once

class QLabel;
class QLayout;
class QWidget;

namespace zendrix::qt {

inline constexpr int kPaneMargin = 24;  // pixels
inline constexpr int kPaneGap = 12;     // pixels
// Of an input, also of one that the style would make lower.
inline constexpr int kFieldHeight = 31;

// A bordered area around what belongs together.
QWidget* Card(QLayout* layout);

// Gives a label a role of the style: "faint", "value".
QLabel* WithRole(QLabel* label, const char* role);

}  // namespace zendrix::qt
