// UpdateActivations: hands the user's decision on the alert last looked up to the Agent's side, in
// KorvessaActivations.kvl: one line "code,action" per code, action "1" to block and "0" to allow. Once it
// stands there, the services that read other files are told by the link to the Agent; what keeps them from
// hearing it is logged and told in a box, and the file stays as it is.
#pragma once

#include <string>

#include "alerts/notable_info.h"
#include "core/app_state.h"
#include "core/error_log.h"
#include "store/event_table.h"

namespace zendrix::alerts {

inline constexpr char kActivationsFile[] = "KorvessaActivations.kvl";
inline constexpr char kBlockAction[] = "1";
inline constexpr char kAllowAction[] = "0";

// The code is that of the nearest earlier Aggregation row with the same Change text; without one nothing is
// written, and neither is anything for an empty code, which a log line then says. A line of the file that
// contains the code anywhere is replaced in place, otherwise the new line goes to the end. The file changes
// as a whole or not at all. Leaves the table's shared cursor on the row last visited. A failure is logged
// under "EventUtils:UpdateActivations".
void UpdateActivations(core::AppState& state, core::ErrorLog& log, store::EventTable* table,
                       const AlertContext& context, const std::string& action);

}  // namespace zendrix::alerts
