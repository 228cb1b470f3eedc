// What the process connector and taskstats might send, damaged in every way: datagrams in a row, each behind
// a byte that says whose it is and two of length. Nothing may crash a reader, no text may leave uncleaned,
// and nothing may go that never came.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <set>
#include <string>
#include <string_view>
#include <tuple>

#include "agent/sources/connector_source.h"
#include "agent/sources/memory/recorded_netlink.h"
#include "unit/agent/fake_host.h"

namespace {

using namespace zendrix::agent;

void Require(bool holds) {
  if (!holds) std::abort();
}

void RequireClean(std::string_view text) {
  for (const char byte : text) {
    const auto code = static_cast<unsigned char>(byte);
    Require(code >= 32 && code != 127 && std::string_view("|,;=*'\"\\").find(byte) == std::string_view::npos);
  }
}

void Share(std::string_view bytes, NetlinkScript& notices, NetlinkScript& ends) {
  while (bytes.size() > 3) {
    const auto low = static_cast<unsigned char>(bytes[1]);
    const auto high = static_cast<unsigned char>(bytes[2]);
    const std::size_t size = low | static_cast<std::size_t>(high) << 8U;
    (bytes[0] == 0 ? notices : ends).waiting.emplace_back(bytes.substr(3, size));
    bytes.remove_prefix(std::min(bytes.size(), 3 + size));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FakeHost host;
  host.AddProcess(1, "init", "/usr/sbin/init");
  host.AddProcess(100, "x", "/usr/bin/true", 7);
  host.links["/proc/1/ns/mnt"] = "mnt:[4026531841]";
  NetlinkScript notices;
  NetlinkScript ends;
  Share({reinterpret_cast<const char*>(data), size}, notices, ends);
  OpenedConnector opened;
  opened.notices = std::make_unique<RecordedNetlink>(notices);
  opened.ends = std::make_unique<RecordedNetlink>(ends);
  opened.family = 31;
  std::int64_t now_ns = 1'000'000'000;
  ConnectorSource source({host, 50, [&] { return now_ns; }}, std::move(opened));
  std::vector<Observation> seen;
  // The second turn tells copies that live on and looks again.
  for (int turn = 0; turn < 2; ++turn) {
    source.Drain(seen);
    now_ns += ConnectorSource::kLookEveryNs;
  }
  std::set<std::tuple<std::string_view, std::string, std::string>> there;
  for (const Observation& observation : seen) {
    const Item& item = observation.item;
    RequireClean(item.description);
    RequireClean(item.subject);
    if (observation.kind == Observation::Kind::kCame)
      there.emplace(item.monitor, item.description, item.identity);
    if (observation.kind == Observation::Kind::kWent)
      Require(there.erase({item.monitor, item.description, item.identity}) == 1);
  }
  return 0;
}
