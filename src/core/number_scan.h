// Decimal digits gathered from a text and turned into a double, correctly rounded. Shared by the strict
// reading of a number and by the Val rule, which differ in what they let pass but not in what the digits are
// worth.
#pragma once

#include <cstdint>
#include <string>

namespace zendrix::core {

class DigitCollector {
 public:
  // `digit` is '0' to '9'.
  void AddDigit(char digit);
  void AddPoint() { behind_point_ = true; }
  void AddExponentDigit(char digit);
  void NegateExponent() { exponent_negative_ = true; }

  bool HasDigits() const { return has_digits_; }
  bool BehindPoint() const { return behind_point_; }
  // The value, not negative; infinity when it is beyond the range of a double.
  double Value() const;

 private:
  std::string digits_;      // significant digits, without leading zeros
  std::int64_t scale_ = 0;  // the value is digits_ times ten to the power of scale_ and of the exponent
  std::int64_t exponent_ = 0;
  bool exponent_negative_ = false;
  bool has_digits_ = false;
  bool behind_point_ = false;
};

}  // namespace zendrix::core
