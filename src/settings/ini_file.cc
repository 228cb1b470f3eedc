#include "settings/ini_file.h"

#include <algorithm>
#include <iterator>

#include "core/letter_case.h"
#include "core/text_rules.h"

namespace zendrix::settings {
namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kWhiteSpace = " \t\v\f\r\n";

std::string_view Strip(std::string_view text) {
  const auto first = text.find_first_not_of(kWhiteSpace);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kWhiteSpace) - first + 1);
}

std::string_view WithoutQuotes(std::string_view value) {
  const bool quoted =
      value.size() >= 2 && value.front() == value.back() && (value.front() == '"' || value.front() == '\'');
  return quoted ? value.substr(1, value.size() - 2) : value;
}

std::string_view WithoutTrailingBlanks(std::string_view text) {
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

// The value of a digit or a letter in the number systems that use it; higher than any base for the others.
std::uint32_t DigitOf(char character) {
  if (character >= '0' && character <= '9') return static_cast<std::uint32_t>(character - '0');
  const char letter = core::LowerByte(character);
  if (letter >= 'a' && letter <= 'f') return static_cast<std::uint32_t>(letter - 'a' + 10);
  return 99;
}

// Takes the prefix that tells the base off the front: "0x", "0o" and "0b", lower case only.
std::uint32_t TakeBase(std::string_view& text) {
  const std::string_view prefix = text.substr(0, 2);
  const std::uint32_t base = prefix == "0x" ? 16 : prefix == "0o" ? 8 : prefix == "0b" ? 2 : 10;
  if (base != 10) text.remove_prefix(2);
  return base;
}

std::string CutFor(std::size_t size, std::string_view text) {
  return std::string(text.substr(0, size == 0 ? 0 : size - 1));
}

// A list needs two final NULs, so it loses one byte more than a value does.
std::string ListFor(std::size_t size, std::string names, std::string_view default_value) {
  if (names.empty()) return CutFor(size, WithoutTrailingBlanks(default_value));
  names.resize(std::min(names.size(), size < 2 ? 0 : size - 2));
  return names;
}

}  // namespace

IniFile::IniFile(std::string_view bytes) : lines_(LinesOf(bytes)) {}

std::string IniFile::Bytes() const {
  std::string bytes;
  for (const Line& line : lines_) {
    bytes += line.text;
    bytes += line.end;
  }
  return bytes;
}

std::string IniFile::GetString(std::string_view section, std::string_view key, std::string_view default_value,
                               std::size_t size) const {
  const std::size_t header = FindSection(section);
  const std::size_t at = header == lines_.size() ? header : FindKey(header, key);
  if (at == lines_.size() || lines_[at].kind != Kind::kEntry)
    return CutFor(size, WithoutTrailingBlanks(default_value));
  return CutFor(size, ValueOf(lines_[at]));
}

std::uint32_t IniFile::GetInt(std::string_view section, std::string_view key,
                              std::int32_t default_value) const {
  const std::string value = GetString(section, key, "", std::string::npos);
  if (value.empty()) return static_cast<std::uint32_t>(default_value);
  std::string_view text = Strip(value);
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  const std::uint32_t base = TakeBase(text);
  std::uint32_t number = 0;
  for (; !text.empty() && DigitOf(text.front()) < base; text.remove_prefix(1))
    number = number * base + DigitOf(text.front());
  return negative ? 0 - number : number;
}

std::vector<core::KeyValue> IniFile::Keys(std::string_view section, std::size_t size) const {
  std::vector<core::KeyValue> keys;
  const std::size_t header = FindSection(section);
  const std::size_t end = header == lines_.size() ? header : EndOfSection(header);
  for (std::size_t i = header; i < end; ++i)
    if (IsKey(lines_[i])) keys.emplace_back(lines_[i].name, CutFor(size, ValueOf(lines_[i])));
  return keys;
}

std::string IniFile::KeyNames(std::string_view section, std::string_view default_value,
                              std::size_t size) const {
  std::string names;
  const std::size_t header = FindSection(section);
  const std::size_t end = header == lines_.size() ? header : EndOfSection(header);
  for (std::size_t i = header; i < end; ++i)
    if (lines_[i].kind == Kind::kEntry && !lines_[i].name.empty()) names += lines_[i].name + '\0';
  return ListFor(size, std::move(names), default_value);
}

std::string IniFile::SectionNames(std::string_view default_value, std::size_t size) const {
  std::string names;
  for (const Line& line : lines_)
    if (line.kind == Kind::kSection && !line.name.empty()) names += line.name + '\0';
  return ListFor(size, std::move(names), default_value);
}

