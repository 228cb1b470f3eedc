// Regional settings in which the console can read its own dates. It writes moments into its log, its settings
// and its event table by the user's pictures and reads them back later, so a picture with words, without
// seconds, with a comma or with a year that comes back in another century would lose it those moments. Such a
// picture gives way to the nearest one that comes back whole; all other settings, and pictures that are no
// obstacle, stay the user's.
#pragma once

#include "platform/clock.h"
#include "platform/locale.h"

namespace zendrix::core {

// Whether moments around the year `year` come back to the second from everything that the console writes of
// them: short date and long time (which is also a field of a comma-separated line and fills a column of 50
// characters), the short date alone, and the text of UTCToText.
bool ReadsItsOwnDates(const platform::LocaleInfo& locale, int year);

// The settings as they are when they read their own dates. Otherwise, of the short date and the long time,
// what is in the way is replaced: a year of two digits by one of four, and where that is not enough the whole
// picture by digits in the locale's own order ("dd.MM.yyyy", "HH:mm:ss"). The result reads its own dates
// whatever the settings hold.
platform::LocaleInfo WithReadableDates(const platform::LocaleInfo& locale, int year);

// Hands out another source's settings with dates that are readable now and in the next years, recomputed only
// when that source's have changed. Source and clock must outlive it.
class LegibleLocale : public platform::LocaleSource {
 public:
  LegibleLocale(platform::LocaleSource& source, platform::Clock& clock);
  const platform::LocaleInfo& Current() override;

 private:
  void Take(const platform::LocaleInfo& settings);

  platform::LocaleSource& source_;
  platform::Clock& clock_;
  platform::LocaleInfo seen_;
  platform::LocaleInfo legible_;
};

}  // namespace zendrix::core
