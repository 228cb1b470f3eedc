// Messages as the kernel lays them out, for tests.
#pragma once

#include <arpa/inet.h>
#include <linux/inet_diag.h>
#include <linux/sock_diag.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "agent/host/netlink.h"

namespace zendrix::test {

template <class Structure>
std::string BytesOf(const Structure& structure) {
  return std::string(reinterpret_cast<const char*>(&structure), sizeof structure);
}

inline inet_diag_msg DiagMessage(std::uint8_t state, const char* local, std::uint16_t local_port,
                                 const char* remote, std::uint16_t remote_port, std::uint32_t inode) {
  inet_diag_msg told = {};
  told.idiag_family = std::string_view(local).find(':') == std::string_view::npos ? AF_INET : AF_INET6;
  told.idiag_state = state;
  inet_pton(told.idiag_family, local, told.id.idiag_src);
  inet_pton(told.idiag_family, remote, told.id.idiag_dst);
  told.id.idiag_sport = htons(local_port);
  told.id.idiag_dport = htons(remote_port);
  told.idiag_inode = inode;
  return told;
}

inline std::string DiagText(const inet_diag_msg& told) {
  return agent::MessageText(SOCK_DIAG_BY_FAMILY, 0, BytesOf(told));
}

}  // namespace zendrix::test
