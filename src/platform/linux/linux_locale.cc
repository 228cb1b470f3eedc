#include "platform/linux/linux_locale.h"

#include <langinfo.h>
#include <locale.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/windows_1252.h"

namespace zendrix::platform {
namespace {

// Text of the locale's code set in Windows-1252, if it can be expressed.
std::optional<std::string> Convert(const std::string& text, const std::string& code_set) {
  const auto plain = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
  if (std::all_of(text.begin(), text.end(), plain)) return text;
  if (code_set == "ISO-8859-1" || code_set == "CP1252") return text;
  if (code_set != "UTF-8") return std::nullopt;
  std::string spaced = text;
  for (const std::string_view narrow : {"\u202F", "\u2009"}) {
    for (std::size_t at; (at = spaced.find(narrow)) != std::string::npos;)
      spaced.replace(at, narrow.size(), "\u00A0");
  }
  return BytesFromUtf8Exactly(spaced);
}

template <std::size_t N>
void TakeNames(const std::array<std::string, N>& names, const std::string& code_set,
               std::array<std::string, N>& to) {
  std::array<std::string, N> converted;
  for (std::size_t i = 0; i < N; ++i) {
    auto name = Convert(names[i], code_set);
    if (!name || name->empty()) return;
    converted[i] = std::move(*name);
  }
  to = std::move(converted);
}

// Writes a strftime format as a picture. "%-d/%m/%Y" becomes "d/MM/yyyy".
class PictureWriter {
 public:
  explicit PictureWriter(const CTimeTexts& texts) : texts_(texts) {}

  std::string Write(std::string_view format) {
    picture_.clear();
    Walk(format, 0);
    while (!picture_.empty() && picture_.back() == ' ') picture_.pop_back();
    picture_.erase(0, std::min(picture_.find_first_not_of(' '), picture_.size()));
    return std::exchange(picture_, {});
  }

 private:
  void Walk(std::string_view format, int depth) {
    // Composite conversions name one another in a damaged locale; real ones are two deep.
    if (depth > 4) return;
    for (std::size_t i = 0; i < format.size(); ++i) {
      if (format[i] != '%') {
        Literal(format[i]);
        continue;
      }
      bool no_padding = false;
      for (++i; i < format.size() && std::strchr("-_0^#EO", format[i]); ++i) {
        no_padding = no_padding || format[i] == '-' || format[i] == '_';
      }
      if (i < format.size()) Conversion(format[i], no_padding, depth);
    }
  }

  void Conversion(char conversion, bool no_padding, int depth) {
    struct Simple {
      char conversion;
      const char* padded;
      const char* bare;
    };
    static constexpr Simple kSimple[] = {{'d', "dd", "d"},    {'e', "d", "d"},       {'m', "MM", "M"},
                                         {'y', "yy", "yy"},   {'Y', "yyyy", "yyyy"}, {'G', "yyyy", "yyyy"},
                                         {'b', "MMM", "MMM"}, {'h', "MMM", "MMM"},   {'B', "MMMM", "MMMM"},
                                         {'a', "ddd", "ddd"}, {'A', "dddd", "dddd"}, {'H', "HH", "H"},
                                         {'k', "H", "H"},     {'I', "hh", "h"},      {'l', "h", "h"},
                                         {'M', "mm", "m"},    {'S', "ss", "s"},      {'p', "tt", "tt"},
                                         {'P', "tt", "tt"},   {'n', " ", " "},       {'t', " ", " "}};
    for (const Simple& simple : kSimple) {
      if (simple.conversion != conversion) continue;
      picture_ += no_padding ? simple.bare : simple.padded;
      return;
    }
    switch (conversion) {
      case 'D':
        return Walk("%m/%d/%y", depth + 1);
      case 'F':
        return Walk("%Y-%m-%d", depth + 1);
      case 'T':
        return Walk("%H:%M:%S", depth + 1);
      case 'R':
        return Walk("%H:%M", depth + 1);
      case 'r':
        return Walk(texts_.time_with_am_pm.empty() ? "%I:%M:%S %p" : std::string_view(texts_.time_with_am_pm),
                    depth + 1);
      case 'x':
        return Walk(texts_.date, depth + 1);
      case 'X':
        return Walk(texts_.time, depth + 1);
      case '%':
        return Literal('%');
      default:
        return;  // week numbers, zones and the like have no place in a picture
    }
  }

  // Letters would be read as parts of the picture; they are quoted.
  void Literal(char c) {
    const bool separator = static_cast<unsigned char>(c) < 0x80 && std::strchr(" ./:,-", c);
    if (separator) {
      picture_ += c;
    } else if (!picture_.empty() && picture_.back() == '\'' && c != '\'') {
      picture_.insert(picture_.size() - 1, 1, c);
    } else if (c != '\'') {
      picture_ += {'\'', c, '\''};
    }
  }

