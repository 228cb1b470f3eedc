// Reads a text that is one whole number and nothing else.
#pragma once

#include <charconv>
#include <string_view>
#include <system_error>

namespace zendrix::family {

// False when the text is no number of this base or does not fit.
template <class Number>
bool ReadNumber(std::string_view text, Number& number, int base = 10) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
  return error == std::errc() && end == text.data() + text.size();
}

}  // namespace zendrix::family
