// Any bytes as a date, as a format and as the pictures of the regional settings: a date that is read lies
// within the years, and in settings that show all of it the console's own form of it reads back. The first
// byte picks the settings. Any pictures can be replaced by ones that are read back.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "core/date_rules.h"
#include "core/legible_locale.h"

namespace {

using zendrix::platform::LocaleInfo;

void Require(bool condition) {
  if (!condition) std::abort();
}

LocaleInfo LocaleBy(unsigned char choice) {
  LocaleInfo locale;
  locale.date_order = choice % 3;
  if (locale.date_order == 1) locale.short_date = "dd/MM/yyyy";
  if (locale.date_order == 2) locale.short_date = "yyyy-MM-dd";
  if (choice & 4) {
    locale.date_separator = ".";
    if (locale.date_order == 1) locale.short_date = "d.M.yyyy";
  }
  if (choice & 8) {
    locale.time_separator = ".";
    locale.time = "H.mm.ss";
  }
  return locale;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zendrix::core;
  if (size == 0) return 0;
  LocaleInfo locale = LocaleBy(data[0]);
  const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);

  Date date = 38303.5;
  if (const std::optional<Date> read = ReadDate(text, locale, 2026)) {
    date = *read;
    Require(date > -657435 && date < 2958466);
    const std::optional<Date> again = ReadDate(ShortDateLongTime(date, locale), locale, 2026);
    Require(again == date);
  }
  FormatDate(date, text, locale);
  TextOfDate(date, locale);
  locale.short_date = text;
  locale.time = text;
  locale.am = locale.date_separator = text.substr(0, text.size() / 2);
  ShortDateLongTime(date, locale);
  ReadDate(text, locale, 2026);
  Require(ReadsItsOwnDates(WithReadableDates(locale, 2026), 2026));
  return 0;
}
