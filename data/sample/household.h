// A month of a household computer, made up: what its people do on an ordinary day, and three incidents. In
// the second week an update looks odd and is harmless; in the third somebody tries passwords until one fits;
// on the last day a mail attachment is opened, adds itself to the autostart and connects out. Computers on
// the network are documentation addresses, and the programs are nobody's.
//
// The lines are the Agent's own (agent/record/lines.h). The same seed and end give the same bytes.
#pragma once

#include <cstdint>
#include <string>

#include "agent/record/lines.h"

namespace zendrix::sample {

// The files of one program folder.
struct History {
  std::string monitoring;  // KorvessaMonitoring.kvl
  std::string agent_log;   // KorvessaEventLog.kvl
  std::string decided;     // KorvessaAlr.kvl; empty in the Administrator's form, which has no alerts
};

// Those of the shipped history.
inline constexpr std::uint64_t kSeed = 7;
inline constexpr std::int64_t kEnd = 1'735'689'600;

// `end`: second of the last event.
History MakeHistory(agent::Form form, std::uint64_t seed, std::int64_t end);

}  // namespace zendrix::sample
