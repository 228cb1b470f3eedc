#include "agent/host/text.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace zendrix::agent {
namespace {

constexpr char kStandIn = '_';

// Code points of the bytes 0x80 to 0x9F; 0 where Windows-1252 has none.
constexpr std::array<char32_t, 32> kHighControls = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

char ToByte(char32_t point) {
  if (point < 0x20 || point == 0x7F) return kStandIn;
  if (point < 0x7F || (point >= 0xA0 && point <= 0xFF)) return static_cast<char>(point);
  for (std::size_t i = 0; i < kHighControls.size(); ++i) {
    if (kHighControls[i] == point && point != 0) return static_cast<char>(0x80 + i);
  }
  return kStandIn;
}

// Length of the UTF-8 sequence that `lead` opens; 0 when it opens none.
std::size_t SequenceLength(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead <= 0xDF) return 2;
  if (lead >= 0xE0 && lead <= 0xEF) return 3;
  return lead >= 0xF0 && lead <= 0xF4 ? 4 : 0;
}

// Takes one character off the front; an invalid byte counts as a character of its own, value 0.
char32_t TakePoint(std::string_view& text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  const std::size_t length = SequenceLength(lead);
  if (length == 0 || length > text.size()) {
    text.remove_prefix(1);
    return 0;
  }
  char32_t point = length == 1 ? lead : lead & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    const auto next = static_cast<unsigned char>(text[i]);
    if ((next & 0xC0U) != 0x80) {
      text.remove_prefix(1);
      return 0;
    }
    point = (point << 6U) | (next & 0x3FU);
  }
  constexpr std::array<char32_t, 5> kSmallest = {0, 0, 0x80, 0x800, 0x10000};
  text.remove_prefix(length);
  return point < kSmallest[length] ? 0 : point;  // an overlong form could smuggle a separator in
}

// Whether the byte stands for itself in a line, wherever it stands.
bool IsPlain(char byte) {
  const auto known = static_cast<unsigned char>(byte);
  static constexpr std::array<bool, 256> kPlain = [] {
    std::array<bool, 256> plain = {};
    for (unsigned char each = '!'; each <= '~'; ++each) {
      plain[each] = std::string_view("|,;=:*\"\\'").find(static_cast<char>(each)) == std::string_view::npos;
    }
    return plain;
  }();
  return kPlain[known];
}

bool MeansSomething(char byte) {
  return std::string_view("|,;=:*\"\\").find(byte) != std::string_view::npos;
}

constexpr char kApostrophe = '\x92';

}  // namespace

std::string CleanName(std::string_view raw, std::size_t limit) {
  // Nearly every name, and names are cleaned several times for each event.
  if (!raw.empty() && raw.size() <= limit && std::all_of(raw.begin(), raw.end(), IsPlain))
    return std::string(raw);
  std::string name;
  while (!raw.empty()) {
    const char byte = ToByte(TakePoint(raw));
    name += MeansSomething(byte) ? kStandIn : byte == '\'' ? kApostrophe : byte;
  }
  if (name.empty()) return std::string(1, kStandIn);
  if (name.size() > limit) {
    const std::size_t head = limit / 3;
    const std::size_t tail = limit - head - 3;
    name = name.substr(0, head) + "..." + name.substr(name.size() - tail);
  }
  if (name.front() == ' ') name.front() = kStandIn;
  if (name.back() == ' ') name.back() = kStandIn;
  // An account with this name would otherwise end a session in the console's replay.
  if (name == "Begin Session Refresh.") name.insert(name.begin(), kStandIn);
  return name;
}

std::string CleanText(std::string_view raw, std::size_t limit) {
  std::string text;
  for (const char byte : raw) {
    if (std::string_view("|,;=:*").find(byte) == std::string_view::npos) {
      text += byte;
    } else {
      while (text.ends_with(' ') || text.ends_with('-')) text.pop_back();
      text += " -";
    }
  }
  while (text.ends_with(' ') || text.ends_with('-')) text.pop_back();
  return CleanName(text, limit);
}

bool ReadNumber(std::string_view text, std::uint64_t& value) {
  std::uint64_t read = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), read);
  if (text.empty() || error != std::errc() || end != text.data() + text.size()) return false;
  value = read;
  return true;
}

bool ReadHex(std::string_view text, std::uint64_t& value) {
  std::uint64_t read = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), read, 16);
  if (text.empty() || error != std::errc() || end != text.data() + text.size()) return false;
  value = read;
  return true;
}

std::vector<std::string_view> SplitLines(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    lines.push_back(line);
    if (end == std::string_view::npos) break;
    text.remove_prefix(end + 1);
  }
  return lines;
}

std::vector<std::string_view> SplitWords(std::string_view text) {
  std::vector<std::string_view> words;
  std::size_t at = 0;
  while ((at = text.find_first_not_of(" \t", at)) != std::string_view::npos) {
    const std::size_t end = std::min(text.find_first_of(" \t", at), text.size());
    words.push_back(text.substr(at, end - at));
    at = end;
  }
  return words;
}

std::vector<std::string_view> SplitFields(std::string_view text, char separator) {
  std::vector<std::string_view> fields;
  std::size_t at = 0;
  for (;;) {
    const std::size_t end = text.find(separator, at);
    fields.push_back(text.substr(at, end == std::string_view::npos ? end : end - at));
    if (end == std::string_view::npos) return fields;
    at = end + 1;
  }
}

std::string_view Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

std::string Decimal(double number, int decimals) {
  std::array<char, 400> buffer = {};
  const auto [end, error] =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::fixed, decimals);
  return error == std::errc() ? std::string(buffer.data(), end) : std::string("0");
}

}  // namespace zendrix::agent
