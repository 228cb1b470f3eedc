// Whom the computer takes for an administrator: members of the groups that may become root.
#pragma once

#include <sys/types.h>

namespace zendrix::act {

// False also when the account cannot be looked up.
bool IsAdministrator(uid_t user);

}  // namespace zendrix::act
