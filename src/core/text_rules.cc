#include "core/text_rules.h"

#include <algorithm>
#include <array>

namespace zendrix::core {
namespace {

unsigned char Code(char character) {
  return static_cast<unsigned char>(character);
}

// Lower-case letters of Windows-1252 whose capital stands 32 places lower: a to z, and the accented ones
// except the division sign. Sharp s, the micro sign and the florin sign have no capital in the code page.
bool IsShiftedLower(unsigned char code) {
  return (code >= 'a' && code <= 'z') || (code >= 0xE0 && code <= 0xFE && code != 0xF7);
}

bool IsShiftedUpper(unsigned char code) {
  return (code >= 'A' && code <= 'Z') || (code >= 0xC0 && code <= 0xDE && code != 0xD7);
}

struct CasePair {
  unsigned char upper, lower;
};
constexpr std::array kUnevenPairs = {CasePair{0x8A, 0x9A}, CasePair{0x8C, 0x9C}, CasePair{0x8E, 0x9E},
                                     CasePair{0x9F, 0xFF}};

bool BeginsWordBehind(char character) {
  return character == ' ' || character == '\0' || (character >= '\t' && character <= '\r');
}

// One "[...]" list of a pattern. `position` stands behind the "[" and is moved behind the "]".
enum class ListMatch { kYes, kNo, kEmpty, kBroken };

ListMatch MatchList(std::string_view pattern, std::size_t& position, char character) {
  const std::size_t end = pattern.find(']', position);
  if (end == std::string_view::npos) return ListMatch::kBroken;
  std::string_view list = pattern.substr(position, end - position);
  position = end + 1;
  if (list.empty()) return ListMatch::kEmpty;
  // A "!" with nothing behind it stands for itself.
  const bool negated = list.size() > 1 && list.front() == '!';
  if (negated) list.remove_prefix(1);
  bool found = false;
  for (std::size_t i = 0; i < list.size(); ++i) {
    const bool range = i + 2 < list.size() && list[i + 1] == '-';
    if (range) {
      found = found || (Code(list[i]) <= Code(character) && Code(character) <= Code(list[i + 2]));
      i += 2;
    } else {
      found = found || list[i] == character;
    }
  }
  return found != negated ? ListMatch::kYes : ListMatch::kNo;
}

bool ListsAreClosed(std::string_view pattern) {
  for (std::size_t i = pattern.find('['); i != std::string_view::npos; i = pattern.find('[', i)) {
    i = pattern.find(']', i);
    if (i == std::string_view::npos) return false;
  }
  return true;
}

// Whether the pattern element at `position` takes `character`; moves `position` behind it. An empty list
// takes no character and is passed over.
bool TakesCharacter(std::string_view pattern, std::size_t& position, char character) {
  while (position < pattern.size()) {
    const char element = pattern[position++];
    if (element == '?') return true;
    if (element == '#') return character >= '0' && character <= '9';
    if (element != '[') return element == character;
    const ListMatch match = MatchList(pattern, position, character);
    if (match != ListMatch::kEmpty) return match == ListMatch::kYes;
  }
  return false;
}

bool TakesNothing(std::string_view pattern) {
  while (!pattern.empty()) {
    if (pattern.front() == '*') {
      pattern.remove_prefix(1);
    } else if (pattern.substr(0, 2) == "[]") {
      pattern.remove_prefix(2);
    } else {
      return false;
    }
  }
  return true;
}

// Position behind any empty lists.
std::size_t SkipEmptyLists(std::string_view pattern, std::size_t position) {
  while (pattern.substr(std::min(position, pattern.size()), 2) == "[]") position += 2;
  return position;
}

}  // namespace

char UpperByte(char character) {
  const unsigned char code = Code(character);
  if (IsShiftedLower(code)) return static_cast<char>(code - 32);
  for (const CasePair& pair : kUnevenPairs) {
    if (pair.lower == code) return static_cast<char>(pair.upper);
  }
  return character;
}

char LowerByte(char character) {
  const unsigned char code = Code(character);
  if (IsShiftedUpper(code)) return static_cast<char>(code + 32);
  for (const CasePair& pair : kUnevenPairs) {
    if (pair.upper == code) return static_cast<char>(pair.lower);
  }
  return character;
}

std::string UpperCase(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), UpperByte);
  return result;
}

std::string LowerCase(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), LowerByte);
  return result;
}

std::string ProperCase(std::string_view text) {
  std::string result(text);
  bool begins = true;
  for (char& character : result) {
    const char original = character;
    character = begins ? UpperByte(original) : LowerByte(original);
    begins = BeginsWordBehind(original);
  }
  return result;
}

bool EqualNoCase(std::string_view one, std::string_view other) {
  return one.size() == other.size() && std::equal(one.begin(), one.end(), other.begin(), [](char a, char b) {
           return a == b || UpperByte(a) == UpperByte(b);
         });
}

std::string_view Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::vector<std::string_view> Split(std::string_view text, std::string_view separator) {
  std::vector<std::string_view> pieces;
  if (text.empty()) return pieces;
  std::size_t from = 0;
  if (!separator.empty()) {
    for (std::size_t hit; (hit = text.find(separator, from)) != std::string_view::npos;
         from = hit + separator.size()) {
      pieces.push_back(text.substr(from, hit - from));
    }
  }
  pieces.push_back(text.substr(from));
  return pieces;
}

std::vector<std::string_view> Lines(std::string_view text) {
  std::vector<std::string_view> lines;
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find('\n', start), text.size());
    lines.push_back(text.substr(start, end - start));
    if (end < text.size() && lines.back().ends_with('\r')) lines.back().remove_suffix(1);
    start = end + 1;
  }
  return lines;
}

std::string Join(const std::vector<std::string>& pieces, std::string_view separator) {
  std::string result;
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    if (i > 0) result += separator;
    result += pieces[i];
  }
  return result;
}

std::string Replace(std::string_view text, std::string_view find, std::string_view by) {
  if (find.empty()) return std::string(text);
  std::string result;
  result.reserve(text.size());
  std::size_t from = 0;
  for (std::size_t hit; (hit = text.find(find, from)) != std::string_view::npos; from = hit + find.size()) {
    result += text.substr(from, hit - from);
    result += by;
  }
  return result += text.substr(from);
}

bool Contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

std::vector<std::string> Filter(const std::vector<std::string>& lines, std::string_view key) {
  std::vector<std::string> found;
  std::copy_if(lines.begin(), lines.end(), std::back_inserter(found),
               [&](const std::string& line) { return Contains(line, key); });
  return found;
}

bool Like(std::string_view text, std::string_view pattern) {
  if (!ListsAreClosed(pattern)) return false;
  // Only the last "*" has to be tried again with one character more: what an earlier one could take as well,
  // the last one can take too. So the time is at worst text times pattern, whatever the user types.
  std::size_t at = 0, in_text = 0;
  std::size_t star = std::string_view::npos, star_text = 0;
  while (in_text < text.size()) {
    at = SkipEmptyLists(pattern, at);
    if (at < pattern.size() && pattern[at] == '*') {
      star = ++at;
      star_text = in_text;
    } else if (std::size_t next = at; TakesCharacter(pattern, next, text[in_text])) {
      at = next;
      ++in_text;
    } else if (star != std::string_view::npos) {
      at = star;
      in_text = ++star_text;
    } else {
      return false;
    }
  }
  return TakesNothing(pattern.substr(at));
}

}  // namespace zendrix::core
