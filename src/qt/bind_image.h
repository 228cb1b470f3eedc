// Pictures of ImgLst32 by key. Flags and signs say in words what they mean, for those who do not see them.
#pragma once

#include "qt/bind.h"
#include "widgets/image.h"

class QLabel;

namespace zendrix::qt {

// `edge` pixels wide and high.
QLabel* MakeImage(widgets::Image& image, int edge, const Toolkit& kit);

}  // namespace zendrix::qt
