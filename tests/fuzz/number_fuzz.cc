// Any bytes as a number: nothing but a value or one of the two run-time errors may come of them, and what the
// number test says is what the conversion does. The first byte picks the regional settings.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "core/number_rules.h"
#include "core/run_time_error.h"

namespace {

using zendrix::platform::LocaleInfo;

void Require(bool condition) {
  if (!condition) std::abort();
}

LocaleInfo LocaleBy(unsigned char choice) {
  LocaleInfo locale;
  if (choice & 1) {
    locale.decimal = ",";
    locale.thousands = choice & 2 ? " " : ".";
    locale.currency = "\x80";
  }
  locale.negative_order = choice >> 2 & 7;
  locale.grouping = choice & 32 ? "3;2;0" : choice & 64 ? "" : "3;0";
  return locale;
}

template <class Convert>
bool Converts(Convert convert) {
  try {
    convert();
    return true;
  } catch (const zendrix::core::RunTimeError& error) {
    Require(error.number == zendrix::core::kTypeMismatch || error.number == zendrix::core::kOverflow);
    return false;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zendrix::core;
  if (size == 0) return 0;
  const LocaleInfo locale = LocaleBy(data[0]);
  const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);

  const double value = Val(text);
  Require(std::isfinite(value));
  const std::string stored = Format16(value, locale);
  Require(stored.size() > locale.decimal.size() + 16);

  double number = 0;
  const bool converts = Converts([&] { number = CDbl(text, locale); });
  Require(converts == IsNumeric(text, locale));
  if (converts) {
    Require(std::isfinite(number));
    TextOf(number, locale);
    FormatNumber(number, data[0] % 20, Tristate::kFalse, Tristate::kTrue, Tristate::kTrue, locale);
  }
  Converts([&] { CSng(text, locale); });
  Converts([&] { CLng(text, locale); });
  Converts([&] { CInt(text, locale); });
  Converts([&] { CByte(text, locale); });
  FormatPicture(value, text, locale);
  return 0;
}