  const CTimeTexts& texts_;
  std::string picture_;
};

// A part of a picture: a run of one letter outside of quotes. The day of the week is no part of a date.
struct PicturePart {
  char letter;
  std::size_t begin, end;
};

std::vector<PicturePart> PicturePartsOf(const std::string& picture) {
  std::vector<PicturePart> parts;
  for (std::size_t i = 0; i < picture.size();) {
    const char c = picture[i];
    const std::size_t begin = i;
    if (c == '\'') {
      i = std::min(picture.find(c, i + 1), picture.size() - 1) + 1;
    } else {
      i = std::min(picture.find_first_not_of(c, i), picture.size());
      const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
      if (letter && !(c == 'd' && i - begin > 2)) parts.push_back({c, begin, i});
    }
  }
  return parts;
}

// The text between the first two parts of a picture, up to the first word.
std::string SeparatorOf(const std::string& picture) {
  const std::vector<PicturePart> parts = PicturePartsOf(picture);
  if (parts.size() < 2) return {};
  const std::string between = picture.substr(parts[0].end, parts[1].begin - parts[0].end);
  return between.substr(0, between.find_first_of("'d"));
}

// 0 month-day-year, 1 day-month-year, 2 year-month-day; nothing when a part is missing.
std::optional<int> OrderOf(const std::string& picture) {
  const std::vector<PicturePart> parts = PicturePartsOf(picture);
  const auto place = [&](char letter) {
    return std::ranges::find(parts, letter, &PicturePart::letter) - parts.begin();
  };
  const auto day = place('d'), month = place('M'), year = place('y');
  if (std::max({day, month, year}) == std::ssize(parts)) return std::nullopt;
  if (year < day && year < month) return 2;
  return day < month ? 1 : 0;
}

// The C library has no long date of its own; this is the short one's order with names.
const char* LongDateOf(int order) {
  constexpr const char* kLongDates[] = {"dddd, MMMM dd, yyyy", "dddd, dd MMMM yyyy", "dddd, yyyy MMMM dd"};
  return kLongDates[order];
}

// Without words for the halves of the day, twelve-hour times would be ambiguous.
std::string WithoutHalves(const std::string& picture) {
  std::string whole;
  bool quoted = false;
  for (const char c : picture) {
    if (c == '\'') quoted = !quoted;
    if (!quoted && c == 't') continue;
    whole += !quoted && c == 'h' ? 'H' : c;
  }
  while (!whole.empty() && whole.back() == ' ') whole.pop_back();
  whole.erase(0, std::min(whole.find_first_not_of(' '), whole.size()));
  return whole;
}

// The picture for a format whose words are not in the code page: its parts as digits, in its order. "%Y" with
// the sign for year, "%m" with that for month and "%d" with that for day become "yyyy/MM/dd". The hours are
// those of the whole day, since the words for its halves are missing too.
std::string DigitsFor(const std::string& picture, std::string_view separators) {
  struct Digits {
    char letter;
    const char* written;
  };
  static constexpr Digits kDigits[] = {{'y', "yyyy"}, {'M', "MM"}, {'d', "dd"}, {'h', "HH"},
                                       {'H', "HH"},   {'m', "mm"}, {'s', "ss"}};
  const std::string between = SeparatorOf(picture);
  const bool own = between.size() == 1 && separators.find(between) != std::string_view::npos;
  const std::string separator = own ? between : std::string(separators.substr(0, 1));
  std::string digits;
  for (const PicturePart& part : PicturePartsOf(picture)) {
    const auto* found = std::ranges::find(kDigits, part.letter, &Digits::letter);
    if (found == std::end(kDigits)) continue;
    if (!digits.empty()) digits += separator;
    digits += found->written;
  }
  return digits;
}

// A format of the locale as a picture; `texts` is what can be expressed of `raw`.
std::string PictureOf(const CTimeTexts& texts, const CTimeTexts& raw, std::string CTimeTexts::*format,
                      std::string_view separators) {
  if (!(texts.*format).empty()) return PictureWriter(texts).Write(texts.*format);
  return DigitsFor(PictureWriter(raw).Write(raw.*format), separators);
}

void TakeDate(const CTimeTexts& texts, const CTimeTexts& raw, LocaleInfo& info) {
  std::string picture = PictureOf(texts, raw, &CTimeTexts::date, "/.-");
  const auto order = OrderOf(picture);
  if (!order) return;
  info.short_date = std::move(picture);
  info.date_order = *order;
  info.long_date = LongDateOf(*order);
  if (std::string separator = SeparatorOf(info.short_date); !separator.empty())
    info.date_separator = separator;
}

void TakeTime(const CTimeTexts& texts, const CTimeTexts& raw, LocaleInfo& info) {
  std::string picture = PictureOf(texts, raw, &CTimeTexts::time, ":.");
  if (info.am.empty() && info.pm.empty() && picture.find('h') != std::string::npos)
    picture = WithoutHalves(picture);
  if (picture.find_first_of("hH") == std::string::npos || picture.find('m') == std::string::npos) return;
  info.time = std::move(picture);
  if (std::string separator = SeparatorOf(info.time); !separator.empty()) info.time_separator = separator;
}

// A locale of the environment for one category; empty when that category is "C", or unavailable.
class Category {
 public:
  Category(int mask, int category) : locale_(newlocale(mask, "", nullptr)) {
    if (!locale_) return;
    const std::string_view name = nl_langinfo_l(_NL_LOCALE_NAME(category), locale_);
    if (name != "C" && name != "POSIX" && !name.starts_with("C.")) return;
    freelocale(locale_);
    locale_ = nullptr;
  }
  Category(const Category&) = delete;
  Category& operator=(const Category&) = delete;
  ~Category() {
    if (locale_) freelocale(locale_);
  }

