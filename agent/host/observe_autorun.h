// What starts by itself: desktop autostart entries of the system and of each person, and enabled service
// units of the system and of each person. They take the place of the autorun keys of other platforms, so a
// description reads "file=command". At most 16 commands of a file, 500 entries of an account and 5,000 in
// all are looked at; what is beyond, and a file that is there but cannot be read, is left out and told.
#pragma once

#include <string>
#include <vector>

#include "agent/events/snapshot.h"
#include "agent/host/host_view.h"
#include "agent/host/parse_accounts.h"
#include "agent/host/shortfall.h"

namespace zendrix::agent {

// `missed`, where given, gathers what was left out.
std::vector<Item> ObserveAutorun(HostView& host, const std::vector<Account>& accounts,
                                 Shortfall* missed = nullptr);

// The folders that it reads, whether they exist or not.
std::vector<std::string> AutorunFolders(HostView& host, const std::vector<Account>& accounts);

}  // namespace zendrix::agent
