#include "core/number_rules.h"
#include "settings/reg_ini.h"

namespace zendrix::settings {
namespace {

constexpr float kHighestNormalTop = 96;
constexpr float kHighestSuspiciousTop = 98;
constexpr float kFloorStep = 0.001F;

}  // namespace

std::vector<CatalogueValue> CatalogueValues(const core::Settings& settings,
                                            const platform::LocaleInfo& locale) {
  const auto flag = [](bool value) { return std::string(value ? "1" : "0"); };
  const auto number = [&](float value) { return core::TextOf(value, locale); };
  return {
      {"Grid", "SelColor", std::to_string(settings.SelColor)},
      {"Grid", "SSColor", std::to_string(settings.SSColor)},
      {"Tline", "NSlots", std::to_string(settings.NSlots)},
      {"Tline", "TSlots", std::to_string(settings.TSlots)},
      {"Tline", "TChart", settings.TChart},
      {"Misc", "ldAlert", settings.ldAlert},
      {"Misc", "ldErlog", settings.ldErlog},
      {"Misc", "ldUIErlog", settings.ldUIErlog},
      {"Misc", "enblAlr", settings.enblAlr},
      {"Misc", "ShRskLvl", number(settings.ShRskLvl)},
      {"Misc", "DetSho", flag(settings.ShowDetailsOpen)},
      {"Misc", "IniDate", settings.IniDate},
      {"Misc", "TSurv", settings.TSurv},
      {"Misc", "TTour", settings.TTour},
      {"Misc", "Se", number(settings.Sensitivity)},
      {"Misc", "No", number(settings.NormalTop)},
      {"Misc", "Su", number(settings.SuspiciousTop)},
      {"Misc", "PopOrigHigh", flag(settings.PopOrigHigh)},
      {"Misc", "PopNotifyMs", flag(settings.PopNotifyMs)},
      {"Misc", "DontAsk", flag(settings.DontAsk)},
  };
}

void DeriveThresholds(core::Settings& settings) {
  // No sensitivity at all is the limit of ever smaller ones.
  const bool none = settings.Sensitivity == 0;
  settings.NormalTop = none ? 100 : 1 / settings.Sensitivity * 100;
  if (settings.NormalTop >= 100) settings.NormalTop = kHighestNormalTop;
  settings.SuspiciousTop = settings.NormalTop / 2 + 50;
  if (settings.SuspiciousTop >= 100) settings.SuspiciousTop = kHighestSuspiciousTop;
  settings.NormalFrom = 0;
  settings.SuspiciousFrom = settings.NormalTop + kFloorStep;
  settings.IntrusionFrom = settings.SuspiciousTop + kFloorStep;
}

}  // namespace zendrix::settings
