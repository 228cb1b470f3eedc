#include "alerts/risk.h"

#include <cmath>

#include "core/number_rules.h"

namespace zendrix::alerts {
namespace {

// The number that stands for full risk. It is the same in every locale: 0.99 is 100 per cent also where the
// decimal separator is a comma.
constexpr double kFullRisk = 0.99;

double Percent(double value) {
  return value * 100 / kFullRisk;
}

// To the nearest integer, ties to even. Stays a double: a number from a file may be of any size.
double Rounded(double value) {
  return std::nearbyint(value);
}

}  // namespace

std::string GetRiskName(std::string_view value, const core::Settings& settings,
                        const platform::LocaleInfo& locale) {
  if (!core::IsNumeric(value, locale)) return kUnknown;
  const double percent = Rounded(Percent(core::CDbl(value, locale)));
  if (percent <= Rounded(settings.NormalTop) && percent >= 0) return kNormal;
  const double lowest = Rounded(settings.NormalTop + 0.001F);
  if (percent < lowest || percent > Rounded(settings.SuspiciousTop)) return kIntrusion;
  return kSuspicious;
}

double RiskPercent(std::string_view change, const platform::LocaleInfo& locale) {
  return Percent(core::IsNumeric(change, locale) ? core::CDbl(change, locale) : core::Val(change));
}

bool ReachesShownRisk(std::string_view change, const core::Settings& settings,
                      const platform::LocaleInfo& locale) {
  return RiskPercent(change, locale) >= settings.ShRskLvl;
}

}  // namespace zendrix::alerts
