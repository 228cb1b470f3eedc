// Dates by a format in the language's own vocabulary, which differs from the platform's: "m" is a month or,
// behind an hour, a minute; "/" and ":" are the user's separators; "ddddd" and "ttttt" are the user's own
// pictures.
#include <algorithm>
#include <array>

#include "core/date_calendar.h"
#include "core/date_picture.h"
#include "core/date_rules.h"
#include "core/letter_case.h"

namespace zendrix::core {
namespace {

struct NamedFormat {
  std::string_view name;
  std::string_view format;
};

constexpr std::array kNamedFormats = {
    NamedFormat{"General Date", "c"},        NamedFormat{"Long Date", "dddddd"},
    NamedFormat{"Medium Date", "dd-mmm-yy"}, NamedFormat{"Short Date", "ddddd"},
    NamedFormat{"Long Time", "ttttt"},       NamedFormat{"Medium Time", "hh:nn AM/PM"},
    NamedFormat{"Short Time", "hh:nn"},
};

// The forms of the half of the day: as written, or the user's own markers.
struct HalfDay {
  std::string_view token;
  std::string_view am, pm;
};
constexpr std::array kHalfDays = {HalfDay{"AM/PM", "AM", "PM"}, HalfDay{"am/pm", "am", "pm"},
                                  HalfDay{"A/P", "A", "P"}, HalfDay{"a/p", "a", "p"}};
constexpr std::string_view kUsersHalfDay = "AMPM";

bool StartsWithNoCase(std::string_view text, std::string_view start) {
  return text.size() >= start.size() && EqualNoCase(text.substr(0, start.size()), start);
}

std::size_t HalfDayLength(std::string_view format) {
  for (const HalfDay& half : kHalfDays) {
    if (StartsWithNoCase(format, half.token)) return half.token.size();
  }
  return StartsWithNoCase(format, kUsersHalfDay) ? kUsersHalfDay.size() : 0;
}

// Length of the piece that stands for itself: "\x" or "text in quotes"; 0 when there is none.
std::size_t QuotedLength(std::string_view format) {
  if (format.front() == '\\') return std::min<std::size_t>(2, format.size());
  if (format.front() != '"') return 0;
  const std::size_t end = format.find('"', 1);
  return end == std::string_view::npos ? format.size() : end + 1;
}

class Formatter {
 public:
  Formatter(Date date, const platform::LocaleInfo& locale)
      : date_(date), moment_(MomentOf(date)), locale_(locale) {}

  std::string Format(std::string_view format) {
    twelve_hours_ = HasHalfDay(format);
    while (!format.empty()) format.remove_prefix(AppendToken(format));
    return std::move(out_);
  }

 private:
  static bool HasHalfDay(std::string_view format) {
    while (!format.empty()) {
      const std::size_t quoted = QuotedLength(format);
      if (quoted == 0 && HalfDayLength(format) > 0) return true;
      format.remove_prefix(std::max<std::size_t>(quoted, 1));
    }
    return false;
  }

  // Appends what the first token stands for; its length.
  std::size_t AppendToken(std::string_view format) {
    if (const std::size_t quoted = QuotedLength(format); quoted > 0) {
      out_ += format.front() == '\\' ? format.substr(1, quoted - 1) : Unquoted(format.substr(1, quoted - 1));
      return quoted;
    }
    if (const std::size_t half = HalfDayLength(format); half > 0) {
      AppendHalfDay(format.substr(0, half));
      return half;
    }
    const char letter = LowerByte(format.front());
    std::size_t length = 1;
    while (length < format.size() && LowerByte(format[length]) == letter) ++length;
    return AppendRun(format.front(), letter, length);
  }

  static std::string_view Unquoted(std::string_view text) {
    return !text.empty() && text.back() == '"' ? text.substr(0, text.size() - 1) : text;
  }

  void AppendHalfDay(std::string_view token) {
    const bool morning = moment_.local.hour < 12;
    for (const HalfDay& half : kHalfDays) {
      if (token == half.token) {
        out_ += morning ? half.am : half.pm;
        return;
      }
    }
    if (token.size() != kUsersHalfDay.size()) {
      // "Am/Pm" and the like: the capital letter decides.
      const bool capital = token.front() == 'A';
      out_ += capital ? (morning ? "AM" : "PM") : (morning ? "am" : "pm");
      if (token.size() == 3) out_.pop_back();
      return;
    }
    out_ += morning ? locale_.am : locale_.pm;
  }

