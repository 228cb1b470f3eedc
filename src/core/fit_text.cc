#include "core/fit_text.h"

#include <algorithm>

#include "core/number_rules.h"

namespace zendrix::core {
namespace {

constexpr std::string_view kEllipsis = "...";

bool IsSlash(char character) {
  return character == '\\' || character == '/';
}

std::string Shortened(std::string_view front, std::size_t kept, std::string_view tail) {
  return std::string(front.substr(0, kept)).append(kEllipsis).append(tail);
}

// Position of the file name's separator: of the last "\", "/" or ":" that something else than a separator
// follows. A separator at the end belongs to the name. npos when the path is a plain name.
std::size_t SeparatorBeforeName(std::string_view path) {
  for (std::size_t i = path.size(); i-- > 0;) {
    const bool separator = IsSlash(path[i]) || path[i] == ':';
    if (separator && i + 1 < path.size() && !IsSlash(path[i + 1])) return i;
  }
  return std::string_view::npos;
}

// The last number below `end` for which `holds` is true, where it is true up to there and false behind; 0
// when there is none. Asks about small numbers first.
template <class Holds>
std::size_t LastThat(std::size_t end, Holds holds) {
  std::size_t known = 0;
  std::size_t above = 1;
  while (above < end && holds(above)) {
    known = above;
    above *= 2;
  }
  above = std::min(above, end);
  while (above - known > 1) {
    const std::size_t middle = known + (above - known) / 2;
    (holds(middle) ? known : above) = middle;
  }
  return known;
}

}  // namespace

std::string CompactPath(std::string_view path, int width, const MeasureText& measure) {
  path = path.substr(0, path.find('\0'));
  if (measure(path) <= width) return std::string(path);
  const std::size_t separator = SeparatorBeforeName(path);
  const bool has_folders = separator != std::string_view::npos;
  const std::string_view name = has_folders ? path.substr(separator) : std::string_view{};
  // Widths grow with the kept characters, so the most that fits is found by doubling and halving; a file name
  // that does not fit even alone stays whole.
  const std::size_t most = (has_folders ? separator : path.size()) + 1;
  const std::size_t fits =
      LastThat(most, [&](std::size_t kept) { return measure(Shortened(path, kept, name)) <= width; });
  return Shortened(path, fits, name);
}

std::string FitTextToWidth(std::string_view text, int limit, const MeasureText& twips,
                           const MeasureText& pixels, int twips_per_pixel) {
  if (twips(text) < limit || text.size() < 5) return std::string(text);
  if (text.find('\\') != std::string_view::npos) {
    return CompactPath(text, RoundToLong((limit - 100.0) / twips_per_pixel), pixels);
  }
  const std::size_t half = text.size() / 2;
  const std::string_view left = text.substr(0, half - 2);
  const std::string_view right = text.substr(std::min(half + 2, text.size()));
  const auto shortened = [&](std::size_t kept_left, std::size_t kept_right) {
    return Shortened(left, kept_left, right.substr(right.size() - kept_right));
  };
  // Each step takes a character from either side of the middle, as long as the left one has three and the
  // right one four. Texts are far longer than what fits, so the steps are counted from the last one back.
  const std::size_t last_step =
      std::min(left.size() < 3 ? 0 : left.size() - 2, right.size() < 4 ? 0 : right.size() - 3);
  const auto fits = [&](std::size_t step) {
    return twips(shortened(left.size() - step, right.size() - step)) < limit - 57;
  };
  if (!fits(last_step)) {
    const bool left_is_longer = left.size() - last_step >= 3;
    return shortened(left.size() - last_step - (left_is_longer ? 1 : 0), right.size() - last_step);
  }
  const std::size_t step =
      last_step - LastThat(last_step + 1, [&](std::size_t back) { return fits(last_step - back); });
  return shortened(left.size() - step, right.size() - step);
}

}  // namespace zendrix::core
