// What starts by itself: desktop autostart entries of the system and of each person, and enabled service
// units of the system and of each person. They take the place of the autorun keys of other platforms, so a
// description reads "file=command".
#pragma once

#include <vector>

#include "recorder/host_view.h"
#include "recorder/parse_accounts.h"
#include "recorder/snapshot.h"

namespace zendrix::recorder {

std::vector<Item> ObserveAutorun(HostView& host, const std::vector<Account>& accounts);

}  // namespace zendrix::recorder
