// The monitors that have a place in charts: those whose value in the settings is "1", in the settings' order.
// A monitor with any other value but "0" has rows in the grid all the same.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/settings_values.h"

namespace zendrix::admin {

// The index of a monitor that is not displayed.
inline constexpr int kNotDisplayed = 999;

std::vector<std::string> DisplayedMonitors(const core::Settings& settings);
int DisplayedMonitorCount(const core::Settings& settings);

// The indexes of one moment's settings, for many questions.
class DisplayedMonitorIndexes {
 public:
  explicit DisplayedMonitorIndexes(const core::Settings& settings);
  // From 0, whatever the case of the name.
  int Of(std::string_view name) const;

 private:
  std::unordered_map<std::string, int> by_name_;  // in upper case
};

int DisplayedMonitorIndex(const core::Settings& settings, std::string_view name);

}  // namespace zendrix::admin
