// Events that hold one hostile text in every place of a monitoring file that takes texts, for each monitor
// whose page differs.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zendrix::test {

// Monitors with a page of their own, and one that the console does not know.
const std::vector<std::string>& PageMonitors();

// The text in the shapes that the monitor's description is taken apart in: as it is, and as each part.
std::vector<std::string> DescriptionsWith(std::string_view monitor, const std::string& text);

// Whether the text can be a date, a host or a monitor: one item of a line's stamp, and no number.
bool FitsAStamp(std::string_view text);

// A monitoring file: per monitor an event, an alert that names it in a pair, the Agent's reaction to it, and
// an alert that only names the monitor; then events of which the text is date, host or monitor, and their
// alerts. The first event, since which there is a history, has the text as its date where it can.
std::string MonitoringFileWith(const std::string& text);

}  // namespace zendrix::test
