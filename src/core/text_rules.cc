#include "core/text_rules.h"

#include <algorithm>

namespace zendrix::core {

std::string CleanLine(std::string_view text) {
  std::string clean(text);
  for (char& character : clean) {
    if (static_cast<unsigned char>(character) < 32) character = ' ';
  }
  return clean;
}

std::string_view FileNamePart(std::string_view path) {
  return path.substr(path.rfind('\\') + 1);  // npos + 1 is the beginning
}

std::string_view Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::vector<std::string_view> Split(std::string_view text, std::string_view separator) {
  std::vector<std::string_view> pieces;
  if (text.empty()) return pieces;
  std::size_t from = 0;
  if (!separator.empty()) {
    for (std::size_t hit; (hit = text.find(separator, from)) != std::string_view::npos;
         from = hit + separator.size()) {
      pieces.push_back(text.substr(from, hit - from));
    }
  }
  pieces.push_back(text.substr(from));
  return pieces;
}

std::vector<std::string_view> Lines(std::string_view text) {
  std::vector<std::string_view> lines;
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find('\n', start), text.size());
    lines.push_back(text.substr(start, end - start));
    if (end < text.size() && lines.back().ends_with('\r')) lines.back().remove_suffix(1);
    start = end + 1;
  }
  return lines;
}

std::string Replace(std::string_view text, std::string_view find, std::string_view by) {
  if (find.empty()) return std::string(text);
  std::string result;
  result.reserve(text.size());
  std::size_t from = 0;
  for (std::size_t hit; (hit = text.find(find, from)) != std::string_view::npos; from = hit + find.size()) {
    result += text.substr(from, hit - from);
    result += by;
  }
  return result += text.substr(from);
}

bool Contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

}  // namespace zendrix::core
