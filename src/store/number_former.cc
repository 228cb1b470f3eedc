#include "store/number_former.h"

#include <algorithm>
#include <string>

#include "core/characters.h"
#include "core/number_rules.h"

namespace zendrix::store {
namespace {

constexpr std::size_t kFieldSize = 50;   // the field is cut to this before it is read
constexpr std::size_t kColumnSize = 50;  // and the result to this
constexpr std::size_t kDecimals = 16;
// A double keeps any decimal of so many digits, so that reading and writing it gives the same digits back.
constexpr std::size_t kExactDigits = 15;

}  // namespace

NumberFormer::NumberFormer(const platform::LocaleInfo& locale, TextPool& texts)
    : locale_(locale),
      texts_(texts),
      plain_locale_(locale.decimal.size() == 1 && locale.thousands.size() == 1 && locale.grouping == "3;0" &&
                    locale.negative_order == 1) {}

TextId NumberFormer::FormAny(std::string_view field) {
  const std::string_view cut = field.substr(0, kFieldSize);
  if (plain_locale_) {
    char formed[64];
    const std::size_t size = FormPlain(cut, formed);
    if (size > 0) return texts_.Intern(std::string_view(formed, size));
  }
  return FormByRule(cut);
}

// "-1234.5" -> "-1,234.5000000000000000". 0 when the field is not of that plain kind.
std::size_t NumberFormer::FormPlain(std::string_view field, char* out) const {
  const char* p = field.data();
  const char* const end = p + field.size();
  const bool negative = p < end && *p == '-';
  if (negative) ++p;
  const char* whole = p;
  while (p < end && core::IsDigit(*p)) ++p;
  const char* const whole_end = p;
  if (whole == whole_end) return 0;
  const char* fraction = p;
  if (p < end && *p == '.') {
    fraction = ++p;
    while (p < end && core::IsDigit(*p)) ++p;
  }
  if (p != end) return 0;
  while (whole_end - whole > 1 && *whole == '0') ++whole;
  const auto digits = static_cast<std::size_t>((whole_end - whole) + (p - fraction));
  if (digits > kExactDigits) return 0;
  if (negative && *whole == '0' && std::all_of(fraction, end, [](char c) { return c == '0'; })) return 0;

  char* o = out;
  if (negative) *o++ = '-';
  for (const char* w = whole; w < whole_end; ++w) {
    *o++ = *w;
    if (w + 1 < whole_end && (whole_end - w - 1) % 3 == 0) *o++ = locale_.thousands[0];
  }
  *o++ = locale_.decimal[0];
  char* const decimals_end = o + kDecimals;
  o = std::copy(fraction, end, o);
  std::fill(o, decimals_end, '0');
  return static_cast<std::size_t>(decimals_end - out);
}

TextId NumberFormer::FormByRule(std::string_view field) {
  const TextId known = ruled_.Intern(field);
  if (known >= ruled_ids_.size()) ruled_ids_.resize(known + 1, kNoText);
  TextId& id = ruled_ids_[known];
  if (id == kNoText) {
    const std::string formed = core::Format16(core::Val(field), locale_);
    id = texts_.Intern(std::string_view(formed).substr(0, kColumnSize));
  }
  return id;
}

}  // namespace zendrix::store
