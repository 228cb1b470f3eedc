#include "settings/setting.h"

#include <new>
#include <unordered_map>
#include <utility>

#include "core/letter_case.h"
#include "core/text_rules.h"

namespace zendrix::settings {
namespace {

constexpr char kReadSettingText[] = "Error al leer el Setting ";
constexpr char kReadSectionText[] = "Error al leer la Secci\xF3n (Section)";
constexpr char kWriteSettingText[] = "Error al escribir el Setting ";
constexpr char kDeleteKeyText[] = "Error Borrando Clave(Key) ";
constexpr char kProtectedText[] = "Error Borrando Clave(Key) (check if file is protected)";

[[noreturn]] void RaiseFrom(const core::RunTimeError& old, int number, const char* source, const char* text) {
  throw SettingError(number, source,
                     text + ("(" + std::to_string(old.number) + ", " + old.description + ")"));
}

// Runs one operation; whatever goes wrong inside it leaves as the operation's own error.
template <class Body>
auto Guarded(int number, const char* source, const char* text, Body&& body) -> decltype(body()) {
  try {
    return std::forward<Body>(body)();
  } catch (const core::RunTimeError& error) {
    RaiseFrom(error, number, source, text);
  } catch (const std::bad_alloc&) {
    RaiseFrom({core::kOutOfMemory, core::DescriptionOf(core::kOutOfMemory)}, number, source, text);
  }
}

// Texts cross the border to the profile functions as NUL-ended ones.
std::string_view CText(const std::string& text) {
  return std::string_view(text).substr(0, text.find('\0'));
}

std::string CleanProfileText(std::string_view text) {
  const std::string_view trimmed = core::Trim(text);
  return std::string(trimmed.substr(0, trimmed.find('\0')));
}

// The names of a list buffer, or nothing when it holds none: the default "0" has the length 1.
std::optional<std::vector<std::string>> NamesOf(std::string list) {
  if (list.size() < 2) return std::nullopt;
  list += std::string(2, '\0');  // the end of the buffer
  list.resize(list.find(std::string_view("\0\0", 2)));
  std::vector<std::string> names;
  for (const auto name : core::Split(list, std::string_view("\0", 1))) names.emplace_back(name);
  return names;
}

}  // namespace

void CSetting::Init(const std::string& application_name, int save_mode) {
  application_name_ = application_name.empty() ? state_.ExeName : std::string(core::Trim(application_name));
  path_ = platform::JoinPath(state_.ProgramFolder, application_name_ + ".ini");
  save_mode_ = save_mode;
}

void CSetting::InitFile(const std::string& path) {
  application_name_ = path;
  path_ = path;
}

void CSetting::EnsureInit() {
  if (application_name_.empty()) Init("", 0);
}

void CSetting::Hold(const platform::Result<std::string>& contents) {
  held_ = true;
  ini_ = contents ? IniFile(contents.value()) : IniFile();
}

platform::Result<std::string> CSetting::Hold() {
  EnsureInit();
  return Guarded(kReadSettingError, "CSetting.GetSettingStr", kReadSettingText, [&] {
    auto contents = state_.seams.files.ReadAll(path_);
    Hold(contents);
    return contents;
  });
}

// A file that is missing or cannot be read has nothing in it, as for the profile functions.
const IniFile& CSetting::Contents() {
  if (held_) return ini_;
  const auto bytes = state_.seams.files.ReadAll(path_);
  ini_ = bytes ? IniFile(bytes.value()) : IniFile();
  return ini_;
}

// A file that cannot be read is not written either: that would lose what stands in it.
bool CSetting::Write(const std::string& section, const std::string& key,
                     std::optional<std::string_view> value) {
  if (held_) {
    value ? ini_.Set(CText(section), CText(key), *value) : ini_.DeleteKey(CText(section), CText(key));
    return true;
  }
  auto bytes = state_.seams.files.ReadAll(path_);
  if (!bytes && bytes.error().kind != platform::ErrorKind::kNotFound) return false;
  std::optional<std::string> file;
  if (bytes) file = std::move(bytes.value());
  return WriteProfileString(CText(section), CText(key), value, file) &&
         state_.seams.files.WriteAll(path_, *file).ok();
}

std::string CSetting::GetSettingStr(const std::string& section, const std::string& key,
                                    const std::string& default_value) {
  EnsureInit();
  return Guarded(kReadSettingError, "CSetting.GetSettingStr", kReadSettingText, [&] {
    return CleanProfileText(
        Contents().GetString(CText(section), CText(key), CText(default_value), kValueBuffer));
  });
}

std::int16_t CSetting::GetSettingInt(const std::string& section, const std::string& key,
                                     std::int16_t default_value) {
  EnsureInit();
  return Guarded(kReadSettingError, "CSetting.GetSettingInt", kReadSettingText, [&] {
    return static_cast<std::int16_t>(Contents().GetInt(CText(section), CText(key), default_value));
  });
}

std::optional<std::vector<core::KeyValue>> CSetting::GetSettingAll(const std::string& section) {
  using Pairs = std::vector<core::KeyValue>;
  EnsureInit();
  return Guarded(
      kReadSectionError, "CSetting.GetSettingAll", kReadSectionText, [&]() -> std::optional<Pairs> {
        const IniFile& ini = Contents();
        const auto names = NamesOf(ini.KeyNames(CText(section), "0", kListBuffer));
        if (!names) return std::nullopt;
        Pairs pairs;
        for (const auto& name : *names)
          pairs.emplace_back(name, CleanProfileText(ini.GetString(CText(section), name, "", kValueBuffer)));
        return pairs;
      });
}

std::optional<std::vector<std::string>> CSetting::GetSectionNames() {
  EnsureInit();
  return Guarded(kReadSectionError, "CSetting.GetSectionNames", kReadSectionText,
                 [&] { return NamesOf(Contents().SectionNames("0", kListBuffer)); });
}

std::vector<std::string> CSetting::KeysWithoutValue(const std::string& section,
                                                    const std::vector<std::string>& keys) {
  EnsureInit();
  return Guarded(kReadSettingError, "CSetting.GetSettingStr", kReadSettingText, [&] {
    std::unordered_map<std::string, bool> has_value;
    for (const auto& [name, value] : Contents().Keys(CText(section), kValueBuffer))
      has_value.try_emplace(core::LowerCase(name), !CleanProfileText(value).empty());
    std::vector<std::string> without;
    for (const auto& key : keys) {
      bool& answered = has_value[core::LowerCase(core::Trim(CText(key)))];
      if (!answered) without.push_back(key);
      answered = true;
    }
    return without;
  });
}

void CSetting::SaveSettingStr(const std::string& section, const std::string& key, const std::string& value) {
  EnsureInit();
  Guarded(kWriteSettingError, "CSetting.SaveSettingStr", kWriteSettingText, [&] {
    // The outcome is not examined: a protected file keeps what it has.
    Write(section, key, CText(value));
  });
}

void CSetting::SaveSettingInt(const std::string& section, const std::string& key, std::int16_t value) {
  EnsureInit();
  Guarded(kWriteSettingError, "CSetting.SaveSettingInt", kWriteSettingText,
          [&] { Write(section, key, std::to_string(value)); });
}

void CSetting::DeleteKey(const std::string& section, const std::string& key) {
  EnsureInit();
  Guarded(kDeleteKeyError, "CSetting.DeleteKey", kDeleteKeyText, [&] {
    if (!Write(section, key, std::nullopt))
      throw SettingError(kDeleteKeyError, "CSetting.DeleteKey", kProtectedText);
  });
}

}  // namespace zendrix::settings
