// What every main window says, for as long as it is open, when the console has the rights of the system's
// administrator: a decision about an alert then reaches files that an ordinary user's cannot.
#pragma once

namespace zendrix::core {

inline constexpr char kRootWarning[] =
    "Zendrix is running with full control of this computer (as root), so a wrong decision here can damage "
    "the "
    "system: please close it and start it as an ordinary user.";

}  // namespace zendrix::core
