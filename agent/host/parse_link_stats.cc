#include "agent/host/parse_link_stats.h"

#include <linux/if_link.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace zendrix::agent {
namespace {

constexpr std::uint32_t kLoopback = 1;  // the kernel gives this number to nothing else

// Longer or shorter records come from younger or older kernels; both begin alike.
std::uint64_t BytesIn(std::string_view value) {
  rtnl_link_stats64 stats = {};
  if (value.size() < offsetof(rtnl_link_stats64, tx_bytes) + sizeof stats.tx_bytes) return 0;
  std::memcpy(&stats, value.data(), std::min(value.size(), sizeof stats));
  return stats.rx_bytes + stats.tx_bytes;
}

}  // namespace

std::string LinkStatsQuestion() {
  if_stats_msg wanted = {};
  wanted.filter_mask = IFLA_STATS_FILTER_BIT(IFLA_STATS_LINK_64);
  return MessageText(RTM_GETSTATS, NLM_F_REQUEST | NLM_F_DUMP,
                     {reinterpret_cast<const char*>(&wanted), sizeof wanted});
}

DumpPart ReadLinkStatsPart(std::string_view datagram, std::optional<std::uint64_t>& total) {
  for (const NetlinkMessage& message : SplitMessages(datagram)) {
    if (message.type == NLMSG_DONE) return DumpPart::kDone;
    if (message.type == NLMSG_ERROR) return DumpPart::kRefused;
    if_stats_msg head = {};
    if (message.type != RTM_NEWSTATS || message.body.size() < sizeof head) continue;
    std::memcpy(&head, message.body.data(), sizeof head);
    if (head.ifindex == kLoopback) continue;
    for (const NetlinkAttribute& attribute : SplitAttributes(message.body.substr(sizeof head))) {
      if (attribute.type == IFLA_STATS_LINK_64) total = total.value_or(0) + BytesIn(attribute.value);
    }
  }
  return DumpPart::kMore;
}

}  // namespace zendrix::agent
