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

// Where the last of them was tried: "sshd from 192.0.2.7", "tty1". Empty when there is none.
std::string LastFailedLogin(HostView& host);

}  // namespace zendrix::agent
