// The decimal digits of a binary number, as all texts of numbers are made from them: 15 significant digits of
// a double, 7 of a single, and only then rounded to the decimals that are shown, halves away from zero.
// Rounding the digits and not the binary value is what makes 1.545 show as 1.55.
#pragma once

#include <array>
#include <cstddef>

namespace zendrix::core {

inline constexpr int kDoubleDigits = 15;
inline constexpr int kSingleDigits = 7;

struct DecimalDigits {
  bool negative = false;
  // The first `count` elements are '0' to '9', without leading and trailing zeros; zero has no digits at all.
  std::array<char, 20> digits{};
  int count = 0;
  // The value is 0.d1d2d3... times ten to the power of `point`.
  int point = 0;

  bool IsZero() const { return count == 0; }
  // Digit at a decimal place: 0 is the ones, 1 the tens, -1 the tenths. '0' outside the digits held.
  char At(int place) const;
  // Rounds to `decimals` places behind the point. A result of zero is not negative.
  void RoundTo(int decimals);
};

// `value` must be finite.
DecimalDigits DigitsOf(double value, int significant);

}  // namespace zendrix::core
