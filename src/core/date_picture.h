// Pictures of dates and times in the platform's vocabulary (d, dd, ddd, dddd, M ... yyyy, h, hh, H, HH, m,
// mm, s, ss, t, tt, text in quotes), as the regional settings hold them: taken apart once, filled in often.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/family_libraries.h"
#include "platform/locale.h"

namespace zendrix::core {

// A moment with the facts that a picture can ask for.
struct CalendarMoment {
  platform::LocalTime local;
  int weekday = 0;      // 0 is Sunday
  int day_of_year = 1;  // 1 is January 1
};

class DatePicture {
 public:
  explicit DatePicture(std::string_view picture);

  void Append(const CalendarMoment& moment, const platform::LocaleInfo& locale, std::string& out) const;

  // Whether the texts of two different seconds of the day can never be equal, whatever their case and
  // whatever stands in front of them, a blank last. False where that is not plain to see.
  bool TellsSecond(const platform::LocaleInfo& locale) const;

 private:
  struct Piece {
    char letter;  // of the vocabulary, or '\0' for plain text
    int length;
    std::string text;
  };
  std::size_t AddQuoted(std::string_view picture, std::size_t from);
  void AddText(char character);

  std::vector<Piece> pieces_;
};

// Number padded with zeros to at least `width` digits.
void AppendNumber(int number, int width, std::string& out);
// One run of the same letter of the vocabulary: ('M', 3) is the short name of the month.
void AppendPart(char letter, int length, const CalendarMoment& moment, const platform::LocaleInfo& locale,
                std::string& out);

}  // namespace zendrix::core
