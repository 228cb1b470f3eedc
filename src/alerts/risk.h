// The risk model: from the number that the Agent wrote to the name of a level, and to the percentage that the
// lists are limited by. A Change or Original of 0.99 stands for 100 per cent.
#pragma once

#include <string>
#include <string_view>

#include "core/settings_values.h"
#include "platform/locale.h"

namespace zendrix::alerts {

inline constexpr char kNormal[] = "Normal";
inline constexpr char kSuspicious[] = "Suspicious";
inline constexpr char kIntrusion[] = "Intrusion";
inline constexpr char kUnknown[] = "Unknown";

// Rows that are alerts.
inline constexpr char kAlertFilter[] = "Monitor = 'Aggregation' AND Change >= 0";

// Name of the level of a Change or Original text: one of the four above. Percent and limits are rounded to
// integers, ties to even, so the levels are integer bands. A negative value is an "Intrusion": the filter of
// the lists is what keeps such rows away.
std::string GetRiskName(std::string_view value, const core::Settings& settings,
                        const platform::LocaleInfo& locale);

// The unrounded percentage of a Change text. What is no number counts by its leading digits, so 0 without
// any.
double RiskPercent(std::string_view change, const platform::LocaleInfo& locale);

// Whether the alert list shows a row with this Change: its percentage is not below ShRskLvl.
bool ReachesShownRisk(std::string_view change, const core::Settings& settings,
                      const platform::LocaleInfo& locale);

}  // namespace zendrix::alerts
