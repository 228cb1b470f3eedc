#include "core/validation.h"

#include <algorithm>

namespace zendrix::core {
namespace {

constexpr std::string_view kForbidden = "()=+[]{}/?>,< *&^%$#!~\"";

bool HasForbidden(std::string_view text) {
  return text.find_first_of(kForbidden) != std::string_view::npos;
}

bool Has(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

}  // namespace

bool IsValidEmail(std::string_view text) {
  if (text.empty()) return true;
  if (HasForbidden(text)) return false;
  if (std::count(text.begin(), text.end(), '@') != 1 || !Has(text, ".")) return false;
  if (Has(text, "..") || Has(text, ".@") || Has(text, "@.")) return false;
  const std::size_t at = text.find('@');
  const std::size_t dot = text.rfind('.');
  const std::size_t last = text.size() - 1;
  return at != last && at != 0 && dot > at && dot != last;
}

bool IsValidServer(std::string_view text) {
  if (text.empty()) return true;
  if (HasForbidden(text)) return false;
  if (std::count(text.begin(), text.end(), '.') < 2 || Has(text, "..")) return false;
  return text.front() != '.' && text.back() != '.';
}

}  // namespace zendrix::core
