// Upper and lower case of Windows-1252, and comparison without regard to it.
#pragma once

#include <string>
#include <string_view>

namespace zendrix::core {

char UpperByte(char character);
char LowerByte(char character);
std::string UpperCase(std::string_view text);
std::string LowerCase(std::string_view text);
// First letter of each word upper case, the others lower case. A word begins at the start and behind NUL,
// tab, line feed, vertical tab, form feed, carriage return and blank, and nowhere else.
std::string ProperCase(std::string_view text);
bool EqualNoCase(std::string_view one, std::string_view other);

}  // namespace zendrix::core
