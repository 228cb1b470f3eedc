// Numbers as the run-time reads and writes them. Texts are single-byte (Windows-1252). The rules are those of
// the Windows automation functions VarR8FromStr, VarI4FromR8 and their kin, and of the Val function; tests
// hold them to tables made with those functions.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/locale.h"

namespace zendrix::core {

// Reads leading digits: blanks, tabs and line feeds are skipped anywhere, reading stops at the first
// other character that cannot continue a number, no digits give 0. The decimal point is always ".". "1.5e3"
// and "1.5d3" are 1500; "&HFF" is 255 and "&HFFFF" the 16-bit -1. Never fails: what is beyond the range is
// the largest double.
double Val(std::string_view text);

// Whether CDbl would accept the text.
bool IsNumeric(std::string_view text, const platform::LocaleInfo& locale);

// Conversions of text. Raise 13 (type mismatch) for what is no number and 6 (overflow) beyond the range.
double CDbl(std::string_view text, const platform::LocaleInfo& locale);
float CSng(std::string_view text, const platform::LocaleInfo& locale);
std::int32_t CLng(std::string_view text, const platform::LocaleInfo& locale);
std::int16_t CInt(std::string_view text, const platform::LocaleInfo& locale);
std::uint8_t CByte(std::string_view text, const platform::LocaleInfo& locale);

// Rounds to the nearest integer, ties to even. Raise 6 (overflow) beyond the range.
std::int32_t RoundToLong(double value);
std::int16_t RoundToInt(double value);
std::uint8_t RoundToByte(double value);

// The shortest plain text of a number: 15 significant digits of a double, 7 of a single.
std::string TextOf(double value, const platform::LocaleInfo& locale);
std::string TextOf(float value, const platform::LocaleInfo& locale);

// A yes, a no, or what the locale does.
enum class Tristate { kTrue = -1, kFalse = 0, kDefault = -2 };

// `digits` decimals (-1: the locale's 2), with or without the leading zero, parentheses and grouping.
std::string FormatNumber(double value, int digits, Tristate leading, Tristate parens, Tristate grouping,
                         const platform::LocaleInfo& locale);

// A number with 16 decimals, leading digit, the locale's grouping and negatives: the stored form of Original
// and Change ("0.9900000000000000", "1,234.0000000000000000").
std::string Format16(double value, const platform::LocaleInfo& locale);

// A number by a picture of "#", "0", ".", "," (for instance "#0.00", "##0").
std::string FormatPicture(double value, std::string_view picture, const platform::LocaleInfo& locale);

}  // namespace zendrix::core
