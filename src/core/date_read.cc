// What can be read as a date: numbers and names of months for the day, numbers joined by time separators or
// followed by a half of the day for the time, the time in front or behind. Names of days are not read.
#include <algorithm>
#include <array>

#include "core/characters.h"
#include "core/date_calendar.h"
#include "core/date_rules.h"
#include "core/letter_case.h"
#include "core/text_rules.h"

namespace zendrix::core {
namespace {

enum class Kind { kNumber, kMonth, kAm, kPm, kDateSeparator, kTimeSeparator, kDot, kComma };

struct Token {
  Kind kind = Kind::kComma;
  int value = 0;        // of a number; of a month 1 to 12
  bool is_dot = false;  // a date separator written "."
};

// No date has more pieces than this, so a longer text is none.
class Tokens {
 public:
  bool Add(const Token& token) {
    if (count_ == tokens_.size()) return false;
    tokens_[count_++] = token;
    return true;
  }
  std::size_t size() const { return count_; }
  const Token* At(std::size_t index) const { return index < count_ ? &tokens_[index] : nullptr; }
  bool Is(std::size_t index, Kind kind) const { return index < count_ && tokens_[index].kind == kind; }

 private:
  std::array<Token, 24> tokens_{};
  std::size_t count_ = 0;
};

bool IsLetter(char character) {
  return UpperByte(character) != LowerByte(character);
}

class Lexer {
 public:
  Lexer(std::string_view text, const platform::LocaleInfo& locale)
      : rest_(text.substr(0, text.find('\0'))), locale_(locale) {}

  bool Run(Tokens& tokens) {
    for (;;) {
      while (!rest_.empty() && IsBlank(rest_.front())) rest_.remove_prefix(1);
      if (rest_.empty()) return true;
      Token token;
      if (!TakeName(token) && !TakeNumber(token) && !TakeSeparator(token)) return false;
      if (!tokens.Add(token)) return false;
    }
  }

 private:
  // The longest name that stands here, if it is not the beginning of a longer word.
  bool TakeName(Token& token) {
    std::size_t longest = 0;
    const auto offer = [&](std::string_view name, Kind kind, int value) {
      if (name.size() <= longest || name.size() > rest_.size()) return;
      if (IsDigit(name.front())) return;  // some languages number their months; a number is read as a number
      if (!EqualNoCase(rest_.substr(0, name.size()), name)) return;
      const bool goes_on =
          name.size() < rest_.size() && IsLetter(name.back()) && IsLetter(rest_[name.size()]);
      if (goes_on) return;
      longest = name.size();
      token = {kind, value, false};
    };
    for (std::size_t i = 0; i < locale_.month_names.size(); ++i) {
      offer(locale_.month_names[i], Kind::kMonth, static_cast<int>(i) + 1);
      offer(locale_.short_month_names[i], Kind::kMonth, static_cast<int>(i) + 1);
    }
    offer(locale_.am, Kind::kAm, 0);
    offer(locale_.pm, Kind::kPm, 0);
    for (std::string_view am : {"am", "a"}) offer(am, Kind::kAm, 0);
    for (std::string_view pm : {"pm", "p"}) offer(pm, Kind::kPm, 0);
    rest_.remove_prefix(longest);
    return longest > 0;
  }

  bool TakeNumber(Token& token) {
    if (!IsDigit(rest_.front())) return false;
    constexpr int kTooLarge = 100000;
    token.kind = Kind::kNumber;
    for (; !rest_.empty() && IsDigit(rest_.front()); rest_.remove_prefix(1)) {
      token.value = std::min(kTooLarge, token.value * 10 + (rest_.front() - '0'));
    }
    return true;
  }

  // ":" parts times and "/" and "-" part dates everywhere; "." parts times unless the user's dates are
  // written with it. Where both are, it parts the date first and then the time.
  bool TakeSeparator(Token& token) {
    const bool dot_dates = Contains(locale_.date_separator, ".");
    const char first = rest_.front();
    token.is_dot = first == '.';
    if (first == '.' && dot_dates && locale_.time_separator == ".") {
      token.kind = Kind::kDot;
    } else if (first == '/' || first == '-' || (first == '.' && dot_dates)) {
      token.kind = Kind::kDateSeparator;
    } else if (first == ':' || first == '.') {
      token.kind = Kind::kTimeSeparator;
    } else if (TakeText(locale_.date_separator)) {
      token.kind = Kind::kDateSeparator;
      return true;
    } else if (TakeText(locale_.time_separator)) {
      token.kind = Kind::kTimeSeparator;
      return true;
    } else if (first == ',') {
      token.kind = Kind::kComma;
    } else {
      return false;
    }
    rest_.remove_prefix(1);
    return true;
  }

