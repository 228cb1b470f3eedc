// The explanation of the whole alert from its template.
#pragma once

#include "alerts/marked_text.h"
#include "alerts/notable_info.h"
#include "core/app_state.h"
#include "core/error_log.h"

namespace zendrix::alerts {

// The name under which a failure is logged.
inline constexpr char kCurrentDescriptionPlace[] = "EventUtils:GetCurrDesc";

// Leaves the alert's date and time in the context. A failure is logged and gives the text as it stood as a
// result: empty, but for a footnote that cannot be built, without which the text stands.
MarkedText CurrentDescription(const core::AppState& state, core::ErrorLog& log, AlertContext& context,
                              bool short_form, Purpose purpose);

}  // namespace zendrix::alerts
