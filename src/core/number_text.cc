// Numbers as plain text, without a format.
#include <cmath>

#include "core/decimal_digits.h"
#include "core/number_rules.h"

namespace zendrix::core {
namespace {

std::string Scientific(const DecimalDigits& number, const std::string& decimal) {
  std::string text(1, number.digits[0]);
  if (number.count > 1) {
    text += decimal;
    text.append(number.digits.data() + 1, static_cast<std::size_t>(number.count - 1));
  }
  const int exponent = number.point - 1;
  text += exponent < 0 ? "E-" : "E+";
  const std::string digits = std::to_string(std::abs(exponent));
  if (digits.size() < 2) text += '0';
  return text + digits;
}

std::string Plain(const DecimalDigits& number, const std::string& decimal) {
  std::string text;
  for (int place = number.point > 0 ? number.point - 1 : 0; place >= 0; --place) text += number.At(place);
  const int last = number.point - number.count;
  if (last < 0) text += decimal;
  for (int place = -1; place >= last; --place) text += number.At(place);
  return text;
}

std::string TextOfDigits(double value, int significant, const platform::LocaleInfo& locale) {
  if (std::isnan(value)) return "-1.#IND";
  if (std::isinf(value)) return value < 0 ? "-1.#INF" : "1.#INF";
  const DecimalDigits number = DigitsOf(value, significant);
  if (number.IsZero()) return "0";
  // Plain as long as neither the places in front of the point nor those behind it exceed the significant
  // digits.
  const bool plain = number.point <= significant && number.count - number.point <= significant;
  const std::string text = plain ? Plain(number, locale.decimal) : Scientific(number, locale.decimal);
  return number.negative ? "-" + text : text;
}

}  // namespace

std::string TextOf(double value, const platform::LocaleInfo& locale) {
  return TextOfDigits(value, kDoubleDigits, locale);
}

std::string TextOf(float value, const platform::LocaleInfo& locale) {
  return TextOfDigits(static_cast<double>(value), kSingleDigits, locale);
}

}  // namespace zendrix::core
