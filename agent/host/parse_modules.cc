#include "agent/host/parse_modules.h"

#include "agent/host/text.h"

namespace zendrix::agent {

std::set<std::string> ParseModules(std::string_view text) {
  std::set<std::string> names;
  const std::size_t end = text.rfind('\n');
  if (end == std::string_view::npos) return names;
  for (const std::string_view line : SplitLines(text.substr(0, end))) {
    const auto words = SplitWords(line);
    if (!words.empty()) names.emplace(words.front());
  }
  return names;
}

}  // namespace zendrix::agent
