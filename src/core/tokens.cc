#include "core/tokens.h"

namespace zendrix::core {

int FindToken(std::string_view text, std::string_view name) {
  const std::string key = std::string(name) + "=";
  const std::size_t at = text.find(key);
  if (at == std::string_view::npos) return 0;
  // Only the first occurrence counts: one that is the tail of another token's name hides every later one.
  if (at > 0 && text[at - 1] != ';') return 0;
  return static_cast<int>(at) + 1;
}

std::string TokenValue(std::string_view text, std::string_view name) {
  const int position = FindToken(text, name);
  if (position == 0) return {};
  const std::string_view behind = text.substr(static_cast<std::size_t>(position) - 1 + name.size() + 1);
  return std::string(behind.substr(0, behind.find(';')));
}

}  // namespace zendrix::core
