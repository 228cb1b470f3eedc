// Settings files are bytes that anybody with access to the folder may have written. An input is a file's text
// and, each behind a byte 1F, a section, a key and a value.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "settings/ini_file.h"

using zendrix::settings::IniFile;

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

std::string_view TakeField(std::string_view& input) {
  const auto end = input.find('\x1F');
  const std::string_view field = input.substr(0, end);
  input = end == std::string_view::npos ? std::string_view() : input.substr(end + 1);
  return field;
}

// Printable, and without anything that has a meaning in the file.
bool IsPlain(std::string_view text) {
  if (text.empty()) return false;
  for (const char c : text)
    if (c <= ' ' || c >= 0x7F || std::string_view("[]=;\"'").find(c) != std::string_view::npos) return false;
  return true;
}

void CheckBuffers(const IniFile& ini, std::string_view section, std::string_view key) {
  for (const std::size_t size : {0U, 1U, 2U, 7U, 128U, 2048U}) {
    Require(ini.GetString(section, key, key, size).size() <= (size == 0 ? 0 : size - 1));
    Require(ini.KeyNames(section, "0", size).size() <= (size == 0 ? 0 : size - 1));
    Require(ini.SectionNames("0", size).size() <= (size == 0 ? 0 : size - 1));
  }
  (void)ini.GetInt(section, key, 7);
}

// The list of a section's keys and the question for one of them give one answer.
void CheckKeys(const IniFile& ini, std::string_view section) {
  const auto keys = ini.Keys(section, 128);
  for (std::size_t i = 0; i < keys.size() && i < 20; ++i) {
    const std::string& name = keys[i].first;
    if (name.empty() || name.front() == ' ' || name.back() == ' ') continue;
    const std::string value = ini.GetString(section, name, "", 128);
    // Of two keys of one name the first counts.
    if (i == 0) Require(value == keys[i].second);
    Require(std::any_of(keys.begin(), keys.begin() + static_cast<std::ptrdiff_t>(i) + 1,
                        [&](const auto& pair) { return pair.second == value; }));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::string_view text = TakeField(input);
  const std::string_view section = TakeField(input);
  const std::string_view key = TakeField(input);
  const std::string_view value = TakeField(input);

  IniFile ini(text);
  Require(ini.Bytes() == text);
  CheckBuffers(ini, section, key);
  CheckKeys(ini, section);

  ini.Set(section, key, value);
  const std::string once = ini.Bytes();
  Require(IniFile(once).Bytes() == once);
  if (IsPlain(section) && IsPlain(key) && IsPlain(value)) {
    Require(ini.GetString(section, key, "", once.size() + 1) == value);
    Require(IniFile(once).GetString(section, key, "", once.size() + 1) == value);
    ini.Set(section, key, value);
    Require(ini.Bytes() == once);
  }
  ini.DeleteKey(section, key);
  Require(ini.Bytes().size() <= once.size());
  ini.DeleteSection(section);
  Require(ini.Bytes().size() <= once.size());
  Require(IniFile(ini.Bytes()).Bytes() == ini.Bytes());
  return 0;
}
