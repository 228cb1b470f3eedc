// One summary table: a row for each event of the alert about which the Agent reports a kind of result.
#pragma once

#include <string_view>

#include "alerts/marked_text.h"
#include "alerts/notable_info.h"
#include "core/app_state.h"
#include "core/error_log.h"

namespace zendrix::alerts {

// `kind` is "success" or "failed". Empty when no row qualifies, and where a row cannot be built: without a
// word about it, since the rest of the page still tells the alert.
MarkedText SummaryTable(const core::AppState& state, core::ErrorLog& log, const AlertContext& context,
                        std::string_view kind, bool short_form, Purpose purpose);

// Whether SummaryTable would give anything, without building it: the alert list asks this of every alert.
bool HasSummaryTable(const core::AppState& state, const AlertContext& context, std::string_view kind);

// Whether an entry is shown: by a row of such a table or, without a dictionary, by its whole description.
bool HasRow(const core::AppState& state, const NotableRecord& record, std::string_view kind);

// What stands in the place of a rendering when the dictionary is not loaded: the error text, then each
// entry's monitor and description.
MarkedText WithoutDictionary(const AlertContext& context, Purpose purpose);

}  // namespace zendrix::alerts
