// What starts by itself: desktop autostart entries of the system and of each person, and enabled service
// units of the system and of each person. They take the place of the autorun keys of other platforms, so a
// description reads "file=command".
#pragma once

#include <string>
#include <vector>

#include "agent/events/snapshot.h"
#include "agent/host/host_view.h"
#include "agent/host/parse_accounts.h"

namespace zendrix::agent {

std::vector<Item> ObserveAutorun(HostView& host, const std::vector<Account>& accounts);

// The folders that it reads, whether they exist or not.
std::vector<std::string> AutorunFolders(HostView& host, const std::vector<Account>& accounts);

}  // namespace zendrix::agent
