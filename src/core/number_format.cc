// Numbers by a format: decimals, grouping, forms of negatives, pictures.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <vector>

#include "core/decimal_digits.h"
#include "core/number_rules.h"

namespace zendrix::core {
namespace {

// A longer text would not fit any column; the functions of the platform stop at 99 as well.
constexpr int kMaxDecimals = 99;

// The places (0 is the ones) in front of which the locale puts a separator.
class Grouping {
 public:
  // "3;0": threes without end. "3;2;0": three, then twos. "3": one group of three.
  explicit Grouping(const std::string& list) {
    for (char character : list) {
      if (character >= '0' && character <= '9') sizes_.push_back(character - '0');
    }
    if (sizes_.size() > 1 && sizes_.back() == 0) {
      repeats_ = true;
      sizes_.pop_back();
    }
  }
  static Grouping Threes() { return Grouping("3;0"); }

  bool SeparatesBehind(int place) const {
    int edge = 0;
    for (int size : sizes_) {
      if (size == 0) return false;
      edge += size;
      if (place == edge) return true;
    }
    if (!repeats_ || place <= edge) return false;
    return (place - edge) % sizes_.back() == 0;
  }

 private:
  std::vector<int> sizes_;
  bool repeats_ = false;
};

struct Shape {
  int decimals = 2;           // places always shown
  int optional_decimals = 0;  // further places, shown only up to the last digit that is not zero
  int min_whole = 1;          // digits at least shown in front of the point
  const Grouping* grouping = nullptr;
  bool force_point = false;  // the point is shown even with no decimals behind it
};

void AppendWhole(const DecimalDigits& number, const Shape& shape, const std::string& separator,
                 std::string& out) {
  for (int place = std::max(number.point, shape.min_whole) - 1; place >= 0; --place) {
    out += number.At(place);
    if (place > 0 && shape.grouping != nullptr && shape.grouping->SeparatesBehind(place)) out += separator;
  }
}

void AppendDecimals(const DecimalDigits& number, const Shape& shape, const std::string& point,
                    std::string& out) {
  int shown = shape.decimals;
  const int held = number.count - number.point;
  shown = std::max(shown, std::min(held, shape.decimals + shape.optional_decimals));
  if (shown > 0 || shape.force_point) out += point;
  for (int place = 1; place <= shown; ++place) out += number.At(-place);
}

std::string Unsigned(const DecimalDigits& number, const Shape& shape, const platform::LocaleInfo& locale) {
  std::string text;
  AppendWhole(number, shape, locale.thousands, text);
  AppendDecimals(number, shape, locale.decimal, text);
  return text;
}

std::string WithSign(const std::string& text, int negative_order) {
  switch (negative_order) {
    case 0:
      return "(" + text + ")";
    case 2:
      return "- " + text;
    case 3:
      return text + "-";
    case 4:
      return text + " -";
    default:
      return "-" + text;
  }
}

DecimalDigits Rounded(double value, int decimals) {
  DecimalDigits number = DigitsOf(value, kDoubleDigits);
  number.RoundTo(decimals);
  return number;
}

bool IsPlaceholder(char character) {
  return character == '#' || character == '0' || character == '.' || character == ',';
}

}  // namespace

std::string FormatNumber(double value, int digits, Tristate leading, Tristate parens, Tristate grouping,
                         const platform::LocaleInfo& locale) {
  if (!std::isfinite(value)) return TextOf(value, locale);
  const Grouping groups(locale.grouping);
  Shape shape;
  shape.decimals = digits < 0 ? 2 : std::min(digits, kMaxDecimals);
  // Without a single decimal there would be nothing left of a zero.
  shape.min_whole = leading == Tristate::kFalse && shape.decimals > 0 ? 0 : 1;
  if (grouping != Tristate::kFalse) shape.grouping = &groups;
  const DecimalDigits number = Rounded(value, shape.decimals);
  const std::string text = Unsigned(number, shape, locale);
  if (!number.negative) return text;
  if (parens == Tristate::kDefault) return WithSign(text, locale.negative_order);
  return WithSign(text, parens == Tristate::kTrue ? 0 : 1);
}

std::string Format16(double value, const platform::LocaleInfo& locale) {
  // Most events carry a small whole number or a plain fraction; a whole number below a group needs no digits
  // made.
  constexpr int kDecimals = 16;
  if (value >= 0 && value < 1000 && value == std::floor(value)) {
    char buffer[8];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, static_cast<int>(value)).ptr;
    std::string text(buffer, end);
    if (text.size() == 1 || locale.grouping == "3;0") {
      text += locale.decimal;
      return text.append(kDecimals, '0');
    }
  }
  return FormatNumber(value, kDecimals, Tristate::kTrue, Tristate::kDefault, Tristate::kDefault, locale);
}

std::string FormatPicture(double value, std::string_view picture, const platform::LocaleInfo& locale) {
  if (!std::isfinite(value)) return TextOf(value, locale);
  const auto first = std::find_if(picture.begin(), picture.end(), IsPlaceholder);
  const auto last = std::find_if(picture.rbegin(), picture.rend(), IsPlaceholder).base();
  const std::string before(picture.begin(), first);
  if (first == picture.end()) return before;

  static const Grouping kThrees = Grouping::Threes();
  Shape shape;
  shape.decimals = 0;
  shape.min_whole = 0;
  bool behind_point = false;
  for (char character : std::string_view(first, last)) {
    if (character == '.') behind_point = shape.force_point = true;
    if (character == ',' && !behind_point) shape.grouping = &kThrees;
    if (character == '0') ++(behind_point ? shape.decimals : shape.min_whole);
    if (character == '#' && behind_point) ++shape.optional_decimals;
  }
  const DecimalDigits number =
      Rounded(value, std::min(shape.decimals + shape.optional_decimals, kMaxDecimals));
  const std::string text = before + Unsigned(number, shape, locale) + std::string(last, picture.end());
  return number.negative ? "-" + text : text;
}

}  // namespace zendrix::core
