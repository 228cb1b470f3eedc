// The wizard's explanation of one contributing event.
#pragma once

#include <cstddef>

#include "alerts/marked_text.h"
#include "alerts/notable_info.h"
#include "core/app_state.h"

namespace zendrix::alerts {

// Entry `index` of the context. Raises 9 when there is no such entry.
MarkedText MonitorDescription(const core::AppState& state, AlertContext& context, std::size_t index,
                              Purpose purpose);

}  // namespace zendrix::alerts
