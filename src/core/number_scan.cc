#include "core/number_scan.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace zendrix::core {
namespace {

// Beyond this every exponent means the same: zero or overflow.
constexpr std::int64_t kExponentCap = 1'000'000'000;
// More digits than any double needs to be told from its neighbours; what follows cannot change the result.
constexpr std::size_t kMaxDigits = 800;

}  // namespace

void DigitCollector::AddDigit(char digit) {
  has_digits_ = true;
  if (digits_.empty() && digit == '0') {
    if (behind_point_) --scale_;
    return;
  }
  if (digits_.size() < kMaxDigits) {
    digits_ += digit;
    if (behind_point_) --scale_;
  } else if (!behind_point_) {
    ++scale_;
  }
}

void DigitCollector::AddExponentDigit(char digit) {
  exponent_ = std::min(kExponentCap, exponent_ * 10 + (digit - '0'));
}

double DigitCollector::Value() const {
  if (digits_.empty()) return 0;
  const std::int64_t exponent = scale_ + (exponent_negative_ ? -exponent_ : exponent_);
  std::string text = digits_;
  if (exponent != 0) text += "e" + std::to_string(exponent);
  double value = 0;
  const auto outcome = std::from_chars(text.data(), text.data() + text.size(), value);
  if (outcome.ec != std::errc::result_out_of_range) return value;
  const bool large = exponent + static_cast<std::int64_t>(digits_.size()) > 0;
  return large ? std::numeric_limits<double>::infinity() : 0;
}

}  // namespace zendrix::core
