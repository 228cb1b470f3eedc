// Messages as the kernel lays them out, for tests.
#pragma once

#include <arpa/inet.h>
#include <linux/cn_proc.h>
#include <linux/connector.h>
#include <linux/genetlink.h>
#include <linux/inet_diag.h>
#include <linux/netlink.h>
#include <linux/sock_diag.h>
#include <linux/taskstats.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

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

// One notice of the process connector; `what` as include/uapi/linux/cn_proc.h numbers them.
inline std::string ProcessNoticeText(std::uint32_t what, std::uint32_t processor, std::uint32_t number,
                                     const std::vector<std::uint32_t>& data) {
  cn_msg head = {};
  head.id = {CN_IDX_PROC, CN_VAL_PROC};
  head.seq = number;
  struct {
    std::uint32_t what, processor;
    std::uint64_t time;
    std::uint32_t data[6];
  } notice = {what, processor, 0, {}};
  static_assert(sizeof notice == 40);  // as the kernel sends it
  head.len = sizeof notice;
  std::copy(data.begin(), data.end(), notice.data);
  return agent::MessageText(NLMSG_DONE, 0, BytesOf(head) + BytesOf(notice));
}

inline constexpr std::uint16_t kFamily = 31;

// What taskstats tells of the end of a process.
inline std::string EndText(std::uint32_t pid, std::uint32_t parent, std::uint64_t device, std::uint64_t inode,
                           const std::string& comm, std::uint16_t version = 13) {
  taskstats stats = {};
  stats.version = version;
  stats.ac_tgid = pid;
  stats.ac_ppid = parent;
  stats.ac_exe_dev = device;
  stats.ac_exe_inode = inode;
  comm.copy(stats.ac_comm, sizeof stats.ac_comm - 1);
  const std::string inner = agent::AttributeText(TASKSTATS_TYPE_PID, BytesOf(pid)) +
                            agent::AttributeText(TASKSTATS_TYPE_STATS, BytesOf(stats));
  genlmsghdr head = {};
  head.cmd = TASKSTATS_CMD_NEW;
  return agent::MessageText(kFamily, 0, BytesOf(head) + agent::AttributeText(TASKSTATS_TYPE_AGGR_PID, inner));
}

}  // namespace zendrix::test
