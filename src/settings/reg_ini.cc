#include "settings/reg_ini.h"

#include <optional>
#include <unordered_set>
#include <utility>

#include "core/date_rules.h"
#include "core/guards.h"
#include "core/letter_case.h"
#include "core/moments.h"
#include "core/number_rules.h"
#include "core/path_text.h"
#include "core/text_rules.h"

namespace zendrix::settings {
namespace {

constexpr float kDefaultSensitivity = 1.1F;

// Reads the keys of the catalogue, applying defaults and writing them back.
class Catalogue {
 public:
  Catalogue(CSetting& file, const platform::LocaleInfo& locale) : file_(file), locale_(locale) {}

  std::string Misc(const std::string& key, const std::string& default_value) {
    return file_.GetSettingStr("Misc", key, default_value);
  }
  // The default is stored when the key is absent.
  std::string OrStored(const std::string& section, const std::string& key, const std::string& default_value) {
    if (auto text = Value(section, key)) return *std::move(text);
    file_.SaveSettingStr(section, key, default_value);
    return default_value;
  }
  // A flag that is set is stored again.
  bool Flag(const std::string& key, const std::string& default_value) {
    const bool set = Misc(key, default_value) == "1";
    if (set) file_.SaveSettingStr("Misc", key, "1");
    return set;
  }
  // The default is the number 1.1 in any regional settings, so that it is not read through its text.
  float Sensitivity() {
    const auto text = Value("Misc", "Se");
    if (text == "0") file_.SaveSettingStr("Misc", "Se", core::TextOf(kDefaultSensitivity, locale_));
    return !text || text == "0" ? kDefaultSensitivity : core::CSng(*text, locale_);
  }
  void StoreNumber(const std::string& key, float value) {
    file_.SaveSettingStr("Misc", key, core::TextOf(value, locale_));
  }

 private:
  // Nothing for an absent key. A key whose value is empty has that one: the profile functions hand out a
  // default only for a key that is not there, so two of them tell the two apart.
  std::optional<std::string> Value(const std::string& section, const std::string& key) {
    std::string text = file_.GetSettingStr(section, key, "");
    if (text.empty() && !file_.GetSettingStr(section, key, "1").empty()) return std::nullopt;
    return text;
  }

