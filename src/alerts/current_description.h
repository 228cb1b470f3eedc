// The explanation of the whole alert from its template.
#pragma once

#include "alerts/marked_text.h"
#include "alerts/notable_info.h"
#include "core/app_state.h"

namespace zendrix::alerts {

// Leaves the alert's date and time in the context. Raises where it cannot go on.
MarkedText CurrentDescription(const core::AppState& state, AlertContext& context, bool short_form,
                              Purpose purpose);

}  // namespace zendrix::alerts
