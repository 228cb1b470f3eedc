// Whether text can be read on its ground: the contrast ratio of the Web Content Accessibility Guidelines 2.1
// (relative luminance of sRGB colours), 1 to 21.
#pragma once

#include <QColor>

namespace zendrix::qt {

// What the guidelines ask for at level AA of text of any size.
inline constexpr double kReadable = 4.5;

double Contrast(const QColor& one, const QColor& other);

// `text` with its hue, made darker or lighter as far as it takes to be read on `ground`; as it is when it can
// be read already.
QColor Legible(const QColor& text, const QColor& ground);

}  // namespace zendrix::qt