  explicit operator bool() const { return locale_ != nullptr; }
  std::string Text(nl_item item) const { return nl_langinfo_l(item, locale_); }

 private:
  locale_t locale_;
};

CTimeTexts ReadTimeTexts(const Category& category) {
  CTimeTexts texts;
  texts.code_set = category.Text(_NL_TIME_CODESET);
  texts.date = category.Text(D_FMT);
  texts.time = category.Text(T_FMT);
  texts.time_with_am_pm = category.Text(T_FMT_AMPM);
  texts.am = category.Text(AM_STR);
  texts.pm = category.Text(PM_STR);
  for (int i = 0; i < 7; ++i) {
    texts.days[static_cast<std::size_t>(i)] = category.Text(DAY_1 + i);
    texts.short_days[static_cast<std::size_t>(i)] = category.Text(ABDAY_1 + i);
  }
  for (int i = 0; i < 12; ++i) {
    texts.months[static_cast<std::size_t>(i)] = category.Text(MON_1 + i);
    texts.short_months[static_cast<std::size_t>(i)] = category.Text(ABMON_1 + i);
  }
  return texts;
}

}  // namespace

void TakeTimeTexts(const CTimeTexts& texts, LocaleInfo& info) {
  const auto am = Convert(texts.am, texts.code_set);
  const auto pm = Convert(texts.pm, texts.code_set);
  if (am && pm) {
    info.am = *am;
    info.pm = *pm;
  }
  TakeNames(texts.days, texts.code_set, info.day_names);
  TakeNames(texts.short_days, texts.code_set, info.short_day_names);
  TakeNames(texts.months, texts.code_set, info.month_names);
  TakeNames(texts.short_months, texts.code_set, info.short_month_names);
  CTimeTexts formats;
  formats.date = Convert(texts.date, texts.code_set).value_or("");
  formats.time = Convert(texts.time, texts.code_set).value_or("");
  formats.time_with_am_pm = Convert(texts.time_with_am_pm, texts.code_set).value_or("");
  TakeDate(formats, texts, info);
  TakeTime(formats, texts, info);
}

void TakeNumberTexts(const CNumberTexts& texts, LocaleInfo& info) {
  if (const auto decimal = Convert(texts.decimal, texts.code_set); decimal && !decimal->empty()) {
    info.decimal = *decimal;
  }
  if (const auto thousands = Convert(texts.thousands, texts.code_set)) info.thousands = *thousands;
  // "\3\3" is 3;0 (the last size repeats), "\3\2" is 3;2;0, "\3" and CHAR_MAX is 3 (one group only).
  std::string sizes = texts.grouping;
  const auto last = std::find_if(sizes.begin(), sizes.end(), [](char c) { return c == CHAR_MAX || c < 0; });
  const bool repeats = last == sizes.end();
  sizes.erase(last, sizes.end());
  while (repeats && sizes.size() > 1 && sizes[sizes.size() - 2] == sizes.back()) sizes.pop_back();
  info.grouping.clear();
  for (const char size : sizes) {
    if (!info.grouping.empty()) info.grouping += ';';
    info.grouping += std::to_string(static_cast<int>(size));
  }
  if (repeats && !sizes.empty()) info.grouping += ";0";
}

LinuxLocale::LinuxLocale() {
  if (const Category time(LC_TIME_MASK, LC_TIME); time) TakeTimeTexts(ReadTimeTexts(time), info_);
  if (const Category number(LC_NUMERIC_MASK, LC_NUMERIC); number) {
    CNumberTexts texts;
    texts.code_set = number.Text(_NL_NUMERIC_CODESET);
    texts.decimal = number.Text(RADIXCHAR);
    texts.thousands = number.Text(THOUSEP);
    texts.grouping = number.Text(GROUPING);
    TakeNumberTexts(texts, info_);
  }
}

}  // namespace zendrix::platform
