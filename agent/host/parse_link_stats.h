// Reader of what rtnetlink(7) answers about the bytes that network interfaces moved (RTM_GETSTATS): the
// numbers of /proc/net/dev without the text. Pure functions on bytes: what is short or of another kind is
// left out.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "agent/host/parse_sock_diag.h"

namespace zendrix::agent {

std::string LinkStatsQuestion();

// One datagram of the answer. Adds what all interfaces but the loopback received and sent to `total`, which
// has no value as long as there was no such interface.
DumpPart ReadLinkStatsPart(std::string_view datagram, std::optional<std::uint64_t>& total);

}  // namespace zendrix::agent
