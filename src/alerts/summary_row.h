// One row of a summary table: the template wrapped into a table row, its placeholders filled by the rules of
// the event's monitor.
#pragma once

#include <string_view>

#include "alerts/marked_text.h"
#include "alerts/notable_info.h"
#include "core/app_state.h"

namespace zendrix::alerts {

MarkedText SummaryRow(const core::AppState& state, const AlertContext& context, const NotableRecord& record,
                      std::string_view row_template, bool short_form, Purpose purpose);

}  // namespace zendrix::alerts
