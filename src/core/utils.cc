#include "core/utils.h"

#include <algorithm>

#include "core/number_rules.h"
#include "core/run_time_error.h"

namespace zendrix::core {
namespace {

constexpr int kLocaleDateOrder = 33;

// What stands behind the first `key` in the line; empty when the key is not in it.
std::string Behind(std::string_view line, std::string_view key) {
  const std::size_t at = line.find(key);
  return at == std::string_view::npos ? std::string() : std::string(line.substr(at + key.size()));
}

}  // namespace

std::string CleanLine(std::string_view text) {
  std::string clean(text);
  for (char& character : clean) {
    if (static_cast<unsigned char>(character) < 32) character = ' ';
  }
  return clean;
}

std::string GetLocaleValue(int type, platform::LocaleSource& locale) {
  if (type != kLocaleDateOrder) return {};
  return std::to_string(locale.Current().date_order);
}

std::string UTCToText(std::int32_t seconds, int order, platform::FamilyLibraries& family) {
  const platform::LocalTime local = family.FromUTC(seconds);
  const std::string day = std::to_string(local.day);
  const std::string month = std::to_string(local.month);
  const std::string year = std::to_string(local.year);
  std::string text;
  if (order == 2) {
    text = year + "/" + month + "/" + day;
  } else if (order == 1) {
    text = day + "/" + month + "/" + year;
  } else {
    text = month + "/" + day + "/" + year;
  }
  return text + " " + std::to_string(local.hour) + ":" + std::to_string(local.minute) + ":" +
         std::to_string(local.second);
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

std::string_view FileNamePart(std::string_view path) {
  return path.substr(path.rfind('\\') + 1);  // npos + 1 is the beginning
}

int CountOf(std::string_view text, std::string_view part) {
  if (part.empty()) return 0;
  int count = 0;
  for (std::size_t at = text.find(part); at != std::string_view::npos;
       at = text.find(part, at + part.size())) {
    ++count;
  }
  return count;
}

std::string FormatVersion(int major, int minor, int revision) {
  const std::string version = std::to_string(major) + "." + std::to_string(minor);
  return revision < 0 ? version : version + ".0." + std::to_string(revision);
}

int ColumnCodeOfHeader(std::string_view header) {
  if (header == "Date/Time") return 1;
  if (header == "Hostname") return 2;
  if (header == "Monitor") return 3;
  if (header == "Change") return 4;
  if (header == "Description") return 8;
  return 999;
}

std::string FitTextToWidth(std::string_view text, int limit, const MeasureText& twips,
                           const MeasureText& pixels, int twips_per_pixel) {
  if (twips(text) < limit || text.size() < 5) return std::string(text);
  if (text.find('\\') != std::string_view::npos) {
    return CompactPath(text, RoundToLong((limit - 100.0) / twips_per_pixel), pixels);
  }
  const std::size_t half = text.size() / 2;
  std::string_view left = text.substr(0, half - 2);
  std::string_view right = text.substr(std::min(half + 2, text.size()));
  const auto shortened = [&] { return std::string(left) + "..." + std::string(right); };
  while (twips(shortened()) >= limit - 57) {
    if (left.size() < 3) break;
    left.remove_suffix(1);
    if (right.size() < 4) break;
    right.remove_prefix(1);
  }
  return shortened();
}

bool DescLookup(const DescArray& lines, std::string_view key, std::string& text) {
  const auto found = std::find_if(lines.begin(), lines.end(), [&](const std::string& line) {
    return line.find(key) != std::string::npos;
  });
  if (found == lines.end()) return false;
  text = Behind(*found, key);
  return true;
}

std::string DescAt(const DescArray& lines, std::size_t n) {
  if (lines.empty()) return kDescriptionNotAvailable;
  if (n >= lines.size()) Raise(kSubscriptOutOfRange);
  return Behind(lines[n], std::to_string(static_cast<long>(n) - 1) + ",");
}

}  // namespace zendrix::core
