// Accounts of the host and who is logged in.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "agent/events/snapshot.h"
#include "agent/host/host_view.h"
#include "agent/host/parse_accounts.h"

namespace zendrix::agent {

std::vector<Account> ReadAccounts(HostView& host);

// The account's name.
std::vector<Item> ObserveAccounts(const std::vector<Account>& accounts);

// "user on terminal", or "user from computer" for a login over the network.
Item LoginItem(const Login& login);

// A host without utmp shows none.
std::vector<Item> ObserveLogins(HostView& host);

// Failed logins on record; no value when the record may not be seen.
std::optional<std::uint64_t> CountFailedLogins(HostView& host);

// Where those behind the first `before` were tried, up to the `now`th: "sshd from 192.0.2.7", "tty1". Of a
// record that has become shorter, as when it was begun anew, all. Of a flood the newest 2,000 are read, and
// 100 places are told apart; what is beyond has no place.
std::vector<FailedLogins> ReadFailedLogins(HostView& host, std::uint64_t before, std::uint64_t now);

}  // namespace zendrix::agent
