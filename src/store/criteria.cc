#include "store/criteria.h"

#include <charconv>
#include <cmath>
#include <optional>

#include "core/letter_case.h"
#include "core/number_rules.h"
#include "core/run_time_error.h"
#include "core/text_rules.h"
#include "store/event_table.h"

namespace zendrix::store {
namespace {

bool IsNameCharacter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_';
}

// A number as programs write it ("0.94995", "-1", "1E-05"), or as the user's locale does ("0,94995").
std::optional<double> NumberFrom(std::string_view text, const platform::LocaleInfo& locale) {
  double value = 0;
  const std::string_view digits = text.starts_with('+') ? text.substr(1) : text;
  const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (read.ec == std::errc() && read.ptr == digits.data() + digits.size() && std::isfinite(value))
    return value;
  if (core::IsNumeric(text, locale)) return core::CDbl(text, locale);
  return std::nullopt;
}

class Parser {
 public:
  Parser(std::string_view text, const EventTable& table) : rest_(text), table_(table) {}

  std::vector<Comparison> Parse() {
    std::vector<Comparison> comparisons;
    SkipBlanks();
    if (rest_.empty()) return comparisons;
    for (;;) {
      comparisons.push_back(TakeComparison());
      const bool blank = SkipBlanks();
      if (rest_.empty()) return comparisons;
      if (!blank || !core::EqualNoCase(TakeWord(), "AND") || !SkipBlanks()) Malformed();
    }
  }

 private:
  [[noreturn]] static void Malformed() { core::Raise(core::kBadCriterion); }

  bool SkipBlanks() {
    const std::size_t blanks = std::min(rest_.find_first_not_of(' '), rest_.size());
    rest_.remove_prefix(blanks);
    return blanks > 0;
  }

  std::string_view TakeWord() {
    std::size_t size = 0;
    while (size < rest_.size() && IsNameCharacter(rest_[size])) ++size;
    return Take(size);
  }

  std::string_view Take(std::size_t size) {
    const std::string_view taken = rest_.substr(0, size);
    rest_.remove_prefix(size);
    return taken;
  }

  Op TakeOp() {
    static constexpr std::pair<std::string_view, Op> kOps[] = {
        {"<>", Op::kNotEqual},       {"<=", Op::kLessOrEqual}, {"<", Op::kLess},
        {">=", Op::kGreaterOrEqual}, {">", Op::kGreater},      {"=", Op::kEqual}};
    for (const auto& [sign, op] : kOps) {
      if (!rest_.starts_with(sign)) continue;
      Take(sign.size());
      return op;
    }
    Malformed();
  }

  Comparison TakeComparison() {
    Comparison comparison;
    comparison.column = table_.ColumnIndex(TakeWord());
    if (comparison.column < 0) Malformed();
    SkipBlanks();
    comparison.op = TakeOp();
    SkipBlanks();
    if (rest_.starts_with('\'')) {
      TakeQuoted(comparison);
    } else {
      comparison.numeric = true;
      const auto number = NumberFrom(Take(std::min(rest_.find(' '), rest_.size())), table_.locale());
      if (!number) Malformed();
      comparison.number = *number;
    }
    return comparison;
  }

  void TakeQuoted(Comparison& comparison) {
    Take(1);
    const std::size_t end = rest_.find('\'');
    if (end == std::string_view::npos) Malformed();
    comparison.text = Take(end);
    Take(1);
    if (comparison.column != kID) return;
    comparison.numeric = true;
    const auto number = NumberFrom(core::Trim(comparison.text), table_.locale());
    comparison.never = !number;
    comparison.number = number.value_or(0);
  }

  std::string_view rest_;
  const EventTable& table_;
};

}  // namespace

std::vector<Comparison> ParseCriteria(std::string_view text, const EventTable& table) {
  return Parser(text, table).Parse();
}

}  // namespace zendrix::store
