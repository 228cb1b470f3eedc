// GetLink: the anchor that sends the user from a description to the portal's page about a thing that was
// observed, and what closes it.
#pragma once

#include <string>
#include <string_view>

#include "alerts/marked_text.h"
#include "core/app_state.h"
#include "core/error_log.h"

namespace zendrix::alerts {

// The opening anchor for a monitor and the value to look up; the caller adds the link's text and "</A>".
// Monitor names are compared exactly; one that has no portal page gives an anchor with an empty target. In
// the exact text nothing is encoded, so a value with an apostrophe ends the target early; in the text to be
// shown the value is percent-encoded. A failure is logged under "EventUtils:GetLink" and the result is empty:
// the value is then shown without a link.
MarkedText GetLink(const core::AppState& state, core::ErrorLog& log, Purpose purpose,
                   std::string_view monitor, std::string_view description);

// "</A>"
MarkedText LinkEnd(Purpose purpose);

}  // namespace zendrix::alerts
