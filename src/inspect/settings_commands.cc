// settings, ini, smtp, valid, token, risk.
#include "alerts/risk.h"
#include "core/hash_utils.h"
#include "core/number_rules.h"
#include "core/tokens.h"
#include "core/validation.h"
#include "inspect/commands.h"
#include "inspect/console.h"
#include "settings/reg_ini.h"
#include "settings/setting.h"
#include "settings/smtp.h"

namespace zendrix::inspect {
namespace {

std::string Bytes(const std::string& word) {
  return platform::BytesFromUtf8(word);
}

int HexDigit(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
  if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
  return -1;
}

// The escapes \xNN, \r, \n, \t and \\ of an argument of `ini`; anything else stands for itself.
std::string Unescape(const std::string& word) {
  const std::string bytes = Bytes(word);
  std::string plain;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const char next = i + 1 < bytes.size() ? bytes[i + 1] : '\0';
    if (bytes[i] != '\\') {
      plain += bytes[i];
    } else if (next == 'r' || next == 'n' || next == 't' || next == '\\') {
      plain += next == 'r' ? '\r' : next == 'n' ? '\n' : next == 't' ? '\t' : '\\';
      ++i;
    } else if (next == 'x' && i + 3 < bytes.size() && HexDigit(bytes[i + 2]) >= 0 &&
               HexDigit(bytes[i + 3]) >= 0) {
      plain += static_cast<char>(HexDigit(bytes[i + 2]) * 16 + HexDigit(bytes[i + 3]));
      i += 3;
    } else {
      plain += bytes[i];
    }
  }
  return plain;
}

Json PairsOf(const std::vector<core::KeyValue>& pairs) {
  Json list = Json::array();
  for (const auto& [key, value] : pairs) list.push_back({Text(key), Text(value)});
  return list;
}

Json CatalogueOf(const core::AppState& state) {
  const auto& settings = state.settings;
  Json values = Json::object();
  values["Monitors"] = PairsOf(settings.MonitorStates);
  values["Columns"] = PairsOf(settings.ColumnStates);
  for (const auto& value : settings::CatalogueValues(settings, state.seams.locale.Current()))
    values[value.section][value.key] = Text(value.text);
  return values;
}

Json ThresholdsOf(const core::AppState& state) {
  const auto& settings = state.settings;
  const auto text = [&](float value) { return Text(core::TextOf(value, state.seams.locale.Current())); };
  return {{"No", text(settings.NormalTop)},
          {"Su", text(settings.SuspiciousTop)},
          {"NormalFrom", text(settings.NormalFrom)},
          {"SuspiciousFrom", text(settings.SuspiciousFrom)},
          {"IntrusionFrom", text(settings.IntrusionFrom)}};
}

void PrintPair(Console& console, const settings::RegIni& reg_ini) {
  auto& seams = console.state().seams;
  core::HashUtils hashes(seams.files, seams.family);
  const bool verified = hashes.VerifyFileHash(reg_ini.IniPath());
  console.Print({{"ini", console.FileText(reg_ini.IniPath())}, {"verified", verified}});
}

std::int16_t ShortNumber(const std::string& word) {
  try {
    std::size_t used = 0;
    const long number = std::stol(word, &used);
    if (used == word.size() && number >= -32768 && number <= 32767) return static_cast<std::int16_t>(number);
  } catch (const std::exception&) {
    // reported below: the word is no number at all, or out of every range
  }
  throw WrongUsage("ini: '" + word + "' is no number from -32768 to 32767");
}

// The operation's result, under the keys that the document has.
Json RunIni(settings::CSetting& file, const Words& words) {
  const std::string& operation = words[1];
  const auto word = [&](std::size_t i) { return Unescape(words[i]); };
  const auto wants = [&](std::size_t count, const char* usage) { RequireWords(words, count, count, usage); };
  if (operation == "str") {
    wants(5, "ini FILE str SECTION KEY DEFAULT");
    return {{"value", Text(file.GetSettingStr(word(2), word(3), word(4)))}};
  }
  if (operation == "int") {
    wants(5, "ini FILE int SECTION KEY DEFAULT");
    return {{"value", file.GetSettingInt(word(2), word(3), ShortNumber(words[4]))}};
  }
  if (operation == "all") {
    wants(3, "ini FILE all SECTION");
    const auto pairs = file.GetSettingAll(word(2));
    return {{"value", pairs ? PairsOf(*pairs) : Json(nullptr)}};
  }
  if (operation == "sections") {
    wants(2, "ini FILE sections");
    const auto names = file.GetSectionNames();
    Json list = names ? Json::array() : Json(nullptr);
    if (names)
      for (const auto& name : *names) list.push_back(Text(name));
    return {{"value", std::move(list)}};
  }
  if (operation == "save") {
    wants(5, "ini FILE save SECTION KEY VALUE");
    file.SaveSettingStr(word(2), word(3), word(4));
  } else if (operation == "saveint") {
    wants(5, "ini FILE saveint SECTION KEY NUMBER");
    file.SaveSettingInt(word(2), word(3), ShortNumber(words[4]));
  } else if (operation == "delete") {
    wants(4, "ini FILE delete SECTION KEY");
    file.DeleteKey(word(2), word(3));
  } else {
    throw WrongUsage("ini: unknown operation '" + operation + "'");
  }
  return Json::object();
}

}  // namespace

