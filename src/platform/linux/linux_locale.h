// The user's regional settings from the C library: the categories LC_TIME and LC_NUMERIC of the environment,
// read once when the source is made, without touching the process's own locale. The "C" and "POSIX" locales
// (and "C" with a code set, as in "C.UTF-8") are the defaults of LocaleInfo; so is a locale that is not
// installed, which the C library treats as "C".
//
// Names and separators become Windows-1252. A set of names of which one cannot be expressed is replaced as a
// whole by the English names, a separator by the default one; the narrow and thin spaces of some locales
// become the no-break space. A date or time format that cannot be expressed gives way to digits in its own
// order: "yyyy/MM/dd" in Japan.
#pragma once

#include <array>
#include <string>

#include "platform/locale.h"

namespace zendrix::platform {

class LinuxLocale : public LocaleSource {
 public:
  LinuxLocale();
  const LocaleInfo& Current() override { return info_; }

 private:
  LocaleInfo info_;
};

// What the C library says of a locale, in its own terms; text in the locale's code set.
struct CTimeTexts {
  std::string code_set = "UTF-8";
  std::string date, time, time_with_am_pm;  // strftime formats: D_FMT, T_FMT, T_FMT_AMPM
  std::string am, pm;
  std::array<std::string, 7> days, short_days;  // from Sunday
  std::array<std::string, 12> months, short_months;
};

struct CNumberTexts {
  std::string code_set = "UTF-8";
  std::string decimal, thousands;
  std::string grouping;  // sizes as bytes, as in lconv
};

// Put the C library's view into pictures. What is left empty or makes no sense keeps its default.
void TakeTimeTexts(const CTimeTexts& texts, LocaleInfo& info);
void TakeNumberTexts(const CNumberTexts& texts, LocaleInfo& info);

}  // namespace zendrix::platform
