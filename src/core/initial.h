// The entry procedure: from the first step to the open main window, strictly in order.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/app_state.h"
#include "core/error_log.h"
#include "widgets/form.h"

namespace zendrix::core {

inline constexpr char kMonitoringFileName[] = "KorvessaMonitoring.kvl";
inline constexpr char kUpdateFileName[] = "Zendrix Update.exe";

// The steps that belong to rooms which stand to the right of this one.
struct MainHooks {
  std::function<void()> ReadRegInfo;
  std::function<void()> LoadDescArrays;
  // Creates the reader, in either edition, and does the whole first load. The open splash is found in
  // AppState::forms (see SetSplashProgress).
  std::function<void(const std::string& path)> InitReader;
  // Monitor names of the reader, in the order in which they were met.
  std::function<std::vector<std::string>()> MonitorNames;
  // Switches on, in the settings, the monitors that are met for the first time.
  std::function<void(const std::vector<std::string>& names)> RegisterMonitors;
  // File version of an executable ("1.2.0.3"), or empty.
  std::function<std::string(const std::string& path)> FileVersion;
  // The main window of each edition; it comes into being when it is asked for and lives until the end.
  std::function<widgets::Form&()> frmMain;
  std::function<widgets::Form&()> frmNewUI;
  // The tour, or null where there is none.
  std::function<widgets::Form*()> frmTour;
};

// Runs the start. `command_line` is the program's arguments joined by blanks. ProductEdition, ProgramFolder,
// ExeName and InstanceMutex of `state` are set before. The splash is released before this returns. Any
// run-time error ends the process under the name "Initial : Main"; a second instance ends with status 0,
// having logged and touched nothing.
void Main(AppState& state, ErrorLog& log, const std::string& command_line, const MainHooks& hooks);

}  // namespace zendrix::core
