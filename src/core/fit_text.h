// Texts shortened for display: a path keeps as much of its folders as fits, "...", and the file name with the
// separator in front of it; any other text loses its middle.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace zendrix::core {

// Width of a text in the font at hand, in the unit that the procedure asks for.
using MeasureText = std::function<int(std::string_view)>;
// PathCompactPath: the path fitted into `width` pixels with "..." (the platform function's results).
std::string CompactPath(std::string_view path, int width, const MeasureText& measure);
// Shortens a text for a control of `limit` twips: a path by CompactPath, any other text by "..." in its
// middle. `twips` measures in twips, `pixels` in pixels, `twips_per_pixel` (above 0) is the screen's.
std::string FitTextToWidth(std::string_view text, int limit, const MeasureText& twips,
                           const MeasureText& pixels, int twips_per_pixel);

}  // namespace zendrix::core
