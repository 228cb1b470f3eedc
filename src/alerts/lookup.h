// GetNotableInfo: one alert row expanded into the list of events that caused it.
#pragma once

#include <string>

#include "alerts/notable_info.h"
#include "core/app_state.h"
#include "core/error_log.h"
#include "store/event_table.h"

namespace zendrix::alerts {

// Looks up the alert with this row ID (decimal) and fills `context`. Moves the table's shared cursor and
// leaves it on the first row, also after a failure; a caller must not hold a position in it across the call.
// A failure (an ID beyond 16 bits, a description that breaks a criterion, no table) is logged under
// "EventUtils:GetNotableInfo" and what was filled until then stays.
void GetNotableInfo(core::AppState& state, core::ErrorLog& log, store::EventTable* table,
                    const std::string& id, AlertContext& context);

}  // namespace zendrix::alerts
