// What the C++ layer of the bus library does not offer: whether a call says that a user is there who may be
// asked for the right to what is wanted. The functions are looked up, because only the C++ layer is linked;
// without them nobody is asked.
#pragma once

#include <sdbus-c++/sdbus-c++.h>

namespace zendrix::platform {

void AllowInteractiveAuthorization(const sdbus::Message& call);
bool AllowsInteractiveAuthorization(const sdbus::Message& call);

}  // namespace zendrix::platform
