// RegIni: what the program keeps between runs, in ExeName.ini of the program folder, guarded by its hash side file.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "core/app_state.h"
#include "core/error_log.h"
#include "core/hash_utils.h"
#include "core/settings_values.h"

namespace zendrix::settings {

// A row of the Options dialog's lists.
struct SelectedText {
  std::string text;
  bool selected = false;
};

class RegIni {
 public:
  RegIni(core::AppState& state, core::ErrorLog& log);

  // Fills AppState::settings, with defaults, write-backs and thresholds. Does not refresh the hash: the next write
  // through one of the operations below does. A run-time error is fatal ("RegIni:ReadRegInfo").
  void ReadRegInfo();
  // Writes the whole catalogue, then refreshes the hash.
  void SaveRegInfo(const std::vector<SelectedText>& monitors, const std::vector<SelectedText>& columns);
  // One write and the hash, as one change of the pair.
  void SaveSettingHashed(const std::string& section, const std::string& key, const std::string& value);
  // Writes only if the key reads as empty; always refreshes the hash. A run-time error is fatal ("RegIni:SaveSetwChk").
  void SaveSetwChk(const std::string& section, const std::string& key, const std::string& value);

  // Several keys of one section as one change of the pair.
  void SaveSection(const std::string& section, const std::vector<core::KeyValue>& values);

  // Place of a window or control; the four properties only.
  void SaveFormPlace(const widgets::Form& form);
  void LoadFormPlace(widgets::Form& form);
  // Place and state; nothing is written for a minimised form.
  void SaveWindowState(const widgets::Form& form);
  void LoadWindowState(widgets::Form& form);
  // Column widths of a grid by index; columns 5, 6 and 7 are always stored as 0.
  void SaveColWidths(const std::string& grid_name, const std::vector<int>& widths);
  // Sets the widths found; false if there is no such section.
  bool LoadColWidths(const std::string& grid_name, std::vector<int>& widths);

  std::string IniPath() const;

 private:
  core::AppState& state_;
  core::ErrorLog& log_;
  core::HashUtils hashes_;
};

// NormalTop, SuspiciousTop and the three floors from Sensitivity, in single precision.
void DeriveThresholds(core::Settings& settings);

}  // namespace zendrix::settings
