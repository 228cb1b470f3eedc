// What an alert's risk is made of, as text for a person, from what was stored when the alert was raised.
#pragma once

#include <string>
#include <vector>

#include "agent/score/alert_book.h"

namespace zendrix::agent {

// Lines that end in "\n"; plain ASCII, so that no name of the host steers a terminal.
std::string ExplainAlert(const AlertRecord& record);
// One line for each.
std::string ListAlerts(const std::vector<AlertRecord>& newest_first);

// `id`: the second of an alert, its code, or digits of that; empty: a list of the newest. What goes to the
// person in `text`; 0, or 1 when there is no such alert or no file.
int Explain(const std::string& path, const std::string& id, std::string& text);

}  // namespace zendrix::agent
