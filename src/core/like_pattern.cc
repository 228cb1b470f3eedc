#include "core/like_pattern.h"

#include <algorithm>

#include "core/characters.h"

namespace zendrix::core {
namespace {

// One "[...]" list of a pattern. `position` is just behind the "[" and is moved behind the "]".
enum class ListMatch { kYes, kNo, kEmpty, kBroken };

ListMatch MatchList(std::string_view pattern, std::size_t& position, char character) {
  const std::size_t end = pattern.find(']', position);
  if (end == std::string_view::npos) return ListMatch::kBroken;
  std::string_view list = pattern.substr(position, end - position);
  position = end + 1;
  if (list.empty()) return ListMatch::kEmpty;
  // A trailing "!" is a literal.
  const bool negated = list.size() > 1 && list.front() == '!';
  if (negated) list.remove_prefix(1);
  bool found = false;
  for (std::size_t i = 0; i < list.size(); ++i) {
    const bool range = i + 2 < list.size() && list[i + 1] == '-';
    if (range) {
      found = found || (CodeOf(list[i]) <= CodeOf(character) && CodeOf(character) <= CodeOf(list[i + 2]));
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
// matches no character and is skipped.
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
