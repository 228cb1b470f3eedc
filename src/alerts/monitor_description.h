// The wizard's explanation of one contributing event.
#pragma once

#include <cstddef>

#include "alerts/marked_text.h"
#include "alerts/notable_info.h"
#include "core/app_state.h"
#include "core/error_log.h"

namespace zendrix::alerts {

// Entry `index` of the context. Empty when there is no such entry or something fails; the whole alert in it
// and its links have handlers of their own.
MarkedText MonitorDescription(const core::AppState& state, core::ErrorLog& log, AlertContext& context,
                              std::size_t index, Purpose purpose);

}  // namespace zendrix::alerts
