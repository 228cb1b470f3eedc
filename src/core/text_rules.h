// Texts as the run-time cuts, joins and searches them. Inside the program every text is single-byte
// (Windows-1252), so that counting and cutting are exact.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zendrix::core {

// Every character with a code below 32 becomes a blank; the length does not change.
std::string CleanLine(std::string_view text);
// Text behind the last "\"; the whole text if there is none. A view into `path`.
std::string_view FileNamePart(std::string_view path);
// Removes blanks (only the character 32) at both ends.
std::string_view Trim(std::string_view text);
// Pieces between the separators. An empty text has no pieces at all.
std::vector<std::string_view> Split(std::string_view text, std::string_view separator);
// Lines of a file's text. LF ends a line, a CR in front of it belongs to the end; the last line needs no end.
std::vector<std::string_view> Lines(std::string_view text);
// All occurrences, case-sensitive, left to right, not looking again at what was put in. An empty `find`
// changes nothing.
std::string Replace(std::string_view text, std::string_view find, std::string_view by);
bool Contains(std::string_view text, std::string_view part);

}  // namespace zendrix::core