  CSetting& file_;
  const platform::LocaleInfo& locale_;
};

std::string FirstLine(const std::string& text) {
  return text.substr(0, text.find_first_of(std::string_view("\r\n\0", 3)));
}

// Names of monitors come from the monitoring file, that is, from anybody. One that would open a section,
// become a comment or be split elsewhere is never read back; it would be added again at every start. Nor is
// one that a list of keys has no room for.
bool CanBeKey(const std::string& name) {
  constexpr std::string_view kStripped =
      "\t\v\f";  // from a name that is read, but not from one that is sought
  constexpr std::size_t kLongest = kListBuffer - 2;  // two NULs end a list
  const std::string_view key = core::Trim(name);
  const auto is_stripped = [&](char end) { return kStripped.find(end) != std::string_view::npos; };
  return !key.empty() && key.size() <= kLongest && key.front() != '[' && key.front() != ';' &&
         !is_stripped(key.front()) && !is_stripped(key.back()) &&
         key.find_first_of(std::string_view("=\r\n\0", 4)) == std::string_view::npos;
}

// Whether there is something to write. What could not be read must not be replaced.
bool IsChanged(const platform::Result<std::string>& old, const CSetting& file) {
  if (old) return file.Held() != old.value();
  return old.error().kind == platform::ErrorKind::kNotFound && !file.Held().empty();
}

std::string PlaceSection(const std::string& name) {
  return name + " Settings";
}

Place PlaceOf(const widgets::Form& form) {
  return {form.top.Get(), form.left.Get(), form.height.Get(), form.width.Get()};
}

std::vector<core::KeyValue> ValuesOf(const Place& place) {
  return {{"Top", std::to_string(place.Top)},
          {"Left", std::to_string(place.Left)},
          {"Height", std::to_string(place.Height)},
          {"Width", std::to_string(place.Width)}};
}

int* PropertyOf(Place& place, const std::string& key) {
  if (core::EqualNoCase(key, "Top")) return &place.Top;
  if (core::EqualNoCase(key, "Left")) return &place.Left;
  if (core::EqualNoCase(key, "Height")) return &place.Height;
  if (core::EqualNoCase(key, "Width")) return &place.Width;
  return nullptr;
}

// Two keys are written in another spelling than they are read in.
std::string WrittenKey(const std::string& key) {
  if (key == "NSlots") return "Nslots";
  if (key == "TChart") return "TCHart";
  return key;
}

}  // namespace

RegIni::RegIni(core::AppState& state, core::ErrorLog& log)
    : state_(state), log_(log), hashes_(state.seams.files, state.seams.family) {}

std::string RegIni::IniPath() const {
  return platform::JoinPath(state_.ProgramFolder, state_.ExeName + ".ini");
}

void RegIni::ReadRegInfo() {
  core::OrFatal(log_, "RegIni:ReadRegInfo", [&] {
    const bool first = std::exchange(state_.FirstStart, false);
    const Contents contents = first ? state_.seams.files.ReadAll(IniPath()) : ReadVerified();
    CSetting file = File();
    file.Hold(contents);
    const auto write_back = [&] {
      // What was never there is no loss to tell of, and the next start finds a pair that fits.
      if (first) return Replace(contents, file);
      if (IsChanged(contents, file)) (void)state_.seams.files.WriteAll(IniPath(), file.Held()).ok();
    };
    try {
      ReadCatalogue(file);
    } catch (const core::RunTimeError&) {
      write_back();  // the defaults of the keys in front of the one that cannot be read
      throw;
    }
    write_back();
  });
}

CSetting RegIni::File() const {
  CSetting file(state_);
  file.Init(state_.ExeName, 1);
  return file;
}

RegIni::Contents RegIni::ReadVerified() {
  const std::string path = IniPath();
  if (auto verified = hashes_.ReadVerified(path)) return std::move(*verified);
  state_.seams.message_boxes.Show({state_.ProductName, "Invalid configuration file. Loading default values",
                                   platform::BoxIcon::kInformation, platform::BoxButtons::kOk});
  log_.WriteLog("ReadRegInfo",
                "Invalid configuration file " + core::PathText(path) + ". Loading default values");
  if (state_.seams.files.Exists(path)) static_cast<void>(state_.seams.files.Remove(path));
  return state_.seams.files.ReadAll(path);
}

void RegIni::ReadCatalogue(CSetting& file) {
  const platform::LocaleInfo& locale = state_.seams.locale.Current();
  core::Settings& settings = state_.settings;
  Catalogue catalogue(file, locale);

  settings.MonitorStates = file.GetSettingAll("Monitors").value_or(std::vector<core::KeyValue>());
  settings.ColumnStates = file.GetSettingAll("Columns").value_or(std::vector<core::KeyValue>());
  settings.SelColor = core::CLng(catalogue.OrStored("Grid", "SelColor", "8421631"), locale);
  settings.SSColor = core::CLng(catalogue.OrStored("Grid", "SSColor", "16744576"), locale);
  settings.NSlots = core::CByte(catalogue.OrStored("Tline", "Nslots", "30"), locale);
  settings.TSlots = core::CByte(catalogue.OrStored("Tline", "TSlots", "1"), locale);
  settings.TChart = catalogue.OrStored("Tline", "TCHart", "D");
  settings.ldAlert = catalogue.Misc("ldAlert", "");
  settings.ldErlog = catalogue.Misc("ldErlog", "");
  settings.ldUIErlog = catalogue.Misc("ldUIErlog", "");
  settings.enblAlr = catalogue.Misc("enblAlr", "0");
  // The floor that the previous reading left, 0 in the first one of the process.
  const std::string shown_from = core::TextOf(settings.SuspiciousFrom, locale);
  settings.ShRskLvl = core::CSng(catalogue.Misc("ShRskLvl", shown_from), locale);
  settings.ShowDetailsOpen = catalogue.Flag("DetSho", "1");
  const core::Date now = core::Now(state_.seams.clock, state_.seams.family);
  settings.IniDate = catalogue.OrStored("Misc", "IniDate", core::FormatDate(now, "Short Date", locale));
  settings.TSurv = catalogue.OrStored("Misc", "TSurv", "N");
  settings.TTour = catalogue.OrStored("Misc", "TTour", "N");
  settings.Sensitivity = catalogue.Sensitivity();
  DeriveThresholds(settings);
  catalogue.StoreNumber("No", settings.NormalTop);
  catalogue.StoreNumber("Su", settings.SuspiciousTop);
  settings.PopOrigHigh = catalogue.Flag("PopOrigHigh", "1");
  settings.PopNotifyMs = catalogue.Flag("PopNotifyMs", "1");
  settings.DontAsk = catalogue.Flag("DontAsk", "0");
}

void RegIni::SaveRegInfo(const std::vector<SelectedText>& monitors,
                         const std::vector<SelectedText>& columns) {
  hashes_.FinishInterruptedSave(IniPath());
  CSetting file = File();
  const Contents old = file.Hold();
  std::vector<std::string> names;
  for (const auto& monitor : monitors) names.push_back(monitor.text);
  const std::vector<std::string> new_names = WithoutValue(file, "Monitors", names);
  std::unordered_set<std::string> refused;
  if (TooMany(new_names)) refused.insert(new_names.begin(), new_names.end());
  std::vector<Write> writes;
  const auto add_list = [&](const std::string& section, const std::vector<SelectedText>& rows) {
    for (const auto& row : rows)
      if (CanBeKey(row.text) && !refused.contains(row.text))
        writes.push_back({section, row.text, row.selected ? "1" : "0"});
  };
  add_list("Monitors", monitors);
  add_list("Columns", columns);
  for (const auto& value : CatalogueValues(state_.settings, state_.seams.locale.Current())) {
    // The sensitivity and what follows from it belong to the e-mail pane.
    if (value.key == "Se" || value.key == "No" || value.key == "Su") continue;
    writes.push_back({value.section, WrittenKey(value.key), value.text});
  }
  Store(file, old, writes);
}

void RegIni::SaveSettingHashed(const std::string& section, const std::string& key, const std::string& value) {
  Store({{section, key, value}});
}

void RegIni::SaveSetwChk(const std::string& section, const std::string& key, const std::string& value) {
  core::OrFatal(log_, "RegIni:SaveSetwChk", [&] { SaveMissing(section, {key}, value); });
}

void RegIni::RegisterMonitors(const std::vector<std::string>& names) {
  if (names.empty()) return;
  core::OrFatal(log_, "RegIni:SaveSetwChk", [&] { SaveMissing("Monitors", names, "1"); });
}

void RegIni::SaveMissing(const std::string& section, const std::vector<std::string>& keys,
                         const std::string& value) {
  hashes_.FinishInterruptedSave(IniPath());
  CSetting file = File();
  const Contents old = file.Hold();
  std::vector<std::string> missing = WithoutValue(file, section, keys);
  if (TooMany(missing)) missing.clear();
  for (const auto& key : missing) file.SaveSettingStr(section, key, FirstLine(value));
  Replace(old, file);
}

std::vector<std::string> RegIni::WithoutValue(CSetting& file, const std::string& section,
                                              const std::vector<std::string>& keys) {
  std::vector<std::string> missing = file.KeysWithoutValue(section, keys);
  std::erase_if(missing, [](const std::string& key) { return !CanBeKey(key); });
  return missing;
}

bool RegIni::TooMany(const std::vector<std::string>& names) {
  if (names.size() <= kMostNewMonitors) return false;
  log_.WriteLog("RegisterMonitors", std::to_string(names.size()) + " new monitor names are more than " +
                                        std::to_string(kMostNewMonitors) + ". They are not stored.");
  return true;
}

void RegIni::SaveSection(const std::string& section, const std::vector<core::KeyValue>& values) {
  std::vector<Write> writes;
  for (const auto& [key, value] : values) writes.push_back({section, key, value});
  Store(writes);
}

void RegIni::SaveFormPlace(const widgets::Form& form) {
  SaveFormPlace(form.name(), PlaceOf(form));
}

void RegIni::SaveFormPlace(const std::string& control_name, const Place& place) {
  SaveSection(PlaceSection(control_name), ValuesOf(place));
}

void RegIni::LoadFormPlace(widgets::Form& form) {
  Place place = PlaceOf(form);
  LoadFormPlace(form.name(), place);
  form.top = place.Top;
  form.left = place.Left;
  form.height = place.Height;
  form.width = place.Width;
}

void RegIni::LoadFormPlace(const std::string& control_name, Place& place) {
  const auto pairs = File().GetSettingAll(PlaceSection(control_name));
  if (!pairs) return;
  for (const auto& [key, value] : *pairs)
    if (int* property = PropertyOf(place, key)) *property = core::RoundToLong(core::Val(value));
}

void RegIni::SaveWindowState(const widgets::Form& form) {
  if (form.state.Get() == widgets::WindowState::kMinimised) return;
  std::vector<core::KeyValue> values = {{"WState", std::to_string(static_cast<int>(form.state.Get()))}};
  for (auto& value : ValuesOf(PlaceOf(form))) values.push_back(std::move(value));
  SaveSection(PlaceSection(form.name()), values);
}

void RegIni::LoadWindowState(widgets::Form& form) {
  if (core::Val(File().GetSettingStr(PlaceSection(form.name()), "WState", "")) == 2)
    form.state = widgets::WindowState::kMaximised;
  else
    LoadFormPlace(form);
}

void RegIni::SaveColWidths(const std::string& grid_name, const std::vector<int>& widths) {
  std::vector<core::KeyValue> values;
  for (std::size_t i = 0; i < widths.size(); ++i)
    values.emplace_back(std::to_string(i), std::to_string(widths[i]));
  for (const char* hidden : {"5", "6", "7"}) values.emplace_back(hidden, "0");
  SaveSection(grid_name + " Colwidths", values);
}

bool RegIni::LoadColWidths(const std::string& grid_name, std::vector<int>& widths) {
  const auto pairs = File().GetSettingAll(grid_name + " ColWidths");
  if (!pairs) return false;
  const platform::LocaleInfo& locale = state_.seams.locale.Current();
  for (std::size_t i = 0; i < pairs->size() && i < widths.size(); ++i)
    widths[i] = core::CInt((*pairs)[i].second, locale);
  return true;
}

void RegIni::Store(const std::vector<Write>& writes) {
  hashes_.FinishInterruptedSave(IniPath());
  CSetting file = File();
  const Contents old = file.Hold();
  Store(file, old, writes);
}

void RegIni::Store(CSetting& file, const Contents& old, const std::vector<Write>& writes) {
  // What stands behind a line break would become a line of its own, and is never read back as part of the
  // value.
  for (const auto& write : writes) file.SaveSettingStr(write.section, write.key, FirstLine(write.value));
  Replace(old, file);
}

void RegIni::Replace(const Contents& old, const CSetting& changed) {
  const std::string path = IniPath();
  if (!IsChanged(old, changed)) {
    if (old) hashes_.StoreHashOf(path, old.value());
    return;
  }
  try {
    hashes_.SaveWithHash(path, changed.Held());
  } catch (const core::RunTimeError&) {
    // The outcome of a write is not examined; the hash is refreshed all the same.
    if (!hashes_.VerifyFileHash(path)) hashes_.StoreFileHash(path);
  }
}

}  // namespace zendrix::settings
