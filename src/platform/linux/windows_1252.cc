#include "platform/linux/windows_1252.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace zendrix::platform {
namespace {

// Characters of the bytes 0x80 to 0x9F; all other bytes are their own character.
constexpr std::array<char32_t, 32> kHighControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

std::optional<char> ByteOf(char32_t character) {
  if (character < 0x80 || (character >= 0xA0 && character <= 0xFF)) return static_cast<char>(character);
  const auto found = std::find(kHighControls.begin(), kHighControls.end(), character);
  if (found == kHighControls.end()) return std::nullopt;
  return static_cast<char>(0x80 + (found - kHighControls.begin()));
}

// Takes one character off the front; nothing when the bytes are no UTF-8.
std::optional<char32_t> TakeCharacter(std::string_view& text) {
  const auto byte = [&text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char first = byte(0);
  const std::size_t length = first < 0x80       ? 1
                             : first >> 5 == 6  ? 2
                             : first >> 4 == 14 ? 3
                             : first >> 3 == 30 ? 4
                                                : 0;
  if (length == 0 || length > text.size()) return std::nullopt;
  char32_t character = length == 1 ? first : first & (0x7F >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if (byte(i) >> 6 != 2) return std::nullopt;
    character = character << 6 | (byte(i) & 0x3F);
  }
  constexpr std::array<char32_t, 5> kSmallest = {0, 0, 0x80, 0x800, 0x10000};
  if (character < kSmallest[length]) return std::nullopt;
  text.remove_prefix(length);
  return character;
}

}  // namespace

std::optional<std::string> Windows1252FromUtf8(std::string_view text) {
  std::string bytes;
  while (!text.empty()) {
    const auto character = TakeCharacter(text);
    if (!character) return std::nullopt;
    const auto byte = ByteOf(*character);
    if (!byte) return std::nullopt;
    bytes += *byte;
  }
  return bytes;
}

std::string Utf8FromWindows1252(std::string_view text) {
  std::string encoded;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    const char32_t character = byte >= 0x80 && byte < 0xA0 ? kHighControls[byte - 0x80] : byte;
    if (character < 0x80) {
      encoded += static_cast<char>(character);
    } else if (character < 0x800) {
      encoded += static_cast<char>(0xC0 | character >> 6);
      encoded += static_cast<char>(0x80 | (character & 0x3F));
    } else {
      encoded += static_cast<char>(0xE0 | character >> 12);
      encoded += static_cast<char>(0x80 | (character >> 6 & 0x3F));
      encoded += static_cast<char>(0x80 | (character & 0x3F));
    }
  }
  return encoded;
}

}  // namespace zendrix::platform
