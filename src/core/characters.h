// Kinds of single-byte characters, in Windows-1252 and whatever the locale.
#pragma once

namespace zendrix::core {

constexpr bool IsDigit(char character) {
  return character >= '0' && character <= '9';
}

// What numbers and dates are read across, the no-break space included.
constexpr bool IsBlank(char character) {
  return character == ' ' || (character >= '\t' && character <= '\r') || character == '\xA0';
}

constexpr unsigned char CodeOf(char character) {
  return static_cast<unsigned char>(character);
}

}  // namespace zendrix::core
