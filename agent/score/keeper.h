// Keeps what the scorer remembers in one database file. It promises that the Agent goes on whatever becomes
// of the file: one that is damaged is set aside under a name with the second and begun anew; one that cannot
// be opened or written leaves a memory that lasts as long as the run. Each such thing is told once, as a line
// for the log.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "agent/score/database.h"

namespace zendrix::agent {

class Keeper {
 public:
  // An empty path: in memory. `utc` names a damaged file that is set aside.
  Keeper(std::string path, std::int64_t utc);

  Database& database() { return *database_; }
  // Changes when the file was begun anew: whoever wrote into it writes everything again.
  int generation() const { return generation_; }

  // Runs `write` in one transaction. False when nothing of it was kept.
  bool Write(const std::function<bool(Database&)>& write, std::int64_t utc);

  // What is to be told since the last call.
  std::vector<std::string> TakeMessages();

 private:
  void Open(std::int64_t utc);
  bool TryOpen();
  void SetAside(std::int64_t utc);
  void Tell(const std::string& message);

  const std::string path_;
  std::optional<Database> database_;
  int generation_ = 0;
  bool failing_ = false;
  bool damaged_ = false;  // said by the last opening
  std::string why_;       // likewise
  std::vector<std::string> messages_;
};

}  // namespace zendrix::agent
