// A console in memory with a history and dictionaries of anybody's choosing, and the alert logic on top: what
// the fuzz targets of that logic share. An expectation that does not hold ends the program.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "alerts/console_alerts.h"
#include "platform/memory/memory_platform.h"
#include "store/reader.h"

namespace zendrix::test {

// Ends the program, with the words on standard error, unless it holds.
void Require(bool holds, const char* what);

// Cuts an input at its bytes 1F: the text up to the first one, which is taken off.
std::string TakePiece(std::string_view& input);

class FuzzedAlerts {
 public:
  FuzzedAlerts();

  // A file of the program folder; description files get their hash.
  void Put(const std::string& name, std::string_view bytes);
  void PutDescriptions(int number, std::string_view bytes);
  std::string Get(const std::string& name) const { return platform_.files.Get("/app/" + name); }
  std::vector<std::string> Paths() const { return platform_.files.Paths(); }
  // The description arrays and the whole history; false when the console would have ended.
  bool Load();

  core::AppState& state() { return state_; }
  core::ErrorLog& log() { return log_; }
  store::EventTable& table() { return *reader_.EventTable; }
  alerts::ConsoleAlerts& alerts() { return alerts_; }

  // IDs of the first rows of the table, at most so many.
  std::vector<std::string> Ids(std::size_t most) const;

 private:
  platform::MemoryPlatform platform_;
  platform::Seams seams_;
  core::AppState state_;
  core::ErrorLog log_;
  store::CMkvlf reader_;
  alerts::ConsoleAlerts alerts_;
};

}  // namespace zendrix::test
