// The Val rule: as many leading characters as make a number, whatever follows.
#include <cmath>
#include <limits>

#include "core/characters.h"
#include "core/number_rules.h"
#include "core/number_scan.h"

namespace zendrix::core {
namespace {

constexpr char kEnd = '\0';

char Upper(char character) {
  return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A') : character;
}

// The characters of a text without its blanks, tabs and line feeds, which the rule does not see anywhere.
class Reader {
 public:
  explicit Reader(std::string_view text) : rest_(text) { SkipBlanks(); }

  char Peek() const { return rest_.empty() ? kEnd : rest_.front(); }
  void Next() {
    if (!rest_.empty()) rest_.remove_prefix(1);
    SkipBlanks();
  }
  bool Take(char upper) {
    if (rest_.empty() || Upper(rest_.front()) != upper) return false;
    Next();
    return true;
  }

 private:
  void SkipBlanks() {
    while (!rest_.empty() && (rest_.front() == ' ' || rest_.front() == '\t' || rest_.front() == '\n')) {
      rest_.remove_prefix(1);
    }
  }

  std::string_view rest_;
};

int HexDigit(char character) {
  if (IsDigit(character)) return character - '0';
  const char upper = Upper(character);
  return upper >= 'A' && upper <= 'F' ? upper - 'A' + 10 : -1;
}

// "&HFFFF" is the 16-bit number of these bits, so -1; with a "&" behind it, or with more bits, the 32-bit
// number.
double ReadBits(Reader reader, unsigned shift) {
  std::uint64_t bits = 0;
  for (int digit; (digit = HexDigit(reader.Peek())) >= 0 && digit < (1 << shift); reader.Next()) {
    if (bits >> (64 - shift) != 0) break;
    bits = bits << shift | static_cast<std::uint64_t>(digit);
  }
  const bool is_long = reader.Peek() == '&';
  if (!is_long && bits <= std::numeric_limits<std::uint16_t>::max()) return static_cast<std::int16_t>(bits);
  if (bits <= std::numeric_limits<std::uint32_t>::max()) return static_cast<std::int32_t>(bits);
  return static_cast<double>(bits);
}

// An exponent counts only when a digit follows its letter and sign: "1e" and "1e+" are 1.
void ReadExponent(Reader reader, DigitCollector& collector) {
  if (!reader.Take('E') && !reader.Take('D')) return;
  const bool negative = reader.Peek() == '-';
  if (negative || reader.Peek() == '+') reader.Next();
  if (!IsDigit(reader.Peek())) return;
  if (negative) collector.NegateExponent();
  for (; IsDigit(reader.Peek()); reader.Next()) collector.AddExponentDigit(reader.Peek());
}

double ReadDecimal(Reader reader) {
  DigitCollector collector;
  const bool negative = reader.Peek() == '-';
  if (negative || reader.Peek() == '+') reader.Next();
  for (;; reader.Next()) {
    if (IsDigit(reader.Peek())) {
      collector.AddDigit(reader.Peek());
    } else if (reader.Peek() == '.' && !collector.BehindPoint()) {
      collector.AddPoint();
    } else {
      break;
    }
  }
  if (!collector.HasDigits()) return 0;
  ReadExponent(reader, collector);
  double value = collector.Value();
  // A line of the monitoring file must not be able to stop the console, so there is no overflow here.
  if (std::isinf(value)) value = std::numeric_limits<double>::max();
  return negative && value != 0 ? -value : value;
}

}  // namespace

double Val(std::string_view text) {
  Reader reader(text);
  if (!reader.Take('&')) return ReadDecimal(reader);
  if (reader.Take('H')) return ReadBits(reader, 4);
  if (reader.Take('O')) return ReadBits(reader, 3);
  return 0;
}

}  // namespace zendrix::core