void Settings(Console& console, const Words& words) {
  const bool changes = !words.empty();
  if (changes && words[0] != "save" && words[0] != "check")
    throw WrongUsage("settings: unknown operation '" + words[0] + "'");
  RequireWords(words, changes ? 4 : 0, changes ? 4 : 0, "settings [save|check SECTION KEY VALUE]");
  settings::RegIni reg_ini(console.state(), console.log());
  if (changes) {
    if (words[0] == "save")
      reg_ini.SaveSettingHashed(Bytes(words[1]), Bytes(words[2]), Bytes(words[3]));
    else
      reg_ini.SaveSetwChk(Bytes(words[1]), Bytes(words[2]), Bytes(words[3]));
    return PrintPair(console, reg_ini);
  }
  reg_ini.ReadRegInfo();
  console.Print({{"values", CatalogueOf(console.state())},
                 {"thresholds", ThresholdsOf(console.state())},
                 {"ini", console.FileText(reg_ini.IniPath())}});
}

void Ini(Console& console, const Words& words) {
  RequireWords(words, 2, 5, "ini FILE str|int|all|sections|save|saveint|delete ...");
  settings::CSetting file(console.state());
  file.InitFile(console.ResolveFile(words[0]));
  try {
    console.Print(RunIni(file, words));
  } catch (const settings::SettingError& error) {
    console.Print({{"error",
                    {{"number", static_cast<std::int32_t>(error.number)},
                     {"source", Text(error.source)},
                     {"description", Text(error.description)}}}});
  }
}

void Smtp(Console& console, const Words& words) {
  const bool save = !words.empty();
  if (save && words[0] != "save") throw WrongUsage("smtp: unknown operation '" + words[0] + "'");
  RequireWords(words, save ? 4 : 0, save ? 4 : 0, "smtp [save ADDRESS SERVER PORT]");
  if (save)
    settings::SaveSMTPData(console.state(), console.log(),
                           {Bytes(words[1]), Bytes(words[2]), Bytes(words[3])});
  const auto data = settings::LoadSMTPData(console.state(), console.log());
  console.Print({{"Address", Text(data.Address)}, {"Server", Text(data.Server)}, {"Port", Text(data.Port)}});
}

void Valid(Console& console, const Words& words) {
  RequireWords(words, 2, 2, "valid email|server TEXT");
  if (words[0] != "email" && words[0] != "server") throw WrongUsage("valid: say email or server");
  const std::string text = Bytes(words[1]);
  console.Print({{"valid", words[0] == "email" ? core::IsValidEmail(text) : core::IsValidServer(text)}});
}

void Token(Console& console, const Words& words) {
  RequireWords(words, 2, 2, "token SOURCE KEY");
  console.Print({{"value", Text(core::TokenValue(Bytes(words[0]), Bytes(words[1])))}});
}

void Risk(Console& console, const Words& words) {
  RequireWords(words, 1, Words().max_size(), "risk VALUE...");
  settings::RegIni(console.state(), console.log()).ReadRegInfo();
  Json risks = Json::array();
  for (const auto& word : words) {
    const auto level =
        alerts::GetRiskName(Bytes(word), console.state().settings, console.state().seams.locale.Current());
    risks.push_back({{"value", word}, {"level", Text(level)}});
  }
  console.Print({{"risks", std::move(risks)}});
}

}  // namespace zendrix::inspect
