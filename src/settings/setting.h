// CSetting: reading and writing one sectioned INI file with the rules of the platform's profile functions
// (GetPrivateProfileString, GetPrivateProfileInt, WritePrivateProfileString). Nothing is kept in memory: every read
// goes to the file, every write replaces it as a whole. Section and key names do not regard case.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/app_state.h"
#include "core/settings_values.h"

namespace zendrix::settings {

// The error that every operation of CSetting raises, built from the error that it met.
struct SettingError {
  std::uint32_t number = 0;  // 0x80040202 to 0x80040205
  std::string source;        // "CSetting.GetSettingStr", ...
  std::string description;   // Windows-1252
};

class CSetting {
 public:
  explicit CSetting(core::AppState& state) : state_(state) {}

  // With an empty name the executable's name is taken. The file is ProgramFolder/name.ini.
  void Init(const std::string& application_name = "", int save_mode = 1);
  // Works on exactly this file.
  void InitFile(const std::string& path);
  int SaveMode() const { return save_mode_; }
  void SetSaveMode(int mode) { save_mode_ = mode; }
  const std::string& path() const { return path_; }

  // At most 127 characters; trimmed. The default goes through the same cutting and trimming.
  std::string GetSettingStr(const std::string& section, const std::string& key, const std::string& default_value);
  std::int16_t GetSettingInt(const std::string& section, const std::string& key, std::int16_t default_value);
  // Keys with their values, or nothing when the section has none.
  std::optional<std::vector<core::KeyValue>> GetSettingAll(const std::string& section);
  std::optional<std::vector<std::string>> GetSectionNames();
  void SaveSettingStr(const std::string& section, const std::string& key, const std::string& value);
  void SaveSettingInt(const std::string& section, const std::string& key, std::int16_t value);
  void DeleteKey(const std::string& section, const std::string& key);

 private:
  void EnsureInit();

  core::AppState& state_;
  std::string application_name_;
  std::string path_;
  int save_mode_ = 1;
};

}  // namespace zendrix::settings
