// Reads a text as a number the strict way: all of it must belong to the number.
#include <cmath>
#include <limits>
#include <optional>

#include "core/characters.h"
#include "core/number_rules.h"
#include "core/number_scan.h"
#include "core/run_time_error.h"

namespace zendrix::core {
namespace {

struct Scanned {
  double value = 0;
  // A number written as "&H1F" or "&O17" is a pattern of bits: a narrow type takes it as its own bits, sign
  // and all.
  std::optional<std::uint64_t> bits;
};

enum class Refusal { kNone, kTypeMismatch, kOverflow };

class Scanner {
 public:
  // The functions that this follows take zero-ended texts, so nothing behind a NUL is read.
  Scanner(std::string_view text, const platform::LocaleInfo& locale)
      : rest_(text.substr(0, text.find('\0'))), locale_(locale) {}

  Refusal Scan(Scanned& number) {
    SkipBlanks();
    if (!rest_.empty() && rest_.front() == '&') return ScanBits(number);
    if (!ScanFront()) return Refusal::kTypeMismatch;
    if (!ScanDigits() || !ScanExponent()) return Refusal::kTypeMismatch;
    if (!ScanBack()) return Refusal::kTypeMismatch;
    const double value = collector_.Value();
    if (std::isinf(value)) return Refusal::kOverflow;
    number.value = negative_ && value != 0 ? -value : value;
    return Refusal::kNone;
  }

 private:
  bool Take(std::string_view token) {
    if (token.empty() || rest_.substr(0, token.size()) != token) return false;
    rest_.remove_prefix(token.size());
    return true;
  }

  void SkipBlanks() {
    while (!rest_.empty() && IsBlank(rest_.front())) rest_.remove_prefix(1);
  }

  // A sign, a currency sign and an opening parenthesis, each at most once, in any order: "-$5", "($5)".
  bool ScanFront() {
    for (;;) {
      SkipBlanks();
      if (rest_.empty()) return false;
      if (TakeSign() || TakeCurrency()) continue;
      if (!open_ && !signed_ && Take("(")) {
        open_ = signed_ = negative_ = true;
        continue;
      }
      return true;
    }
  }

  // The same behind the digits: "5-", "5 $", "(5 )".
  bool ScanBack() {
    for (;;) {
      SkipBlanks();
      if (rest_.empty()) return !open_;
      if (TakeSign() || TakeCurrency()) continue;
      if (!open_ || !Take(")")) return false;
      open_ = false;
    }
  }

  bool TakeSign() {
    if (signed_ || rest_.empty() || (rest_.front() != '-' && rest_.front() != '+')) return false;
    negative_ = rest_.front() == '-';
    rest_.remove_prefix(1);
    return signed_ = true;
  }

  bool TakeCurrency() {
    if (currency_ || !Take(locale_.currency)) return false;
    return currency_ = true;
  }

  // Digit separators may appear anywhere behind the first digit, also behind the point and at the end.
  bool ScanDigits() {
    while (!rest_.empty()) {
      if (IsDigit(rest_.front())) {
        collector_.AddDigit(rest_.front());
        rest_.remove_prefix(1);
      } else if (!collector_.BehindPoint() && Take(locale_.decimal)) {
        collector_.AddPoint();
      } else if (!collector_.HasDigits() || !TakeThousands()) {
        break;
      }
    }
    return collector_.HasDigits();
  }

  // A blank is a digit separator only between digits; elsewhere it is a blank.
  bool TakeThousands() {
    const std::string& separator = locale_.thousands;
    const bool blank = separator.size() == 1 && IsBlank(separator.front());
    if (blank && (rest_.size() < 2 || !IsDigit(rest_[1]))) return false;
    return Take(separator);
  }

  bool ScanExponent() {
    if (rest_.empty() || std::string_view("eEdD").find(rest_.front()) == std::string_view::npos) return true;
    rest_.remove_prefix(1);
    if (Take("-")) {
      collector_.NegateExponent();
    } else {
      Take("+");
    }
    if (rest_.empty() || !IsDigit(rest_.front())) return false;
    for (; !rest_.empty() && IsDigit(rest_.front()); rest_.remove_prefix(1)) {
      collector_.AddExponentDigit(rest_.front());
    }
    return true;
  }

  Refusal ScanBits(Scanned& number) {
    rest_.remove_prefix(1);
    const bool hexadecimal = Take("H") || Take("h");
    if (!hexadecimal && !Take("O") && !Take("o")) return Refusal::kTypeMismatch;
    const unsigned shift = hexadecimal ? 4 : 3;
    std::uint64_t bits = 0;
    bool any = false;
    for (; !rest_.empty(); rest_.remove_prefix(1), any = true) {
      const int digit = DigitOf(rest_.front());
      if (digit < 0 || digit >= (1 << shift)) break;
      if (bits >> (64 - shift) != 0) return Refusal::kOverflow;
      bits = bits << shift | static_cast<std::uint64_t>(digit);
    }
    SkipBlanks();
    if (!any || !rest_.empty()) return Refusal::kTypeMismatch;
    number.bits = bits;
    number.value = static_cast<double>(bits);
    return Refusal::kNone;
  }

  static int DigitOf(char character) {
    if (IsDigit(character)) return character - '0';
    if (character >= 'a' && character <= 'f') return character - 'a' + 10;
    if (character >= 'A' && character <= 'F') return character - 'A' + 10;
    return -1;
  }

  std::string_view rest_;
  const platform::LocaleInfo& locale_;
  DigitCollector collector_;
  bool negative_ = false;
  bool signed_ = false;
  bool open_ = false;
  bool currency_ = false;
};

Scanned ScanOrRaise(std::string_view text, const platform::LocaleInfo& locale) {
  Scanned number;
  switch (Scanner(text, locale).Scan(number)) {
    case Refusal::kNone:
      break;
    case Refusal::kTypeMismatch:
      Raise(kTypeMismatch);
    case Refusal::kOverflow:
      Raise(kOverflow);
  }
  return number;
}

// `Unsigned` is the type of the same width whose bits the integer has.
template <class Unsigned, class Integer>
Integer IntegerOf(const Scanned& number, Integer (*round)(double)) {
  if (!number.bits) return round(number.value);
  if (*number.bits > std::numeric_limits<Unsigned>::max()) Raise(kOverflow);
  return static_cast<Integer>(static_cast<Unsigned>(*number.bits));
}

}  // namespace

bool IsNumeric(std::string_view text, const platform::LocaleInfo& locale) {
  Scanned number;
  return Scanner(text, locale).Scan(number) == Refusal::kNone;
}

double CDbl(std::string_view text, const platform::LocaleInfo& locale) {
  return ScanOrRaise(text, locale).value;
}

float CSng(std::string_view text, const platform::LocaleInfo& locale) {
  const double value = ScanOrRaise(text, locale).value;
  if (std::fabs(value) > static_cast<double>(std::numeric_limits<float>::max())) Raise(kOverflow);
  return static_cast<float>(value);
}

std::int32_t CLng(std::string_view text, const platform::LocaleInfo& locale) {
  return IntegerOf<std::uint32_t>(ScanOrRaise(text, locale), RoundToLong);
}

std::int16_t CInt(std::string_view text, const platform::LocaleInfo& locale) {
  return IntegerOf<std::uint16_t>(ScanOrRaise(text, locale), RoundToInt);
}

std::uint8_t CByte(std::string_view text, const platform::LocaleInfo& locale) {
  return IntegerOf<std::uint8_t>(ScanOrRaise(text, locale), RoundToByte);
}

}  // namespace zendrix::core
