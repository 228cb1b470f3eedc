#include "mail/mime.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>

namespace zendrix::mail {
namespace {

constexpr std::size_t kPlainHeaderWidth = 66;  // behind the longest name of a header, within 78
constexpr std::size_t kBytesOfAWord = 42;  // 56 characters of base64, 12 around them: below the 75 allowed
constexpr std::size_t kBodyWidth = 75;     // and "=" for a line that goes on

bool IsControl(char byte) {
  const auto code = static_cast<unsigned char>(byte);
  return code < 32 || code == 127;
}

bool IsPlain(char byte) {
  return byte >= ' ' && byte <= '~';
}

// The bytes of the character that begins the text; 1 for a byte that begins none.
std::size_t CharacterBytes(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text.front());
  const std::size_t wanted = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
  return std::min(wanted, text.size());
}

std::string Base64(std::string_view bytes) {
  constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (; !bytes.empty(); bytes.remove_prefix(std::min<std::size_t>(3, bytes.size()))) {
    std::uint32_t group = 0;
    for (std::size_t i = 0; i < 3; ++i) {
      group = group << 8U | (i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U);
    }
    for (std::size_t i = 0; i < 4; ++i) {
      text += i <= bytes.size() ? kDigits[group >> (18 - 6 * i) & 63U] : '=';
    }
  }
  return text;
}

std::string Escaped(char byte) {
  std::array<char, 4> text{};
  std::snprintf(text.data(), text.size(), "=%02X", static_cast<unsigned>(static_cast<unsigned char>(byte)));
  return text.data();
}

void AppendLine(std::string_view line, std::string& out) {
  std::size_t width = 0;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char byte = line[i];
    const bool is_last = i + 1 == line.size();
    // A blank at the end would be taken away on the road, and a "." at the beginning means something to SMTP.
    const bool stands = (byte == ' ' || byte == '\t')
                            ? !is_last
                            : IsPlain(byte) && byte != '=' && !(byte == '.' && width == 0);
    const std::string text = stands ? std::string(1, byte) : Escaped(byte);
    if (width + text.size() > kBodyWidth) {
      out += "=\r\n";
      width = 0;
      if (byte == '.') {  // it begins a line now
        out += Escaped(byte);
        width = 3;
        continue;
      }
    }
    out += text;
    width += text.size();
  }
  out += "\r\n";
}

}  // namespace

std::string HeaderText(std::string_view utf8) {
  std::string text(utf8);
  std::replace_if(text.begin(), text.end(), IsControl, ' ');
  // What could be taken for an encoded word, or loses blanks at its ends, is encoded too.
  const bool stands = text.size() <= kPlainHeaderWidth && !text.empty() && text.front() != ' ' &&
                      text.back() != ' ' && text.find("=?") == std::string::npos &&
                      std::all_of(text.begin(), text.end(), IsPlain);
  if (stands || text.empty()) return text;
  std::string out;
  std::string_view rest = text;
  while (!rest.empty()) {
    std::size_t taken = 0;
    while (taken < rest.size()) {
      const std::size_t more = CharacterBytes(rest.substr(taken));
      if (taken + more > kBytesOfAWord) break;
      taken += more;
    }
    out += (out.empty() ? "=?UTF-8?B?" : "\r\n =?UTF-8?B?") + Base64(rest.substr(0, taken)) + "?=";
    rest.remove_prefix(taken);
  }
  return out;
}

std::string QuotedPrintable(std::string_view utf8) {
  std::string out;
  while (!utf8.empty()) {
    const auto end = utf8.find('\n');
    AppendLine(utf8.substr(0, end), out);
    if (end == std::string_view::npos) break;
    utf8.remove_prefix(end + 1);
  }
  return out;
}

std::string HeaderDate(std::int64_t second) {
  using std::chrono::floor;
  // The names are the standard's, in no language.
  constexpr std::array<const char*, 7> kDays = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
  constexpr std::array<const char*, 12> kMonths = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                   "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  const std::chrono::sys_seconds moment{std::chrono::seconds(second)};
  const auto day = floor<std::chrono::days>(moment);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss time(moment - day);
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%s, %02u %s %04d %02d:%02d:%02d +0000",
                kDays[std::chrono::weekday(day).c_encoding()], static_cast<unsigned>(date.day()),
                kMonths[static_cast<unsigned>(date.month()) - 1], static_cast<int>(date.year()),
                static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                static_cast<int>(time.seconds().count()));
  return text.data();
}

}  // namespace zendrix::mail