void IniFile::Set(std::string_view section, std::string_view key, std::string_view value) {
  std::string entry(core::Trim(key));
  entry.append("=").append(value);
  const std::size_t header = FindSection(section);
  if (header == lines_.size()) {
    if (!lines_.empty()) EndLine(lines_.size() - 1);
    std::string block = "[";
    block.append(core::Trim(section)).append("]").append(kLineEnd).append(entry).append(kLineEnd);
    return Splice(lines_.size(), 0, block);
  }
  const std::size_t at = FindKey(header, key);
  if (at < lines_.size()) {
    // The name stays as the file spells it.
    std::string line = lines_[at].name;
    line.append("=").append(value).append(lines_[at].end.empty() ? kLineEnd : lines_[at].end);
    return Splice(at, 1, line);
  }
  std::size_t behind = header;
  for (std::size_t i = header; i < EndOfSection(header); ++i)
    if (IsKey(lines_[i])) behind = i;
  EndLine(behind);
  Splice(behind + 1, 0, entry.append(kLineEnd));
}

void IniFile::DeleteKey(std::string_view section, std::string_view key) {
  const std::size_t header = FindSection(section);
  const std::size_t at = header == lines_.size() ? header : FindKey(header, key);
  if (at < lines_.size()) Splice(at, 1, "");
}

void IniFile::DeleteSection(std::string_view section) {
  const std::size_t header = FindSection(section);
  if (header == lines_.size()) return;
  const auto first = lines_.begin() + static_cast<std::ptrdiff_t>(header);
  const auto last = lines_.begin() + static_cast<std::ptrdiff_t>(EndOfSection(header));
  lines_.erase(std::remove_if(first, last, [](const Line& line) { return line.kind != Kind::kComment; }),
               last);
}

std::vector<IniFile::Line> IniFile::LinesOf(std::string_view bytes) {
  std::vector<Line> lines;
  while (!bytes.empty()) {
    const auto feed = bytes.find('\n');
    const std::size_t length = feed == std::string_view::npos ? bytes.size() : feed + 1;
    std::size_t text = feed == std::string_view::npos ? length : feed;
    if (text < length && text > 0 && bytes[text - 1] == '\r') --text;
    lines.push_back(MakeLine(bytes.substr(0, text), bytes.substr(text, length - text)));
    bytes.remove_prefix(length);
  }
  return lines;
}

IniFile::Line IniFile::MakeLine(std::string_view text, std::string_view end) {
  Line line;
  line.text = text;
  line.end = end;
  const std::string_view plain = Strip(text);
  if (plain.empty()) return line;
  if (plain.front() == ';') {
    line.kind = Kind::kComment;
    return line;
  }
  if (plain.front() == '[') {
    line.kind = Kind::kSection;  // "[ name ] anything": what stands behind the first "]" does not count
    line.name = Strip(plain.substr(1, plain.find(']') - 1));  // and without a "]" the name runs to the end
    return line;
  }
  const auto equals = text.find('=');
  line.kind = equals == std::string_view::npos ? Kind::kBareName : Kind::kEntry;
  line.name = Strip(text.substr(0, equals));
  line.value_at = equals == std::string_view::npos ? text.size() : equals + 1;
  return line;
}

std::string_view IniFile::ValueOf(const Line& line) {
  return WithoutQuotes(Strip(std::string_view(line.text).substr(line.value_at)));
}

std::size_t IniFile::FindSection(std::string_view section) const {
  const std::string_view name = core::Trim(section);
  std::size_t i = 0;
  while (i < lines_.size() && !(lines_[i].kind == Kind::kSection && core::EqualNoCase(lines_[i].name, name)))
    ++i;
  return i;
}

std::size_t IniFile::EndOfSection(std::size_t header) const {
  std::size_t i = header + 1;
  while (i < lines_.size() && lines_[i].kind != Kind::kSection) ++i;
  return i;
}

std::size_t IniFile::FindKey(std::size_t header, std::string_view key) const {
  const std::string_view name = core::Trim(key);
  for (std::size_t i = header + 1; i < lines_.size() && lines_[i].kind != Kind::kSection; ++i)
    if (IsKey(lines_[i]) && core::EqualNoCase(lines_[i].name, name)) return i;
  return lines_.size();
}

void IniFile::Splice(std::size_t at, std::size_t count, std::string_view bytes) {
  // Read again, because a text written as given may hold a line end or make a header.
  auto lines = LinesOf(bytes);
  const auto first = lines_.begin() + static_cast<std::ptrdiff_t>(at);
  const auto next = lines_.erase(first, first + static_cast<std::ptrdiff_t>(count));
  lines_.insert(next, std::make_move_iterator(lines.begin()), std::make_move_iterator(lines.end()));
}

void IniFile::EndLine(std::size_t at) {
  if (lines_[at].end.empty()) lines_[at].end = kLineEnd;
}

bool WriteProfileString(std::optional<std::string_view> section, std::optional<std::string_view> key,
                        std::optional<std::string_view> value, std::optional<std::string>& file) {
  if (!section) return false;
  IniFile ini(file ? std::string_view(*file) : std::string_view());
  if (!key)
    ini.DeleteSection(*section);
  else if (!value)
    ini.DeleteKey(*section, *key);
  else
    ini.Set(*section, *key, *value);
  file = ini.Bytes();
  return true;
}

}  // namespace zendrix::settings
