// Bytes as lower-case hexadecimal digits.
#pragma once

#include <cstddef>
#include <string>

namespace zendrix::family {

inline std::string Hex(const unsigned char* bytes, std::size_t count) {
  static constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  text.reserve(count * 2);
  for (std::size_t i = 0; i < count; ++i) {
    text += kDigits[bytes[i] >> 4];
    text += kDigits[bytes[i] & 15];
  }
  return text;
}

}  // namespace zendrix::family
