// Requests to the portal: one address from a fixed vocabulary, handed to the system's default browser. The
// answer never comes back to the console.
#pragma once

#include <string>

#include "core/app_state.h"
#include "core/error_log.h"
#include "widgets/screen.h"

namespace zendrix::control {

enum class PortalRequest { kFeedback, kSupport, kNewVersion, kSurvey, kTour };

// The whole address. Raises when the host identifier cannot be had; the pointer is an hourglass while it is
// asked for. Nothing is encoded.
std::string PortalUrl(core::AppState& state, widgets::Screen& screen, PortalRequest request);

// The whole address under the failure rule of the request: false, with a line in the log, when it cannot be
// had.
bool GuardedPortalUrl(core::AppState& state, core::ErrorLog& log, widgets::Screen& screen,
                      PortalRequest request, std::string& url);

// Opens the request in the browser. A failure is logged under the name of the control that asked and no
// browser opens.
void OpenPortal(core::AppState& state, core::ErrorLog& log, widgets::Screen& screen, PortalRequest request);

}  // namespace zendrix::control
