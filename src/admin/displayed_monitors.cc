#include "admin/displayed_monitors.h"

#include "core/letter_case.h"

namespace zendrix::admin {

std::vector<std::string> DisplayedMonitors(const core::Settings& settings) {
  std::vector<std::string> names;
  for (const auto& [name, value] : settings.MonitorStates)
    if (value == "1") names.push_back(name);
  return names;
}

int DisplayedMonitorCount(const core::Settings& settings) {
  return static_cast<int>(DisplayedMonitors(settings).size());
}

DisplayedMonitorIndexes::DisplayedMonitorIndexes(const core::Settings& settings) {
  int index = 0;
  for (const std::string& name : DisplayedMonitors(settings))
    by_name_.try_emplace(core::UpperCase(name), index++);
}

int DisplayedMonitorIndexes::Of(std::string_view name) const {
  const auto found = by_name_.find(core::UpperCase(name));
  return found == by_name_.end() ? kNotDisplayed : found->second;
}

int DisplayedMonitorIndex(const core::Settings& settings, std::string_view name) {
  return DisplayedMonitorIndexes(settings).Of(name);
}

}  // namespace zendrix::admin
