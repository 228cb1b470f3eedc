// An Agent on a made-up host that writes into files in memory. Its folder is /z; the clock stands at
// 1700000000.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "agent/agent.h"
#include "agent/host/text.h"
#include "platform/memory/fake_clock.h"
#include "platform/memory/memory_files.h"
#include "unit/agent/eager_scorer.h"
#include "unit/agent/fake_host.h"

namespace zendrix::agent {

inline constexpr const char* kEvents = "/z/KorvessaMonitoring.kvl";
inline constexpr const char* kLog = "/z/KorvessaEventLog.kvl";
inline constexpr const char* kStatus = "/z/zendrix-agent.status";

class AgentFixture : public ::testing::Test {
 protected:
  AgentFixture() {
    clock.SetUtc(1700000000);
    files.Put("/z/zendrix.ini", "");
    options.folder = "/z";
  }

  // Of an Agent that writes into these files.
  AgentParts Parts(platform::Files& on) { return {host, on, clock, *scorer, errors, {}, "vm", 42}; }

  // The lines of a file that hold the text.
  std::vector<std::string> Lines(const std::string& path, const std::string& with = "") {
    std::vector<std::string> lines;
    const std::string text = files.Get(path);
    for (const auto line : SplitLines(text)) {
      if (line.find(with) != std::string_view::npos) lines.emplace_back(line);
    }
    return lines;
  }

  FakeHost host;
  platform::MemoryFiles files;
  platform::FakeClock clock;
  std::ostringstream errors;
  Options options;
  EagerScorer eager;
  Scorer* scorer = &eager;
};

}  // namespace zendrix::agent
