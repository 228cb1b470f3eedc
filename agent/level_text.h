// What the Agent says about how it watches: to the files, to the person who started it, and as JSON.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "agent/watch.h"

namespace zendrix::agent {

// "Listening Ports - a look every 5 s - programs of other users cannot be told"; cleaned.
std::string LevelText(const WatchLevel& level);

// The same for all, what is watched alike in one text; for the log.
std::vector<std::string> LevelTexts(const std::vector<WatchLevel>& levels);

// One sentence or two about all of them: what is seen, and what cannot be.
std::string Summary(const std::vector<WatchLevel>& levels);

// "90 s", "5 min", "3 h 5 min"
std::string DurationText(std::int64_t seconds);

// What the Agent did in the last whole minute.
struct MinuteNumbers {
  std::uint64_t events = 0;   // seen
  std::uint64_t rows = 0;     // written
  std::uint64_t alerts = 0;   // written
  std::uint64_t counted = 0;  // seen and not listed
  std::uint64_t lost = 0;     // not seen
};

struct Status {
  bool running = false;
  std::uint64_t process = 0;  // 0 when none
  std::int64_t started = 0;   // UTC seconds
  std::int64_t alive = 0;     // UTC seconds of the last sign of life
  std::vector<WatchLevel> levels;
  MinuteNumbers minute;
};

// ASCII, one member a line, with a line end at its end.
std::string StatusJson(const Status& status);

// The sentence in such a text; empty when there is none.
std::string SummaryIn(std::string_view json);

// The last sign of life in such a text; 0 when there is none.
std::int64_t AliveIn(std::string_view json);

}  // namespace zendrix::agent
