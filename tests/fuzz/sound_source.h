// What must hold of a source whatever it was sent: its texts are clean, and nothing goes that never came.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "agent/sources/source.h"
#include "unit/agent/fake_host.h"

namespace zendrix::agent {

inline void Require(bool holds) {
  if (!holds) std::abort();
}

inline void RequireClean(std::string_view text) {
  for (const char byte : text) {
    const auto code = static_cast<unsigned char>(byte);
    Require(code >= 32 && code != 127 && std::string_view("|,;=*'\"\\").find(byte) == std::string_view::npos);
  }
}

// A host with one program that runs beside the first process.
inline FakeHost HostOfTwo() {
  FakeHost host;
  host.AddProcess(1, "init", "/usr/sbin/init");
  host.AddProcess(100, "x", "/usr/bin/true", 7);
  host.links["/proc/1/ns/mnt"] = "mnt:[4026531841]";
  host.links["/proc/self/ns/net"] = "net:[4026531840]";
  return host;
}

// The second turn, `apart_ns` later, tells copies that live on and looks again.
inline void RequireSound(Source& source, std::int64_t& now_ns, std::int64_t apart_ns) {
  std::vector<Observation> seen;
  for (int turn = 0; turn < 2; ++turn) {
    source.Drain(seen);
    now_ns += apart_ns;
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
}

}  // namespace zendrix::agent
