// What the process connector and taskstats might send, damaged in every way: datagrams in a row, each behind
// a byte that says whose it is and two of length. Nothing may crash a reader, no text may leave uncleaned,
// and nothing may go that never came.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "agent/sources/connector_source.h"
#include "agent/sources/memory/recorded_netlink.h"
#include "fuzz/sound_source.h"

namespace {

using namespace zendrix::agent;

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
  FakeHost host = HostOfTwo();
  NetlinkScript notices;
  NetlinkScript ends;
  Share({reinterpret_cast<const char*>(data), size}, notices, ends);
  OpenedConnector opened;
  opened.notices = std::make_unique<RecordedNetlink>(notices);
  opened.ends = std::make_unique<RecordedNetlink>(ends);
  opened.family = 31;
  std::int64_t now_ns = 1'000'000'000;
  ConnectorSource source({host, 50, [&] { return now_ns; }}, std::move(opened));
  RequireSound(source, now_ns, ConnectorSource::kLookEveryNs);
  return 0;
}