  // A run of one letter; more letters than the longest form has begin the next run.
  std::size_t AppendRun(char original, char letter, std::size_t length) {
    const auto at_most = [&](std::size_t limit) { return std::min(length, limit); };
    const bool behind_hour = behind_hour_;
    if (letter != ':') behind_hour_ = behind_hour_ && (letter < 'a' || letter > 'z');
    switch (letter) {
      case 'c':
        out_ += TextOfDate(date_, locale_);
        return 1;
      case 'd':
        return AppendDay(at_most(6));
      case 'w':
        return AppendWeek(at_most(2));
      case 'm':
        if (behind_hour && length <= 2) return AppendAs('m', length);
        return AppendAs('M', at_most(4));
      case 'q':
        AppendNumber((moment_.local.month + 2) / 3, 1, out_);
        return 1;
      case 'y':
        return AppendYear(at_most(4));
      case 'h':
        behind_hour_ = true;
        return AppendAs(twelve_hours_ ? 'h' : 'H', at_most(2));
      case 'n':
        return AppendAs('m', at_most(2));
      case 's':
        return AppendAs('s', at_most(2));
      case 't':
        if (length < 5) break;
        DatePicture(locale_.time).Append(moment_, locale_, out_);
        return 5;
      case ':':
        out_ += locale_.time_separator;
        return 1;
      case '/':
        out_ += locale_.date_separator;
        return 1;
      default:
        break;
    }
    out_ += original;
    return 1;
  }

  std::size_t AppendAs(char letter, std::size_t length) {
    AppendPart(letter, static_cast<int>(length), moment_, locale_, out_);
    return length;
  }

  std::size_t AppendDay(std::size_t length) {
    if (length <= 4) return AppendAs('d', length);
    DatePicture(length == 5 ? locale_.short_date : locale_.long_date).Append(moment_, locale_, out_);
    return length;
  }

  // The week that holds January 1 is the first; weeks begin on Sunday.
  std::size_t AppendWeek(std::size_t length) {
    const int first_weekday = ((moment_.weekday - moment_.day_of_year + 1) % 7 + 7) % 7;
    AppendNumber(length == 1 ? moment_.weekday + 1 : (moment_.day_of_year - 1 + first_weekday) / 7 + 1, 1,
                 out_);
    return length;
  }

  std::size_t AppendYear(std::size_t length) {
    if (length == 1) {
      AppendNumber(moment_.day_of_year, 1, out_);
      return 1;
    }
    // "yyy" is the short year and the day of the year.
    return AppendAs('y', length == 3 ? 2 : length);
  }

  Date date_;
  CalendarMoment moment_;
  const platform::LocaleInfo& locale_;
  std::string out_;
  bool twelve_hours_ = false;
  bool behind_hour_ = false;
};

}  // namespace

std::string FormatDate(Date date, std::string_view format, const platform::LocaleInfo& locale) {
  for (const NamedFormat& named : kNamedFormats) {
    if (EqualNoCase(format, named.name)) return Formatter(date, locale).Format(named.format);
  }
  return Formatter(date, locale).Format(format.empty() ? "c" : format);
}

std::string ShortDateLongTime(Date date, const platform::LocaleInfo& locale) {
  const CalendarMoment moment = MomentOf(date);
  std::string text;
  DatePicture(locale.short_date).Append(moment, locale, text);
  text += ' ';
  DatePicture(locale.time).Append(moment, locale, text);
  return text;
}

std::string TextOfDate(Date date, const platform::LocaleInfo& locale) {
  const CalendarMoment moment = MomentOf(date);
  const platform::LocalTime& local = moment.local;
  const bool day_zero = DayNumber(local.year, local.month, local.day) == 0;
  const bool midnight = local.hour == 0 && local.minute == 0 && local.second == 0;
  std::string text;
  if (!day_zero) DatePicture(locale.short_date).Append(moment, locale, text);
  if (!day_zero && !midnight) text += ' ';
  if (day_zero || !midnight) DatePicture(locale.time).Append(moment, locale, text);
  return text;
}

}  // namespace zendrix::core
