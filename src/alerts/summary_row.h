// One row of a summary table: the template wrapped into a table row, its placeholders filled by the rules of
// the event's monitor.
#pragma once

#include <string_view>

#include "alerts/marked_text.h"
#include "alerts/notable_info.h"
#include "core/app_state.h"
#include "core/error_log.h"

namespace zendrix::alerts {

// A link that cannot be had is left out.
MarkedText SummaryRow(const core::AppState& state, core::ErrorLog& log, const AlertContext& context,
                      const NotableRecord& record, std::string_view row_template, bool short_form,
                      Purpose purpose);

}  // namespace zendrix::alerts
