// Accounts of the host and who is logged in.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "recorder/host_view.h"
#include "recorder/parse_accounts.h"
#include "recorder/snapshot.h"

namespace zendrix::recorder {

std::vector<Account> ReadAccounts(HostView& host);

// The account's name.
std::vector<Item> ObserveAccounts(const std::vector<Account>& accounts);

// "user on terminal", or "user from computer" for a login over the network. A host without utmp shows none.
std::vector<Item> ObserveLogins(HostView& host);

// Failed logins on record; no value when the record may not be seen.
std::optional<std::uint64_t> CountFailedLogins(HostView& host);

}  // namespace zendrix::recorder
