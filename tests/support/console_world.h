// What every console procedure needs, in memory: the platform's twins, the application's state with a program
// folder and a product name, and the log, whose lines have to be announced.
#pragma once

#include "core/app_state.h"
#include "core/error_log.h"
#include "platform/memory/memory_platform.h"
#include "support/quiet_log.h"
#include "widgets/memory/scripted_form_host.h"

namespace zendrix::testing {

struct ConsoleWorld {
  ConsoleWorld() {
    state.ProgramFolder = "/opt/zendrix";
    state.ProductName = "Korvessa Zendrix Home Edition";
    state.UseHost(host);
  }

  // Runs `body`, which has to end the process, and returns the exit status; -1 when the process went on.
  template <class Body>
  int EndOf(Body&& body) {
    try {
      body();
    } catch (const platform::ProcessEnded& end) {
      return end.status;
    }
    ADD_FAILURE() << "the process did not end";
    return -1;
  }
  std::string InFolder(const std::string& name) const {
    return platform::JoinPath(state.ProgramFolder, name);
  }

  platform::MemoryPlatform platform;
  platform::Seams seams = platform.seams();
  widgets::ScriptedFormHost host;
  core::AppState state{seams};
  core::ErrorLog log{state};
  QuietLog quiet{log};
};

}  // namespace zendrix::testing
