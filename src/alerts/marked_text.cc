#include "alerts/marked_text.h"

#include <algorithm>

namespace zendrix::alerts {
namespace {

constexpr char Mark(Origin origin) {
  return static_cast<char>(origin);
}

// Bytes without a visible character in Windows-1252.
bool IsControl(unsigned char byte) {
  return byte < 32 || byte == 0x7f || byte == 0x81 || byte == 0x8d || byte == 0x8f || byte == 0x90 ||
         byte == 0x9d;
}

void AppendEscaped(std::string& out, char character) {
  switch (character) {
    case '<':
      out += "&lt;";
      return;
    case '>':
      out += "&gt;";
      return;
    case '&':
      out += "&amp;";
      return;
    case '\'':
      out += "&#39;";
      return;
    case '"':
      out += "&quot;";
      return;
    case '`':
      out += "&#96;";
      return;
    default:
      break;
  }
  // A control character has no meaning on a page, only uses for hiding one.
  out += IsControl(static_cast<unsigned char>(character)) ? ' ' : character;
}

// Characters that a link's target keeps: the unreserved ones of RFC 3986 and those that host names, ports and
// paths are made of.
bool StaysInLink(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
         (character >= '0' && character <= '9') ||
         std::string_view("-._~:/").find(character) != std::string_view::npos;
}

void AppendPercentEncoded(std::string& out, char character) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  if (StaysInLink(character)) {
    out += character;
    return;
  }
  const auto byte = static_cast<unsigned char>(character);
  out += '%';
  out += kDigits[byte >> 4];
  out += kDigits[byte & 15];
}

}  // namespace

bool IsSpecialInText(char character) {
  std::string escaped;
  AppendEscaped(escaped, character);
  return escaped.size() != 1 || escaped[0] != character;
}

MarkedText::MarkedText(Purpose purpose, std::string_view text, Origin origin) : purpose_(purpose) {
  Append(text, origin);
}

MarkedText& MarkedText::Append(std::string_view text, Origin origin) {
  flat_ += text;
  origins_.append(text.size(), Mark(origin));
  return *this;
}

MarkedText& MarkedText::Append(const MarkedText& other) {
  flat_ += other.flat_;
  origins_ += other.origins_;
  return *this;
}

bool MarkedText::Counts(std::size_t at, std::size_t length, Among among, std::string_view in_tags) const {
  for (std::size_t i = at; i < at + length; ++i) {
    const bool own = origins_[i] == Mark(Origin::kTemplate);
    switch (among) {
      case Among::kAll:
        return true;
      case Among::kPlaceholders:
        if (!own && IsSpecialInText(flat_[i])) return false;
        break;
      case Among::kReadable:
        if (in_tags[i]) return false;
        break;
      case Among::kEvents:
        if (own || in_tags[i]) return false;
        break;
    }
  }
  return true;
}

std::size_t MarkedText::Find(std::string_view text, std::size_t from, Among among,
                             std::string_view in_tags) const {
  std::size_t at = flat_.find(text, from);
  while (at != std::string::npos && !Counts(at, text.size(), among, in_tags)) at = flat_.find(text, at + 1);
  return at;
}

// Only the template opens and closes tags. A placeholder that is still to be filled is written as one, and
// counts as one.
std::string MarkedText::InTags() const {
  if (purpose_ == Purpose::kExact) return {};
  std::string in_tags(flat_.size(), '\0');
  bool inside = false;
  for (std::size_t i = 0; i < flat_.size(); ++i) {
    const bool own = origins_[i] == Mark(Origin::kTemplate);
    if (own && flat_[i] == '<') inside = true;
    in_tags[i] = inside ? 1 : 0;
    if (own && flat_[i] == '>') inside = false;
  }
  return in_tags;
}

void MarkedText::ReplaceAt(std::size_t position, std::size_t length, const MarkedText& by) {
  flat_.replace(position, length, by.flat_);
  origins_.replace(position, length, by.origins_);
}

void MarkedText::ReplaceAll(std::string_view text, const MarkedText& by, Among among,
                            std::string_view in_tags) {
  if (text.empty()) return;
  MarkedText result(purpose_);
  std::size_t done = 0;
  const auto keep = [&](std::size_t end) {
    result.flat_.append(flat_, done, end - done);
    result.origins_.append(origins_, done, end - done);
  };
  for (std::size_t at; (at = Find(text, done, among, in_tags)) != std::string::npos;
       done = at + text.size()) {
    keep(at);
    result.Append(by);
  }
  if (done == 0) return;
  keep(flat_.size());
  flat_ = std::move(result.flat_);
  origins_ = std::move(result.origins_);
}

void MarkedText::Replace(std::string_view placeholder, const MarkedText& by) {
  ReplaceAll(placeholder, by, PlaceholdersAmong());
}

void MarkedText::Replace(std::string_view placeholder, std::string_view by, Origin origin) {
  Replace(placeholder, MarkedText(purpose_, by, origin));
}

MarkedText::Among MarkedText::ValuesAmong(std::string_view value) const {
  if (purpose_ == Purpose::kExact) return Among::kAll;
  return std::any_of(value.begin(), value.end(), IsSpecialInText) ? Among::kEvents : Among::kReadable;
}

void MarkedText::ReplaceValue(std::string_view value, const MarkedText& by) {
  ReplaceAll(value, by, ValuesAmong(value), InTags());
}

void MarkedText::ReplaceLastValue(std::string_view value, const MarkedText& by) {
  if (value.empty()) return;
  const Among among = ValuesAmong(value);
  const std::string in_tags = InTags();
  std::size_t last = std::string::npos;
  for (std::size_t at = Find(value, 0, among, in_tags); at != std::string::npos;
       at = Find(value, at + 1, among, in_tags))
    last = at;
  if (last != std::string::npos) ReplaceAt(last, value.size(), by);
}

void MarkedText::CutAt(std::string_view placeholder) {
  const std::size_t at = Find(placeholder, 0, PlaceholdersAmong(), {});
  if (at == std::string::npos) return;
  flat_.resize(at);
  origins_.resize(at);
}

std::string MarkedText::Finish() const {
  if (purpose_ == Purpose::kExact) return flat_;
  std::string shown;
  shown.reserve(flat_.size() + flat_.size() / 8);
  for (std::size_t i = 0; i < flat_.size(); ++i) {
    if (origins_[i] == Mark(Origin::kTemplate))
      shown += flat_[i];
    else if (origins_[i] == Mark(Origin::kEvent))
      AppendEscaped(shown, flat_[i]);
    else
      AppendPercentEncoded(shown, flat_[i]);
  }
  return shown;
}

}  // namespace zendrix::alerts
