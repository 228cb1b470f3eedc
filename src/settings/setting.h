// CSetting: reading and writing one sectioned INI file with the rules of the platform's profile functions
// (see ini_file.h). Nothing is kept in memory: every read goes to the file, every write replaces it as a
// whole. Only one that is told to hold the contents works on these, and whoever told it so writes them.
// Section and key names do not regard case. Texts are single-byte (Windows-1252) and end at their first NUL.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/app_state.h"
#include "core/run_time_error.h"
#include "core/settings_values.h"
#include "settings/ini_file.h"

namespace zendrix::settings {

// Buffers of the profile functions, final NUL included: limits of the design.
inline constexpr std::size_t kValueBuffer = 128;
inline constexpr std::size_t kListBuffer = 2048;

// Numbers that the operations raise, as the signed 32-bit numbers which error texts show.
inline constexpr int kWriteSettingError = static_cast<int>(0x80040202);
inline constexpr int kReadSettingError = static_cast<int>(0x80040203);
inline constexpr int kReadSectionError = static_cast<int>(0x80040204);
inline constexpr int kDeleteKeyError = static_cast<int>(0x80040205);

// The error that every operation of CSetting raises, built from the error that it met. To everybody who does
// not ask for its source it is a run-time error like any other.
struct SettingError : core::RunTimeError {
  SettingError(int the_number, std::string the_source, std::string the_description)
      : RunTimeError{the_number, std::move(the_description)}, source(std::move(the_source)) {}

  std::string source;  // "CSetting.GetSettingStr", ...
};

class CSetting {
 public:
  explicit CSetting(core::AppState& state) : state_(state) {}

  // With an empty name the executable's name is taken. The file is ProgramFolder/name.ini.
  void Init(const std::string& application_name = "", int save_mode = 1);
  // Works on exactly this file.
  void InitFile(const std::string& path);
  // From here on every operation works on these contents instead of the file; without any it is an empty
  // file. The one without an argument reads the file, once, and hands back what it read.
  void Hold(const platform::Result<std::string>& contents);
  platform::Result<std::string> Hold();
  // The contents held, with all changes.
  std::string Held() const { return ini_.Bytes(); }
  // 0 stands for a per-user store of the platform. There is none here: the file serves every mode.
  int SaveMode() const { return save_mode_; }
  void SetSaveMode(int mode) { save_mode_ = mode; }
  const std::string& path() const { return path_; }

  // At most 127 characters; trimmed. The default goes through the same cutting and trimming.
  std::string GetSettingStr(const std::string& section, const std::string& key,
                            const std::string& default_value);
  // The low 16 bits of the number; 0 for a text without digits.
  std::int16_t GetSettingInt(const std::string& section, const std::string& key, std::int16_t default_value);
  // Keys with their values, or nothing when the section has none.
  std::optional<std::vector<core::KeyValue>> GetSettingAll(const std::string& section);
  std::optional<std::vector<std::string>> GetSectionNames();
  // Those of the keys, each once, for which GetSettingStr gives nothing. One pass over the section, however
  // many keys are asked for.
  std::vector<std::string> KeysWithoutValue(const std::string& section, const std::vector<std::string>& keys);
  // A file that cannot be written stays as it is, without an error.
  void SaveSettingStr(const std::string& section, const std::string& key, const std::string& value);
  void SaveSettingInt(const std::string& section, const std::string& key, std::int16_t value);
  // Raises when the file cannot be written. A missing file is created empty; a missing key is no error.
  void DeleteKey(const std::string& section, const std::string& key);

 private:
  void EnsureInit();
  // What is held, or else the file as it is now.
  const IniFile& Contents();
  // Changes one key, or deletes it without a value; false when the file could not be read or written.
  bool Write(const std::string& section, const std::string& key, std::optional<std::string_view> value);

  core::AppState& state_;
  std::string application_name_;
  std::string path_;
  int save_mode_ = 1;
  bool held_ = false;
  IniFile ini_;  // what is held, or the file as the last operation read it
};

}  // namespace zendrix::settings
