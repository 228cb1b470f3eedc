// Where the portal is: the base of every request and link, and what belongs to it.
#pragma once

#include <string>
#include <string_view>

#include "core/app_state.h"

namespace zendrix::core {

// The address up to and with "/redir.asp": the text after "Central," in the first line of description
// array 10 that holds it, else the configured base.
std::string PortalEndpoint(const AppState& state);

// Whether the address is the portal's: it begins with scheme and host of the endpoint's, in any letter case,
// and the host ends there. A bare beginning would take "http://portal.example.com.evil.org" for a part of
// "http://portal.example.com"; so what follows has to be "/", "?", nothing, or the endpoint's own port and
// then one of these. An endpoint that is no web address has no pages.
bool IsOnPortal(const AppState& state, std::string_view url);

}  // namespace zendrix::core
