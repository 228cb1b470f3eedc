// Whether an installed console sees what the Agent writes. That is another user's, readable for the members
// of a group, and the Agent is a package of its own: where either is missing, the console says in one
// sentence what to do instead of showing a computer without events.
#pragma once

#include <string>

#include "core/app_state.h"

namespace zendrix::control {

inline constexpr char kViewersGroup[] = "zendrix";

// The sentence; empty when the Agent's file can be read, when only a stopped Agent keeps it from being there
// (the status says so), and for a console with a folder of its own.
std::string WhyNothingIsSeen(core::AppState& state);

}  // namespace zendrix::control
