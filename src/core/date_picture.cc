#include "core/date_picture.h"

#include <algorithm>
#include <charconv>

#include "core/letter_case.h"

namespace zendrix::core {
namespace {

constexpr std::string_view kVocabulary = "dMyhHmst";

bool IsPictureLetter(char character) {
  return kVocabulary.find(character) != std::string_view::npos;
}

template <class Names>
const std::string& NameOf(const Names& names, int index) {
  return names[static_cast<std::size_t>(std::clamp(index, 0, static_cast<int>(names.size()) - 1))];
}

void AppendDay(int length, const CalendarMoment& moment, const platform::LocaleInfo& locale,
               std::string& out) {
  if (length >= 3) {
    out += NameOf(length == 3 ? locale.short_day_names : locale.day_names, moment.weekday);
  } else {
    AppendNumber(moment.local.day, length, out);
  }
}

void AppendMonth(int length, const CalendarMoment& moment, const platform::LocaleInfo& locale,
                 std::string& out) {
  if (length >= 3) {
    out += NameOf(length == 3 ? locale.short_month_names : locale.month_names, moment.local.month - 1);
  } else {
    AppendNumber(moment.local.month, length, out);
  }
}

int TwelveHours(int hour) {
  return hour % 12 == 0 ? 12 : hour % 12;
}

bool HasDigit(std::string_view text) {
  return text.find_first_of("0123456789") != std::string_view::npos;
}

bool EndsWithNoCase(std::string_view text, std::string_view end) {
  return text.size() >= end.size() && EqualNoCase(text.substr(text.size() - end.size()), end);
}

}  // namespace

void AppendNumber(int number, int width, std::string& out) {
  if (number >= 0 && number < 100 && width <= 2) {
    // Nearly every part of a moment; one append, since the events of a whole file pass here.
    const char digits[2] = {static_cast<char>('0' + number / 10), static_cast<char>('0' + number % 10)};
    const bool one = number < 10 && width < 2;
    out.append(digits + (one ? 1 : 0), one ? 1 : 2);
    return;
  }
  char buffer[16];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, number).ptr;
  for (auto digits = end - buffer; digits < width; ++digits) out += '0';
  out.append(buffer, end);
}

void AppendPart(char letter, int length, const CalendarMoment& moment, const platform::LocaleInfo& locale,
                std::string& out) {
  const platform::LocalTime& local = moment.local;
  switch (letter) {
    case 'd':
      return AppendDay(length, moment, locale, out);
    case 'M':
      return AppendMonth(length, moment, locale, out);
    case 'y':
      // A full year is not padded: the year 100 is "100".
      return length <= 2 ? AppendNumber(local.year % 100, length, out) : AppendNumber(local.year, 1, out);
    case 'h':
      return AppendNumber(TwelveHours(local.hour), std::min(length, 2), out);
    case 'H':
      return AppendNumber(local.hour, std::min(length, 2), out);
    case 'm':
      return AppendNumber(local.minute, std::min(length, 2), out);
    case 's':
      return AppendNumber(local.second, std::min(length, 2), out);
    case 't': {
      const std::string& marker = local.hour < 12 ? locale.am : locale.pm;
      out.append(marker, 0, length == 1 ? 1 : std::string::npos);
      return;
    }
    default:
      return;
  }
}

DatePicture::DatePicture(std::string_view picture) {
  for (std::size_t i = 0; i < picture.size();) {
    const char letter = picture[i];
    if (letter == '\'') {
      i = AddQuoted(picture, i + 1);
    } else if (IsPictureLetter(letter)) {
      const std::size_t end = std::min(picture.find_first_not_of(letter, i), picture.size());
      pieces_.push_back({letter, static_cast<int>(std::min<std::size_t>(end - i, 8)), {}});
      i = end;
    } else {
      AddText(letter);
      ++i;
    }
  }
}

// Two quotes within a quoted text stand for one.
std::size_t DatePicture::AddQuoted(std::string_view picture, std::size_t from) {
  for (std::size_t i = from; i < picture.size(); ++i) {
    if (picture[i] == '\'') {
      if (i + 1 >= picture.size() || picture[i + 1] != '\'') return i + 1;
      ++i;
    }
    AddText(picture[i]);
  }
  return picture.size();
}

void DatePicture::AddText(char character) {
  if (pieces_.empty() || pieces_.back().letter != '\0') pieces_.push_back({'\0', 0, {}});
  pieces_.back().text += character;
}

void DatePicture::Append(const CalendarMoment& moment, const platform::LocaleInfo& locale,
                         std::string& out) const {
  for (const Piece& piece : pieces_) {
    if (piece.letter == '\0') {
      out += piece.text;
    } else {
      AppendPart(piece.letter, piece.length, moment, locale, out);
    }
  }
}

// Hours, minutes and seconds are the last runs of digits of the text, each apart from the next, so that equal
// texts have equal ones. The hour of twelve also needs its marker: texts that end alike have the same one
// only if neither marker ends with the other.
bool DatePicture::TellsSecond(const platform::LocaleInfo& locale) const {
  bool behind_number = false, minute = false, second = false, hour = false, half_hour = false, marker = false;
  for (const Piece& piece : pieces_) {
    if (piece.letter == '\0') {
      if (HasDigit(piece.text)) return false;
      behind_number = false;
    } else if (piece.letter == 't') {
      const std::size_t length = piece.length == 1 ? 1 : std::string::npos;
      const std::string am = locale.am.substr(0, length), pm = locale.pm.substr(0, length);
      if (HasDigit(am) || HasDigit(pm)) return false;
      marker = marker || (!EndsWithNoCase(am, pm) && !EndsWithNoCase(pm, am));
      behind_number = behind_number && (am.empty() || pm.empty());
    } else {
      if (behind_number || std::string_view("hHms").find(piece.letter) == std::string_view::npos)
        return false;
      behind_number = true;
      minute = minute || piece.letter == 'm';
      second = second || piece.letter == 's';
      hour = hour || piece.letter == 'H';
      half_hour = half_hour || piece.letter == 'h';
    }
  }
  return minute && second && (hour || (half_hour && marker));
}

}  // namespace zendrix::core
