#include "family/intermediate/manifest.h"

#include <array>
#include <charconv>
#include <cstdio>
#include <vector>

namespace zendrix::family {
namespace {

constexpr std::size_t kFields = 10;
constexpr std::size_t kHashDigits = 64;

std::string Escape(std::string_view path) {
  std::string text;
  for (const char c : path) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte > 32 && byte != '%' && byte != 127) {
      text += c;
      continue;
    }
    std::array<char, 4> code = {};
    std::snprintf(code.data(), code.size(), "%%%02x", byte);
    text += code.data();
  }
  return text;
}

template <class Number>
bool Read(std::string_view text, Number& number, int base = 10) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
  return error == std::errc() && end == text.data() + text.size() && !text.empty();
}

bool Unescape(std::string_view text, std::string& path) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      path += text[i];
      continue;
    }
    unsigned byte = 0;
    if (i + 2 >= text.size() || !Read(text.substr(i + 1, 2), byte, 16)) return false;
    path += static_cast<char>(byte);
    i += 2;
  }
  return path.starts_with('/') && path.find('\0') == std::string::npos;
}

std::string TimeText(const timespec& time) {
  return std::to_string(time.tv_sec) + "." + std::to_string(time.tv_nsec);
}

bool ReadTime(std::string_view text, timespec& time) {
  const auto point = text.find('.');
  return point != std::string_view::npos && Read(text.substr(0, point), time.tv_sec) &&
         Read(text.substr(point + 1), time.tv_nsec) && time.tv_nsec >= 0 && time.tv_nsec < 1000000000;
}

}  // namespace

std::string LineOf(const Manifest& manifest) {
  std::array<char, 16> mode = {};
  std::snprintf(mode.data(), mode.size(), "%o", manifest.mode & 07777U);
  return "1\t" + Escape(manifest.path) + "\t" + std::to_string(manifest.owner) + "\t" +
         std::to_string(manifest.group) + "\t" + mode.data() + "\t" + TimeText(manifest.accessed) + "\t" +
         TimeText(manifest.modified) + "\t" + std::to_string(manifest.size) + "\t" + manifest.sha256 + "\t" +
         std::to_string(manifest.moved) + "\n";
}

std::optional<Manifest> ManifestOf(std::string_view line) {
  if (!line.ends_with('\n')) return std::nullopt;
  line.remove_suffix(1);
  std::vector<std::string_view> fields;
  for (std::size_t start = 0; start <= line.size();) {
    const std::size_t end = std::min(line.find('\t', start), line.size());
    fields.push_back(line.substr(start, end - start));
    start = end + 1;
  }
  Manifest manifest;
  const bool whole = fields.size() == kFields && fields[0] == "1" && Unescape(fields[1], manifest.path) &&
                     Read(fields[2], manifest.owner) && Read(fields[3], manifest.group) &&
                     Read(fields[4], manifest.mode, 8) && manifest.mode <= 07777 &&
                     ReadTime(fields[5], manifest.accessed) && ReadTime(fields[6], manifest.modified) &&
                     Read(fields[7], manifest.size) && fields[8].size() == kHashDigits &&
                     Read(fields[9], manifest.moved);
  if (!whole) return std::nullopt;
  manifest.sha256 = fields[8];
  return manifest;
}

}  // namespace zendrix::family
