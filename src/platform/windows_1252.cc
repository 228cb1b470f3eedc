#include "platform/windows_1252.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace zendrix::platform {
namespace {

// Characters of the bytes 80 to 9F. The five bytes without a character stand for themselves.
constexpr std::array<char16_t, 32> kHighControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

constexpr char32_t kBroken = 0xFFFD;

void AppendUtf8(char16_t character, std::string& out) {
  if (character < 0x80) {
    out += static_cast<char>(character);
  } else if (character < 0x800) {
    out += static_cast<char>(0xC0 | character >> 6);
    out += static_cast<char>(0x80 | (character & 0x3F));
  } else {
    out += static_cast<char>(0xE0 | character >> 12);
    out += static_cast<char>(0x80 | (character >> 6 & 0x3F));
    out += static_cast<char>(0x80 | (character & 0x3F));
  }
}

std::optional<char> ByteOf(char32_t character) {
  if (character < 0x80 || (character >= 0xA0 && character <= 0xFF)) return static_cast<char>(character);
  const auto found = std::find(kHighControls.begin(), kHighControls.end(), character);
  if (found == kHighControls.end()) return std::nullopt;
  return static_cast<char>(0x80 + (found - kHighControls.begin()));
}

// Takes one character off the front; a broken sequence counts as one character per byte.
char32_t TakeCharacter(std::string_view& utf8) {
  const auto lead = static_cast<unsigned char>(utf8.front());
  utf8.remove_prefix(1);
  if (lead < 0x80) return lead;
  const std::size_t more = lead >= 0xF0 && lead < 0xF5   ? 3
                           : lead >= 0xE0 && lead < 0xF0 ? 2
                           : lead >= 0xC2                ? 1
                                                         : 0;
  if (more == 0 || lead >= 0xF5 || utf8.size() < more) return kBroken;
  char32_t character = lead & (0x3F >> more);
  for (std::size_t i = 0; i < more; ++i) {
    const auto next = static_cast<unsigned char>(utf8[i]);
    if ((next & 0xC0) != 0x80) return kBroken;
    character = character << 6 | (next & 0x3F);
  }
  constexpr std::array<char32_t, 4> kSmallest = {0, 0x80, 0x800, 0x10000};
  if (character < kSmallest[more]) return kBroken;
  utf8.remove_prefix(more);
  return character;
}

}  // namespace

std::string Utf8FromBytes(std::string_view bytes) {
  std::string utf8;
  utf8.reserve(bytes.size());
  for (const char byte : bytes) {
    const auto code = static_cast<unsigned char>(byte);
    AppendUtf8(code >= 0x80 && code < 0xA0 ? kHighControls[code - 0x80u] : char16_t{code}, utf8);
  }
  return utf8;
}

std::string BytesFromUtf8(std::string_view utf8) {
  std::string bytes;
  bytes.reserve(utf8.size());
  while (!utf8.empty()) bytes += ByteOf(TakeCharacter(utf8)).value_or('?');
  return bytes;
}

std::optional<std::string> BytesFromUtf8Exactly(std::string_view utf8) {
  std::string bytes;
  while (!utf8.empty()) {
    const auto byte = ByteOf(TakeCharacter(utf8));
    if (!byte) return std::nullopt;
    bytes += *byte;
  }
  return bytes;
}

}  // namespace zendrix::platform
