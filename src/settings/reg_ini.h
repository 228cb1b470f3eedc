// RegIni: what the program keeps between runs, in ExeName.ini of the program folder, guarded by its hash side
// file.
//
// Every operation but ReadRegInfo changes the file and its hash as one: a kill at any instant leaves, for the
// next start, the old pair or the new one. The file is read once and written once by each, and only when it
// changes: a start that finds everything in its place writes nothing. A file that cannot be written keeps
// what it has, and nobody is told; only a number or a text that cannot be read raises. Texts are single-byte
// (Windows-1252).
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "core/app_state.h"
#include "core/error_log.h"
#include "core/hash_utils.h"
#include "core/settings_values.h"
#include "settings/setting.h"

namespace zendrix::settings {

// More new names than this at one time come from no Agent: they are told in the log, and none is stored.
inline constexpr std::size_t kMostNewMonitors = 1000;

// A row of the Options dialog's lists.
struct SelectedText {
  std::string text;
  bool selected = false;
};

// Place of a window or of a control, in the screen toolkit's units.
struct Place {
  int Top = 0, Left = 0, Height = 0, Width = 0;
  bool operator==(const Place&) const = default;
};

// One single key of the catalogue and its value as it would be saved.
struct CatalogueValue {
  std::string section;
  std::string key;
  std::string text;
};

// All single keys in the order of the catalogue, flags as "1" and "0", numbers in the user's decimal form.
std::vector<CatalogueValue> CatalogueValues(const core::Settings& settings,
                                            const platform::LocaleInfo& locale);

class RegIni {
 public:
  RegIni(core::AppState& state, core::ErrorLog& log);

  // Fills AppState::settings from the bytes that were verified, with defaults, write-backs and thresholds. A
  // file that does not match its hash is deleted after a message. Does not refresh the hash: the next write
  // through one of the operations below does. On the first start of an
  // installed console there is nothing to verify: the pair is made, and nothing said. A run-time error is
  // fatal ("RegIni:ReadRegInfo").
  void ReadRegInfo();
  // Writes the whole catalogue but for the sensitivity and its thresholds, then refreshes the hash. More than
  // kMostNewMonitors new names are left out.
  void SaveRegInfo(const std::vector<SelectedText>& monitors, const std::vector<SelectedText>& columns);
  // One write and the hash. A value ends at its first line break.
  void SaveSettingHashed(const std::string& section, const std::string& key, const std::string& value);
  // Writes only if the key reads as empty; always refreshes the hash. A run-time error is fatal
  // ("RegIni:SaveSetwChk"). A name that could not be read back as a key ("[x]", ";x", "x=y", nothing) is not
  // written.
  void SaveSetwChk(const std::string& section, const std::string& key, const std::string& value);

  // SaveSetwChk("Monitors", name, "1") for all the names as one change of the pair, in a time that grows with
  // their number and no faster. More than kMostNewMonitors new ones are not stored. No name, no refresh of
  // the hash.
  void RegisterMonitors(const std::vector<std::string>& names);

  // Several keys of one section as one change of the pair.
  void SaveSection(const std::string& section, const std::vector<core::KeyValue>& values);

  // Place of a window; of a control by its name. Loading changes what the file has a value for.
  void SaveFormPlace(const widgets::Form& form);
  void SaveFormPlace(const std::string& control_name, const Place& place);
  void LoadFormPlace(widgets::Form& form);
  void LoadFormPlace(const std::string& control_name, Place& place);
  // Place and state; nothing is written for a minimised form. A form that was maximised is only maximised
  // again.
  void SaveWindowState(const widgets::Form& form);
  void LoadWindowState(widgets::Form& form);
  // Column widths of a grid by index; columns 5, 6 and 7 are always stored as 0.
  void SaveColWidths(const std::string& grid_name, const std::vector<int>& widths);
  // Sets the widths found, by the position of the pair; false if there is no such section.
  bool LoadColWidths(const std::string& grid_name, std::vector<int>& widths);

  std::string IniPath() const;

 private:
  struct Write {
    std::string section, key, value;
  };

  using Contents = platform::Result<std::string>;

  // The file of the settings, not read yet.
  CSetting File() const;
  // The file's contents if they verify; behind the message, what is left of it.
  Contents ReadVerified();
  void ReadCatalogue(CSetting& file);
  // Those of the keys that have no value and could be read back.
  std::vector<std::string> WithoutValue(CSetting& file, const std::string& section,
                                        const std::vector<std::string>& keys);
  // More new names than are stored; a line in the log says so.
  bool TooMany(const std::vector<std::string>& names);
  // Those of the keys that have no value, as one change of the pair.
  void SaveMissing(const std::string& section, const std::vector<std::string>& keys,
                   const std::string& value);
  // All writes as one change of the pair; to a file that was read.
  void Store(const std::vector<Write>& writes);
  void Store(CSetting& file, const Contents& old, const std::vector<Write>& writes);
  // The same of a file that was read and changed: the pair is written if that made a difference, otherwise
  // only a hash that does not fit.
  void Replace(const Contents& old, const CSetting& changed);

  core::AppState& state_;
  core::ErrorLog& log_;
  core::HashUtils hashes_;
};

// NormalTop, SuspiciousTop and the three floors from Sensitivity, in single precision.
void DeriveThresholds(core::Settings& settings);

}  // namespace zendrix::settings
