#include "core/path_compact.h"

#include <string>

#include "core/text_rules.h"
#include "core/utils.h"

namespace zendrix::core {
namespace {

constexpr std::string_view kEllipsis = "...";

bool IsSlash(char character) {
  return character == '\\' || character == '/';
}

// "...\...", the shortest form of a path, cut where even that does not fit.
std::string BareForm(char separator, std::size_t max_chars) {
  std::string form(kEllipsis);
  form += separator;
  form += kEllipsis;
  return form.substr(0, max_chars);
}

std::string CompactName(std::string_view name, std::size_t max_chars) {
  if (max_chars <= kEllipsis.size()) return std::string(kEllipsis.substr(0, max_chars));
  return std::string(name.substr(0, max_chars - kEllipsis.size())).append(kEllipsis);
}

std::string Shortened(std::string_view front, std::size_t kept, std::string_view tail) {
  return std::string(front.substr(0, kept)).append(kEllipsis).append(tail);
}

}  // namespace

std::size_t SeparatorBeforeName(std::string_view path) {
  for (std::size_t i = path.size(); i-- > 0;) {
    const bool separator = IsSlash(path[i]) || path[i] == ':';
    if (separator && i + 1 < path.size() && !IsSlash(path[i + 1])) return i;
  }
  return std::string_view::npos;
}

std::string PathCompactEx(std::string_view path, std::size_t max_chars) {
  if (path.size() <= max_chars) return std::string(path);
  const std::size_t separator = SeparatorBeforeName(path);
  if (separator == std::string_view::npos) return CompactName(path, max_chars);
  const std::string_view name = path.substr(separator);
  if (kEllipsis.size() + name.size() <= max_chars) {
    return Shortened(path, max_chars - kEllipsis.size() - name.size(), name);
  }
  const std::size_t bare = 2 * kEllipsis.size() + 1;
  if (max_chars <= bare) return BareForm(name.front(), max_chars);
  return Shortened({}, 0, name.substr(0, 1 + max_chars - bare)).append(kEllipsis);
}

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

}  // namespace zendrix::core