  bool TakeText(std::string_view text) {
    if (text.empty() || rest_.substr(0, text.size()) != text) return false;
    rest_.remove_prefix(text.size());
    return true;
  }

  std::string_view rest_;
  const platform::LocaleInfo& locale_;
};

struct Pieces {
  std::array<int, 3> numbers{};  // of the date, the month's name left out
  int count = 0;
  int month = 0;     // by name; 0 when there is none
  int month_at = 0;  // numbers in front of the name
  bool has_time = false;
  std::array<int, 3> time{};
};

class Parser {
 public:
  explicit Parser(const Tokens& tokens) : tokens_(tokens) {}

  bool Run(Pieces& pieces) {
    while (at_ < tokens_.size()) {
      if (!Step(pieces)) return false;
    }
    return !expects_item_;
  }

 private:
  bool Step(Pieces& pieces) {
    switch (tokens_.At(at_)->kind) {
      case Kind::kNumber:
        return BeginsTime(pieces) ? AddTime(pieces) : AddNumber(pieces);
      case Kind::kMonth:
        return AddMonth(pieces);
      case Kind::kDateSeparator:
      case Kind::kDot:
        return PassDateSeparator(pieces);
      case Kind::kComma:
        if (at_ == 0 || expects_item_) return false;
        ++at_;
        return expects_item_ = true;
      default:
        return false;
    }
  }

  bool PartsTime(std::size_t index, const Pieces& pieces) const {
    if (tokens_.Is(index, Kind::kTimeSeparator)) return true;
    return tokens_.Is(index, Kind::kDot) && DateIsWhole(pieces);
  }

  static bool DateIsWhole(const Pieces& pieces) { return pieces.count + (pieces.month > 0 ? 1 : 0) >= 3; }

  bool IsMarker(std::size_t index) const {
    return tokens_.Is(index, Kind::kAm) || tokens_.Is(index, Kind::kPm);
  }

  // A number in the middle of a date is part of the date, whatever follows.
  bool BeginsTime(const Pieces& pieces) const {
    return !behind_separator_ && (PartsTime(at_ + 1, pieces) || IsMarker(at_ + 1));
  }

  bool AddTime(Pieces& pieces) {
    if (pieces.has_time) return false;
    pieces.has_time = true;
    date_closed_ = HasDate(pieces);
    pieces.time[0] = tokens_.At(at_++)->value;
    for (std::size_t part = 1; PartsTime(at_, pieces); ++part) {
      if (part == pieces.time.size() || !tokens_.Is(at_ + 1, Kind::kNumber)) return false;
      pieces.time[part] = tokens_.At(at_ + 1)->value;
      at_ += 2;
    }
    if (IsMarker(at_)) ApplyMarker(tokens_.At(at_++)->kind, pieces.time[0]);
    expects_item_ = behind_date_item_ = false;
    return pieces.time[0] < 24 && pieces.time[1] < 60 && pieces.time[2] < 60;
  }

  static void ApplyMarker(Kind marker, int& hour) {
    if (marker == Kind::kPm && hour < 12) hour += 12;
    if (marker == Kind::kAm && hour == 12) hour = 0;
  }

  static bool HasDate(const Pieces& pieces) { return pieces.count > 0 || pieces.month > 0; }

  bool AddNumber(Pieces& pieces) {
    if (date_closed_ || pieces.count == 3) return false;
    pieces.numbers[static_cast<std::size_t>(pieces.count++)] = tokens_.At(at_++)->value;
    return EndDateItem();
  }

  bool AddMonth(Pieces& pieces) {
    if (date_closed_ || pieces.month > 0) return false;
    pieces.month = tokens_.At(at_++)->value;
    pieces.month_at = pieces.count;
    return EndDateItem();
  }

  bool EndDateItem() {
    expects_item_ = behind_separator_ = false;
    return behind_date_item_ = true;
  }

