#include "core/moments.h"

namespace zendrix::core {
std::string GetLocaleValue(int type, platform::LocaleSource& locale) {
  if (type != kLocaleDateOrder) return {};
  return std::to_string(locale.Current().date_order);
}

std::string OrderedDate(const platform::LocalTime& local, int order) {
  const std::string day = std::to_string(local.day);
  const std::string month = std::to_string(local.month);
  const std::string year = std::to_string(local.year);
  if (order == 2) return year + "/" + month + "/" + day;
  if (order == 1) return day + "/" + month + "/" + year;
  return month + "/" + day + "/" + year;
}

std::string OrderedMoment(const platform::LocalTime& local, int order) {
  return OrderedDate(local, order) + " " + std::to_string(local.hour) + ":" + std::to_string(local.minute) +
         ":" + std::to_string(local.second);
}

std::string UTCToText(std::int32_t seconds, int order, platform::FamilyLibraries& family) {
  return OrderedMoment(family.FromUTC(seconds), order);
}

std::string DateToUTC(Date date, platform::FamilyLibraries& family) {
  return std::to_string(family.ToUTC(LocalTimeOf(date)));
}

Date Now(platform::Clock& clock, platform::FamilyLibraries& family) {
  return DateFrom(family.FromUTC(static_cast<std::int32_t>(clock.NowUtc())));
}

std::string DisplayTime(std::int32_t seconds, int order, platform::FamilyLibraries& family,
                        const platform::LocaleInfo& locale) {
  const std::string text = UTCToText(seconds, order, family);
  // The text always names its year, so the year that would complete it plays no part.
  const std::optional<Date> date = ReadDate(text, locale, 1970);
  // A text that is no date in these settings is its own format.
  return date ? ShortDateLongTime(*date, locale) : text;
}

}  // namespace zendrix::core
