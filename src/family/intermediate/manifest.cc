#include "family/intermediate/manifest.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <vector>

#include "family/intermediate/read_number.h"
#include "family/intermediate/sha256.h"

namespace zendrix::family {
namespace {

constexpr std::size_t kOldFields = 11;
constexpr std::size_t kFields = 13;
constexpr int kOldVersion = 1;

bool ReadPath(std::string_view text, std::string& path) {
  return Unescape(text, path) && path.starts_with('/');
}

// The fields that only newer manifests have; the version tells.
bool ReadEvent(const std::vector<std::string_view>& fields, Manifest& manifest) {
  if (fields[0] == "1" && fields.size() == kOldFields) {
    manifest.version = kOldVersion;
    return true;
  }
  if (fields[0] != "2" || fields.size() != kFields || !Unescape(fields[10], manifest.alert)) return false;
  if (fields[11].empty()) return true;
  return ReadNumber(fields[11], manifest.event.emplace());
}

std::string TimeText(const timespec& time) {
  return std::to_string(time.tv_sec) + "." + std::to_string(time.tv_nsec);
}

bool ReadTime(std::string_view text, timespec& time) {
  const auto point = text.find('.');
  return point != std::string_view::npos && ReadNumber(text.substr(0, point), time.tv_sec) &&
         ReadNumber(text.substr(point + 1), time.tv_nsec) && time.tv_nsec >= 0 && time.tv_nsec < 1000000000;
}

bool IsHash(std::string_view text) {
  return text.size() == kSha256Digits && text.find_first_not_of("0123456789abcdef") == std::string_view::npos;
}

std::vector<std::string_view> FieldsOf(std::string_view line) {
  std::vector<std::string_view> fields;
  for (std::size_t start = 0; start <= line.size() && fields.size() <= kFields;) {
    const std::size_t end = std::min(line.find('\t', start), line.size());
    fields.push_back(line.substr(start, end - start));
    start = end + 1;
  }
  return fields;
}

}  // namespace

std::string Escape(std::string_view text) {
  std::string word;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte > 32 && byte != '%' && byte != 127) {
      word += c;
      continue;
    }
    std::array<char, 4> code = {};
    std::snprintf(code.data(), code.size(), "%%%02x", byte);
    word += code.data();
  }
  return word;
}

bool Unescape(std::string_view text, std::string& bytes) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      bytes += text[i];
      continue;
    }
    unsigned byte = 0;
    if (i + 2 >= text.size() || !ReadNumber(text.substr(i + 1, 2), byte, 16)) return false;
    bytes += static_cast<char>(byte);
    i += 2;
  }
  return bytes.find('\0') == std::string::npos;
}

std::string LineOf(const Manifest& manifest) {
  std::array<char, 16> mode = {};
  std::snprintf(mode.data(), mode.size(), "%o", manifest.mode & 07777U);
  std::string fields = std::to_string(manifest.version) + "\t" + Escape(manifest.path) + "\t" +
                       std::to_string(manifest.owner) + "\t" + std::to_string(manifest.group) + "\t" +
                       mode.data() + "\t" + TimeText(manifest.accessed) + "\t" + TimeText(manifest.modified) +
                       "\t" + std::to_string(manifest.size) + "\t" + manifest.sha256 + "\t" +
                       TimeText(manifest.moved);
  if (manifest.version != kOldVersion)
    fields += "\t" + Escape(manifest.alert) + "\t" + (manifest.event ? std::to_string(*manifest.event) : "");
  return fields + "\t" + Sha256Of(fields) + "\n";
}

std::optional<Manifest> ManifestOf(std::string_view line) {
  if (!line.ends_with('\n')) return std::nullopt;
  const auto fields = FieldsOf(line.substr(0, line.size() - 1));
  Manifest manifest;
  const bool whole = fields.size() >= kOldFields && ReadEvent(fields, manifest) &&
                     ReadPath(fields[1], manifest.path) && ReadNumber(fields[2], manifest.owner) &&
                     ReadNumber(fields[3], manifest.group) && ReadNumber(fields[4], manifest.mode, 8) &&
                     manifest.mode <= 07777 && ReadTime(fields[5], manifest.accessed) &&
                     ReadTime(fields[6], manifest.modified) && ReadNumber(fields[7], manifest.size) &&
                     IsHash(fields[8]) && ReadTime(fields[9], manifest.moved);
  if (!whole) return std::nullopt;
  manifest.sha256 = fields[8];
  // Written anew it must be the same line: that covers the hash at its end and every other way to write a
  // number.
  if (LineOf(manifest) != line) return std::nullopt;
  return manifest;
}

}  // namespace zendrix::family
