#include "core/decimal_digits.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace zendrix::core {

char DecimalDigits::At(int place) const {
  const int index = point - 1 - place;
  return index >= 0 && index < count ? digits[static_cast<std::size_t>(index)] : '0';
}

void DecimalDigits::RoundTo(int decimals) {
  const int kept = point + decimals;
  if (kept >= count) return;
  const bool up = kept >= 0 && digits[static_cast<std::size_t>(kept)] >= '5';
  count = std::max(kept, 0);
  if (up) {
    while (count > 0 && digits[static_cast<std::size_t>(count - 1)] == '9') --count;
    if (count > 0) {
      ++digits[static_cast<std::size_t>(count - 1)];
    } else {
      digits[0] = '1';
      count = 1;
      ++point;
    }
  }
  while (count > 0 && digits[static_cast<std::size_t>(count - 1)] == '0') --count;
  if (count == 0) negative = false;
}

DecimalDigits DigitsOf(double value, int significant) {
  DecimalDigits result;
  if (value == 0) return result;
  result.negative = std::signbit(value);
  std::array<char, 40> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), std::fabs(value),
                                 std::chars_format::scientific, significant - 1)
                       .ptr;
  // "d.ddde+xx"; a single significant digit has no point.
  const char* next = text.data();
  for (; next != end && *next != 'e'; ++next) {
    if (*next != '.') result.digits[static_cast<std::size_t>(result.count++)] = *next;
  }
  if (next != end) ++next;
  if (next != end && *next == '+') ++next;
  int exponent = 0;
  std::from_chars(next, end, exponent);
  result.point = exponent + 1;
  while (result.count > 0 && result.digits[static_cast<std::size_t>(result.count - 1)] == '0') --result.count;
  return result;
}

}  // namespace zendrix::core
