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

}  // namespace

std::string CompactPath(std::string_view path, int width, const MeasureText& measure) {
  path = path.substr(0, path.find('\0'));
  if (measure(path) <= width) return std::string(path);
  const std::size_t separator = SeparatorBeforeName(path);
  const bool has_folders = separator != std::string_view::npos;
  const std::string_view name = has_folders ? path.substr(separator) : std::string_view{};
  // Widths grow with the kept characters, so the most that fits is found by halving; a file name that does
  // not fit even alone stays whole.
  std::size_t fits = 0;
  std::size_t above = (has_folders ? separator : path.size()) + 1;
  while (above - fits > 1) {
    const std::size_t middle = fits + (above - fits) / 2;
    (measure(Shortened(path, middle, name)) <= width ? fits : above) = middle;
  }
  return Shortened(path, fits, name);
}

std::string FitTextToWidth(std::string_view text, int limit, const MeasureText& twips,
                           const MeasureText& pixels, int twips_per_pixel) {
  if (twips(text) < limit || text.size() < 5) return std::string(text);
  if (text.find('\\') != std::string_view::npos) {
    return CompactPath(text, RoundToLong((limit - 100.0) / twips_per_pixel), pixels);
  }
  const std::size_t half = text.size() / 2;
  std::string_view left = text.substr(0, half - 2);
  std::string_view right = text.substr(std::min(half + 2, text.size()));
  const auto shortened = [&] { return std::string(left) + "..." + std::string(right); };
  while (twips(shortened()) >= limit - 57) {
    if (left.size() < 3) break;
    left.remove_suffix(1);
    if (right.size() < 4) break;
    right.remove_prefix(1);
  }
  return shortened();
}

}  // namespace zendrix::core