  // Between two pieces of a date. A "." may also end the date: "2009. 02. 13. 23:31:30".
  bool PassDateSeparator(const Pieces& pieces) {
    if (!behind_date_item_ || expects_item_) return false;
    const bool is_dot = tokens_.At(at_)->is_dot;
    ++at_;
    const bool time_follows =
        tokens_.Is(at_, Kind::kNumber) && (PartsTime(at_ + 1, pieces) || IsMarker(at_ + 1));
    if (is_dot && (at_ == tokens_.size() || time_follows)) {
      behind_date_item_ = false;
      return true;
    }
    return expects_item_ = behind_separator_ = true;
  }

  const Tokens& tokens_;
  std::size_t at_ = 0;
  bool expects_item_ = false;      // behind a separator or comma
  bool behind_separator_ = false;  // behind a date separator
  bool behind_date_item_ = false;
  bool date_closed_ = false;  // a time has followed the date
};

// Two digits mean the hundred years from 1930.
int FullYear(int year) {
  if (year < 30) return year + 2000;
  return year < 100 ? year + 1900 : year;
}

using Day = std::optional<int>;

Day Try(int year, int month, int day) {
  return DayNumber(FullYear(year), month, day);
}

Day FirstOf(std::initializer_list<Day> readings) {
  for (const Day& reading : readings) {
    if (reading) return reading;
  }
  return std::nullopt;
}

// The user's order, then others that name a day of the calendar. Behind a year in front stands the month, or
// the day where the middle number cannot be a month: "2000/31/12".
Day ThreeNumbers(const std::array<int, 3>& n, int order) {
  const Day month_first = Try(n[2], n[0], n[1]);
  const Day day_first = Try(n[2], n[1], n[0]);
  const Day year_first = Try(n[0], n[1], n[2]);
  const Day year_then_day = Try(n[0], n[2], n[1]);
  if (order == 1) return FirstOf({day_first, year_first, year_then_day, month_first});
  if (order == 2) return FirstOf({year_first, month_first, year_then_day, day_first});
  return FirstOf({month_first, year_first, year_then_day, day_first});
}

// A day and a month of this year; where there is no such day, a month and a year.
Day TwoNumbers(int first, int second, int order, int current_year) {
  const Day month_first = DayNumber(current_year, first, second);
  const Day day_first = DayNumber(current_year, second, first);
  const Day month_of_year = Try(second, first, 1);
  const Day year_and_month = Try(first, second, 1);
  if (order == 1) return FirstOf({day_first, month_first, month_of_year, year_and_month});
  return FirstOf({month_first, day_first, month_of_year, year_and_month});
}

Day MonthAndNumbers(const Pieces& pieces, int order, int current_year) {
  const int first = pieces.numbers[0];
  const int second = pieces.numbers[1];
  if (pieces.count == 1)
    return FirstOf({DayNumber(current_year, pieces.month, first), Try(first, pieces.month, 1)});
  const Day day_first = Try(second, pieces.month, first);
  const Day year_first = Try(first, pieces.month, second);
  const bool year_leads = order == 2 && pieces.month_at == 1;
  return year_leads ? FirstOf({year_first, day_first}) : FirstOf({day_first, year_first});
}

Day DayOf(const Pieces& pieces, int order, int current_year) {
  if (pieces.month > 0) {
    if (pieces.count < 1 || pieces.count > 2) return std::nullopt;
    return MonthAndNumbers(pieces, order, current_year);
  }
  if (pieces.count == 2) return TwoNumbers(pieces.numbers[0], pieces.numbers[1], order, current_year);
  if (pieces.count == 3) return ThreeNumbers(pieces.numbers, order);
  if (pieces.count == 0 && pieces.has_time) return 0;
  return std::nullopt;
}

}  // namespace

std::optional<Date> ReadDate(std::string_view text, const platform::LocaleInfo& locale, int current_year) {
  Tokens tokens;
  Pieces pieces;
  if (!Lexer(text, locale).Run(tokens) || !Parser(tokens).Run(pieces)) return std::nullopt;
  const Day day = DayOf(pieces, locale.date_order, current_year);
  if (!day) return std::nullopt;
  return DateOf(*day, pieces.time[0], pieces.time[1], pieces.time[2]);
}

}  // namespace zendrix::core
