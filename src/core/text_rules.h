// Texts as the run-time handles them. Inside the program every text is single-byte (Windows-1252), so that
// counting and cutting are exact; positions count from 1 and 0 means "not found", as the rules state them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zendrix::core {

// Upper and lower case of the whole of Windows-1252.
char UpperByte(char character);
char LowerByte(char character);
std::string UpperCase(std::string_view text);
std::string LowerCase(std::string_view text);
// First letter of each word upper case, the others lower case. A word begins at the start and behind NUL,
// tab, line feed, vertical tab, form feed, carriage return and blank, and nowhere else.
std::string ProperCase(std::string_view text);
bool EqualNoCase(std::string_view one, std::string_view other);

// Removes blanks (only the character 32) at both ends.
std::string_view Trim(std::string_view text);
// Pieces between the separators. An empty text has no pieces at all.
std::vector<std::string_view> Split(std::string_view text, std::string_view separator);
std::string Join(const std::vector<std::string>& pieces, std::string_view separator);
// Lines of a file's text. LF ends a line, a CR in front of it belongs to the end; the last line needs no end.
std::vector<std::string_view> Lines(std::string_view text);
// All occurrences, case-sensitive, left to right, not looking again at what was put in. An empty `find`
// changes nothing.
std::string Replace(std::string_view text, std::string_view find, std::string_view by);
bool Contains(std::string_view text, std::string_view part);
// The lines that contain the key, case-sensitive.
std::vector<std::string> Filter(const std::vector<std::string>& lines, std::string_view key);
// Like-patterns: "?" one character, "*" any run, "#" a digit, "[a-z]" and "[!a-z]" sets; case-sensitive. A
// pattern with an open "[" matches nothing.
bool Like(std::string_view text, std::string_view pattern);

// The single-byte edge. Bytes without a character in Windows-1252 stand for the control character of the same
// number; characters without a byte become "?".
std::string Utf8FromBytes(std::string_view bytes);
std::string BytesFromUtf8(std::string_view utf8);

// PathCompactPathEx: the path fitted into `max_chars` characters (the final NUL not counted).
std::string PathCompactEx(std::string_view path, std::size_t max_chars);

}  // namespace zendrix::core
