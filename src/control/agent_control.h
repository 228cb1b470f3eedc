// The Agent as a service: starting it, stopping it, asking for its state, and the question before a console
// ends. Each call blocks until the service manager has answered; a start does not wait for the service to be
// running.
#pragma once

#include <cstdint>
#include <string>

#include "core/app_state.h"
#include "widgets/screen.h"

namespace zendrix::control {

inline constexpr char kServiceName[] = "ZENDRIX";
// The result when the service manager could not be asked at all.
inline constexpr int kNoService = 99;
// Pause between stopping and starting on a restart.
inline constexpr std::int64_t kRestartPauseMs = 800;

// What the service manager's results 1 to 24 mean; empty for any other.
std::string StopMessage(int return_value);
std::string StartMessage(int return_value);

class AgentControl {
 public:
  AgentControl(core::AppState& state, widgets::Screen& screen) : state_(state), screen_(screen) {}

  // The service manager's numeric result, 0 for success, or 99. With `silent` no message of any kind comes.
  std::int16_t StopAgent(bool silent);
  std::int16_t StartAgent(bool silent);
  // Stops it if it runs, rests a moment, and starts it. All silent; the result is that of the start.
  std::int16_t RestartAgent();
  // 0 running, 1 any other state, 99 no such service. Without `silent` a state other than running is told.
  std::int32_t AgentStatus(bool silent);

 private:
  std::int16_t Change(bool silent, bool start);

  core::AppState& state_;
  widgets::Screen& screen_;
};

// Asks whether the console may end, and on yes tells how to come back. True means that it may.
bool WarningMessage(core::AppState& state);

}  // namespace zendrix::control
