#include "core/decimal_digits.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

namespace zendrix::core {

char DecimalDigits::At(int place) const {
  const int index = point - 1 - place;
  return index >= 0 && index < count ? digits[static_cast<std::size_t>(index)] : '0';
}

void DecimalDigits::RoundTo(int decimals) {
  const int kept = point + decimals;
  const bool up = kept >= 0 && kept < count && digits[static_cast<std::size_t>(kept)] >= '5';
  count = std::clamp(kept, 0, count);
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

namespace {

// The exact value of no double has more significant digits.
constexpr int kAllDigits = 767;

// Digits of "d.ddde+xx"; a single significant digit has no point.
DecimalDigits FromScientific(std::string_view text) {
  DecimalDigits result;
  const std::size_t letter = text.find('e');
  for (const char digit : text.substr(0, letter)) {
    if (digit != '.') result.digits[static_cast<std::size_t>(result.count++)] = digit;
  }
  std::string_view power = text.substr(letter + 1);
  if (power.front() == '+') power.remove_prefix(1);
  int exponent = 0;
  std::from_chars(power.data(), power.data() + power.size(), exponent);
  result.point = exponent + 1;
  return result;
}

// Whether these digits are all that a positive value has, and not only enough to tell it from its neighbours.
bool AreAllDigits(int count, double value) {
  std::array<char, kAllDigits + 10> text{};
  std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::scientific, kAllDigits - 1);
  const std::size_t behind = static_cast<std::size_t>(count) + 1;  // one is the point
  return text[std::string_view(text.data(), text.size()).find_first_not_of('0', behind)] == 'e';
}

}  // namespace

DecimalDigits DigitsOf(double value, int significant) {
  if (value == 0) return {};
  const double magnitude = std::fabs(value);
  std::array<char, 40> text{};
  const auto view = [&](const std::to_chars_result& end) {
    return std::string_view(text.data(), static_cast<std::size_t>(end.ptr - text.data()));
  };
  char* const last = text.data() + text.size();
  DecimalDigits result =
      FromScientific(view(std::to_chars(text.data(), last, magnitude, std::chars_format::scientific)));
  // The shortest digits serve where they are few enough (except those of subnormal numbers, whose neighbours
  // are far apart), and where they show a tie, which goes away from zero. Any other number is rounded from
  // its exact value, which the shortest digits may lie to the other side of.
  const bool few = result.count <= significant && std::isnormal(magnitude);
  const bool tie = result.count == significant + 1 &&
                   result.digits[static_cast<std::size_t>(significant)] == '5' &&
                   AreAllDigits(result.count, magnitude);
  if (!few && !tie) {
    result = FromScientific(
        view(std::to_chars(text.data(), last, magnitude, std::chars_format::scientific, significant - 1)));
  }
  result.negative = std::signbit(value);
  result.RoundTo(significant - result.point);
  return result;
}

}  // namespace zendrix::core
