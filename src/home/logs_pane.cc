#include "home/logs_pane.h"

#include "core/desc_lookup.h"
#include "core/guards.h"

namespace zendrix::home {

LogsPane::LogsPane(LogsNeeds needs) : needs_(needs) {}

void LogsPane::FillAgentFra() {
  core::OrLog(needs_.log, "frmNewUI:FillAgentFra",
              [&] { aDesc.caption = core::DescAt(needs_.state.Desc[0], 3); });
}

}  // namespace zendrix::home
