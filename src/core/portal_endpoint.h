// Where the portal is: the base of every request and link.
#pragma once

#include <string>

#include "core/app_state.h"

namespace zendrix::core {

// The address up to and with "/redir.asp": the text after "Central," in the first line of description
// array 10 that holds it, else the configured base.
std::string PortalEndpoint(const AppState& state);

}  // namespace zendrix::core
