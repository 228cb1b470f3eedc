#include "alerts/page_writer.h"

#include <algorithm>
#include <array>

#include "core/letter_case.h"

namespace zendrix::alerts {
namespace {

// Bytes without a visible character in Windows-1252.
bool IsControl(char character) {
  const auto byte = static_cast<unsigned char>(character);
  return byte < 32 || byte == 0x7f || byte == 0x81 || byte == 0x8d || byte == 0x8f || byte == 0x90 ||
         byte == 0x9d;
}

bool IsLetterOrDigit(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
         (character >= '0' && character <= '9');
}

// The reference that a character of text is written as; empty for one that stands for itself.
std::string_view ReferenceOf(char character) {
  switch (character) {
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '&':
      return "&amp;";
    case '\'':
      return "&#39;";
    case '"':
      return "&quot;";
    case '`':
      return "&#96;";
    default:
      return {};
  }
}

// Characters that a target keeps: the unreserved ones of RFC 3986.
bool IsUnreserved(char character) {
  return IsLetterOrDigit(character) || std::string_view("-._~").find(character) != std::string_view::npos;
}

// The commands of a page are targets that end so.
bool EndsInCommand(std::string_view target) {
  const std::string small = core::LowerCase(target);
  return small.ends_with("do") || small.ends_with("showhide");
}

}  // namespace

bool IsSpecialInText(char character) {
  static const std::array<bool, 256> kSpecial = [] {
    std::array<bool, 256> special{};
    for (int byte = 0; byte < 256; ++byte)
      special[byte] = IsControl(static_cast<char>(byte)) || !ReferenceOf(static_cast<char>(byte)).empty();
    return special;
  }();
  return kSpecial[static_cast<unsigned char>(character)];
}

void PageWriter::Put(char character) {
  page_ += character;
  reader_.Read(character);
}

void PageWriter::Put(std::string_view text) {
  for (const char character : text) Put(character);
}

void PageWriter::Template(char character, bool before_event) {
  // Most of a page by far: a character that leaves a browser where it is.
  if (reader_.in_plain_text() && character != '<' && character != '&') {
    page_ += character;
    return;
  }
  if (character == '<' && before_event && reader_.place() == Place::kText) return Put("&lt;");
  BreakCommand(character);
  Put(character);
}

void PageWriter::Event(char character) {
  if (reader_.in_plain_text() && !IsSpecialInText(character)) {
    page_ += character;
    return;
  }
  switch (reader_.place()) {
    case Place::kText:
    case Place::kFieldText:
      return reader_.in_reference() ? PutNumeric(character) : PutText(character);
    case Place::kRawText:
      return PutText(character);
    case Place::kCode:
      return PutLettersOnly(character);
    case Place::kComment:
      return IsLetterOrDigit(character) ? Put(character) : PutNumeric(character);
    case Place::kValue:
    case Place::kBareValue:
      return PutValue(character);
    case Place::kMarkup:
      return PutNumeric(character);
    case Place::kUnsure:
      return Put('?');
  }
}

void PageWriter::Path(char character) {
  const Place place = reader_.place();
  const bool in_value = place == Place::kValue || place == Place::kBareValue;
  if (!in_value || reader_.value_use() != ValueUse::kTarget) return Event(character);
  const bool kept = IsUnreserved(character) || character == ':' || character == '/';
  return kept && !reader_.in_reference() ? Put(character) : PutPercent(character);
}

void PageWriter::EmptyEvent() {
  const Place place = reader_.place();
  if (place == Place::kUnsure) Put('?');
  if (place == Place::kMarkup || place == Place::kComment ||
      (place == Place::kBareValue && reader_.value().empty()))
    PutNumeric(' ');
}

// A control character has no meaning on a page, only uses for hiding one.
void PageWriter::PutNumeric(char character) {
  const int byte = IsControl(character) ? ' ' : static_cast<unsigned char>(character);
  Put("&#" + std::to_string(byte) + ";");
}

void PageWriter::PutText(char character) {
  const std::string_view reference = ReferenceOf(character);
  if (!reference.empty()) return Put(reference);
  Put(IsControl(character) ? ' ' : character);
}

void PageWriter::PutValue(char character) {
  const bool bare = reader_.place() == Place::kBareValue;
  if (reader_.value_use() == ValueUse::kTarget) return PutTarget(character);
  if (reader_.value_use() == ValueUse::kCode) return PutLettersOnly(character);
  const bool plain = bare ? IsLetterOrDigit(character) : !IsSpecialInText(character);
  if (plain && !reader_.in_reference()) return Put(character);
  PutNumeric(character);
}

void PageWriter::PutLettersOnly(char character) {
  const bool bare = reader_.place() == Place::kBareValue;
  if (IsLetterOrDigit(character) && !reader_.in_reference()) return Put(character);
  return bare || reader_.in_reference() ? PutNumeric(' ') : Put(' ');
}

void PageWriter::PutPercent(char character) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  const auto byte = static_cast<unsigned char>(character);
  Put('%');
  Put(kDigits[byte >> 4]);
  Put(kDigits[byte & 15]);
}

void PageWriter::PutTarget(char character) {
  const Target target = TargetOf();
  if (target == Target::kScheme) return PutLettersOnly(character);
  // Host names, ports and paths can be read in an address.
  const bool kept =
      IsUnreserved(character) || (target == Target::kAddress && (character == ':' || character == '/'));
  return kept && !reader_.in_reference() ? Put(character) : PutPercent(character);
}

// What the template has made of the target in front of the event's first character. An event cannot change
// it, since the ":" that makes a scheme is never written for one.
PageWriter::Target PageWriter::TargetOf() {
  if (attribute_ == reader_.attributes()) return target_;
  attribute_ = reader_.attributes();
  std::string_view begun = reader_.value();
  while (!begun.empty() && (begun.front() == ' ' || IsControl(begun.front()))) begun.remove_prefix(1);
  const std::string small = core::LowerCase(begun);
  // A ":" may also be written as a reference, so one in front of the path is no better.
  const bool scheme = small.substr(0, small.find_first_of("/?#")).find_first_of(":&") != std::string::npos;
  target_ = small.starts_with("http://") || small.starts_with("https://") ? Target::kAddress
            : scheme                                                      ? Target::kScheme
                                                                          : Target::kBeside;
  return target_;
}

// A target that a template only begins or ends must not become a command by what an event says.
void PageWriter::BreakCommand(char next) {
  if (attribute_ == 0 || attribute_ != reader_.attributes() || target_ != Target::kBeside) return;
  const Place place = reader_.place();
  if (place != Place::kValue && place != Place::kBareValue) return;
  static constexpr std::string_view kEnds = "'\"> \t\r\n\f?#";
  if (kEnds.find(next) == std::string_view::npos || !EndsInCommand(reader_.value())) return;
  Put('.');
}

}  // namespace zendrix::alerts
