// How wide texts come out in the grid's font; told by the screen toolkit.
#pragma once

#include "core/fit_text.h"

namespace zendrix::admin {

struct TextMetrics {
  core::MeasureText twips;
  core::MeasureText pixels;
  int twips_per_pixel = 15;
};

}  // namespace zendrix::admin
