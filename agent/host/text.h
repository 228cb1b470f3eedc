// From the host's bytes to text that can stand in a line of the monitoring file. Whoever names a program, a
// user or a file chooses these bytes, and may choose them in order to break a line, to forge a second event
// or to make the console's lookups fail. So every name passes through CleanName before it is written, and
// each character that means something in a line becomes "_": the separators | , ; = : *, the quote ", the
// backslash, control characters, and whatever Windows-1252 cannot hold. An apostrophe, which would end a
// lookup in the middle of a name, becomes the typographic one. Two names may thus become equal; that is
// accepted.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zendrix::agent {

// Characters that a written name may have; a longer one keeps its beginning and its end around "...".
inline constexpr std::size_t kNameLimit = 200;

// `raw` is taken for UTF-8, a byte that is not becomes "_". Blanks at either end become "_" as well, because
// readers trim. The result is Windows-1252, never empty, and never reads like a session marker.
std::string CleanName(std::string_view raw, std::size_t limit = kNameLimit);

// A sentence of the Agent's own or of the system's, such as the reason of a refusal: what would part a line
// becomes a dash, so that it stays readable. Otherwise as CleanName.
std::string CleanText(std::string_view raw, std::size_t limit = 2 * kNameLimit);

// Unsigned decimal number that fills the whole text; false (and `value` untouched) for anything else.
bool ReadNumber(std::string_view text, std::uint64_t& value);
// The same with hexadecimal digits.
bool ReadHex(std::string_view text, std::uint64_t& value);

// Lines without their line ends.
std::vector<std::string_view> SplitLines(std::string_view text);
// Runs of blanks and tabs separate; no empty words.
std::vector<std::string_view> SplitWords(std::string_view text);
// Every separator separates; empty fields stay.
std::vector<std::string_view> SplitFields(std::string_view text, char separator);
std::string_view Trim(std::string_view text);

// A number with that many decimals and a point, whatever the locale.
std::string Decimal(double number, int decimals);

}  // namespace zendrix::agent
