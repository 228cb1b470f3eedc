#include "core/letter_case.h"

#include <algorithm>
#include <array>

#include "core/characters.h"

namespace zendrix::core {
namespace {

// Lower-case letters of Windows-1252 whose capital is 32 codes lower: a to z, and the accented ones
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

}  // namespace

char UpperByte(char character) {
  const unsigned char code = CodeOf(character);
  if (IsShiftedLower(code)) return static_cast<char>(code - 32);
  for (const CasePair& pair : kUnevenPairs) {
    if (pair.lower == code) return static_cast<char>(pair.upper);
  }
  return character;
}

char LowerByte(char character) {
  const unsigned char code = CodeOf(character);
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

}  // namespace zendrix::core
