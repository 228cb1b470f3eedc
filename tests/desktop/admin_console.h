// The Administrator console on a private desktop, with a monitoring file of the test's own. The seconds of an
// event, from 2026-11-21 01:45:00 on, tell it apart in any zone and language.
#pragma once

#include <string>
#include <vector>

#include "desktop/console_program.h"

namespace zendrix::desktop {

// Columns of the event grid that are seen.
inline constexpr int kEventId = 0, kHostname = 2, kChange = 4, kDescription = 8;
inline constexpr int kEventColumns[] = {kEventId, 1, kHostname, 3, kChange, kDescription};

class AdminConsole : public ConsoleProgram {
 public:
  static constexpr char kTitle[] = "Administrator";

  // One event is there, the oldest: line 1, second 0, host "HOST", description "1|0".
  AdminConsole();

  void Add(int second, const std::string& host, const std::string& monitor, const std::string& change,
           const std::string& description);
  // Started, with the newest event in sight.
  void StartAndWait();
  void AwaitActive(const std::string& title = kTitle);
  // Brings a window forward, also one that is minimised.
  void BringForward(const std::string& title);

  // What a column reads, row by row.
  std::vector<std::string> Column(int column, const std::string& table = "Events");
  void AwaitColumn(int column, const std::vector<std::string>& texts, const std::string& table = "Events");
  // A node of the System State whose text begins and goes on so, when it is in sight.
  std::optional<Accessible> Node(const std::string& begin, const std::string& part = "");
  void AwaitNode(const std::string& begin, const std::string& part = "");
  // By mouse and keyboard.
  void OpenBranch(const std::string& begin);
  // The root of the tree tells the moment: ":07".
  void AwaitMoment(const std::string& second);

 private:
  std::string newest_;
};

}  // namespace zendrix::desktop
