#include "support/locales.h"

#include <gtest/gtest.h>

namespace zendrix::test {
namespace {

platform::LocaleInfo UsEnglish() {
  platform::LocaleInfo locale;
  locale.short_date = "M/d/yyyy";
  locale.long_date = "dddd, MMMM d, yyyy";
  locale.time = "h:mm:ss tt";
  return locale;
}

platform::LocaleInfo UkEnglish() {
  platform::LocaleInfo locale;
  locale.short_date = "dd/MM/yyyy";
  locale.long_date = "dd MMMM yyyy";
  locale.time = "HH:mm:ss";
  locale.date_order = 1;
  locale.currency = "\xA3";
  return locale;
}

platform::LocaleInfo German() {
  platform::LocaleInfo locale;
  locale.short_date = "dd.MM.yyyy";
  locale.long_date = "dddd, d. MMMM yyyy";
  locale.time = "HH:mm:ss";
  locale.am.clear();
  locale.pm.clear();
  locale.date_separator = ".";
  locale.decimal = ",";
  locale.thousands = ".";
  locale.currency = "\x80";
  locale.date_order = 1;
  locale.day_names = {"Sonntag", "Montag", "Dienstag", "Mittwoch", "Donnerstag", "Freitag", "Samstag"};
  locale.short_day_names = {"So", "Mo", "Di", "Mi", "Do", "Fr", "Sa"};
  locale.month_names = {"Januar", "Februar", "M\xE4rz",   "April",   "Mai",      "Juni",
                        "Juli",   "August",  "September", "Oktober", "November", "Dezember"};
  locale.short_month_names = {"Jan", "Feb", "Mrz", "Apr", "Mai", "Jun",
                              "Jul", "Aug", "Sep", "Okt", "Nov", "Dez"};
  return locale;
}

// Its letters have no bytes in the code page and are "?" to the program.
platform::LocaleInfo Japanese() {
  platform::LocaleInfo locale;
  locale.short_date = "yyyy/MM/dd";
  locale.long_date = "yyyy'?'M'?'d'?'";
  locale.time = "H:mm:ss";
  locale.am = "??";
  locale.pm = "??";
  locale.date_order = 2;
  locale.currency = "\xA5";
  locale.day_names.fill("???");
  locale.short_day_names.fill("?");
  for (std::size_t i = 0; i < locale.month_names.size(); ++i) {
    locale.short_month_names[i] = std::to_string(i + 1);
    locale.month_names[i] = locale.short_month_names[i] + "?";
  }
  return locale;
}

}  // namespace

platform::LocaleInfo LocaleOf(int lcid) {
  switch (lcid) {
    case kUsEnglish:
      return UsEnglish();
    case kGerman:
      return German();
    case kUkEnglish:
      return UkEnglish();
    case kJapanese:
      return Japanese();
    default:
      ADD_FAILURE() << "no settings for " << lcid;
      return {};
  }
}

}  // namespace zendrix::test
