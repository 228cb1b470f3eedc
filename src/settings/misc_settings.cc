#include "settings/misc_settings.h"

#include <array>
#include <stdexcept>
#include <utility>

#include "core/number_rules.h"

namespace zendrix::settings {
namespace {

using core::Settings;

template <class Member, std::size_t size>
using Keys = std::array<std::pair<Member Settings::*, const char*>, size>;

constexpr Keys<bool, 4> kFlags = {{{&Settings::ShowDetailsOpen, "DetSho"},
                                   {&Settings::PopOrigHigh, "PopOrigHigh"},
                                   {&Settings::PopNotifyMs, "PopNotifyMs"},
                                   {&Settings::DontAsk, "DontAsk"}}};
constexpr Keys<std::string, 6> kTexts = {{{&Settings::ldAlert, "ldAlert"},
                                          {&Settings::ldErlog, "ldErlog"},
                                          {&Settings::ldUIErlog, "ldUIErlog"},
                                          {&Settings::enblAlr, "enblAlr"},
                                          {&Settings::TSurv, "TSurv"},
                                          {&Settings::TTour, "TTour"}}};
constexpr Keys<float, 4> kNumbers = {{{&Settings::ShRskLvl, "ShRskLvl"},
                                      {&Settings::Sensitivity, "Se"},
                                      {&Settings::NormalTop, "No"},
                                      {&Settings::SuspiciousTop, "Su"}}};

template <class Member, std::size_t size>
const char* KeyOf(const Keys<Member, size>& keys, Member Settings::*member) {
  for (const auto& [each, key] : keys)
    if (each == member) return key;
  throw std::logic_error("no single key of the section Misc");
}

}  // namespace

void MiscSettings::Set(bool Settings::*flag, bool on) {
  const char* key = KeyOf(kFlags, flag);
  state_.settings.*flag = on;
  reg_ini_.SaveSettingHashed("Misc", key, on ? "1" : "0");
  changed.Raise();
}

void MiscSettings::Set(std::string Settings::*text, const std::string& value) {
  const char* key = KeyOf(kTexts, text);
  state_.settings.*text = value;
  reg_ini_.SaveSettingHashed("Misc", key, value);
  changed.Raise();
}

void MiscSettings::Set(float Settings::*number, float value) {
  const char* key = KeyOf(kNumbers, number);
  state_.settings.*number = value;
  reg_ini_.SaveSettingHashed("Misc", key, core::TextOf(value, state_.seams.locale.Current()));
  changed.Raise();
}

}  // namespace zendrix::settings
