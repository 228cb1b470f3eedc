#include "home/agent_pane.h"

#include <utility>

#include "control/agent_sight.h"
#include "core/guards.h"
#include "widgets/busy_mark.h"

namespace zendrix::home {

AgentPane::AgentPane(AgentNeeds needs) : needs_(std::move(needs)) {
  aClick.clicked.ConnectForever([this] { aClick_Click(); });
}

std::int16_t AgentPane::CheckAgnSta() {
  int status = kImmediate;
  core::OrLog(needs_.log, "frmNewUI:CheckAgnSta", [&] {
    const bool running = needs_.agent.AgentStatus(true) == 0;
    const std::string why = control::WhyNothingIsSeen(needs_.state);
    Unseen = !why.empty();
    if (running && !Unseen) status = kGood;
    StaImg.picture = FlagOf(status);
    if (status == kImmediate && AgentJustStarted) {
      needs_.AttentionPending = true;
      AgentJustStarted = false;
    }
    aTitleDesc.caption = Unseen ? why : StatusText(needs_.state, kAdvancedView, status);
    aStatus.caption = running ? "Monitoring is Enabled" : "Monitoring is Disabled";
    aClick.caption = running ? "[Disable]" : "[Enable]";
  });
  return static_cast<std::int16_t>(status);
}

void AgentPane::aClick_Click() {
  // Waiting for the service manager may serve the event loop.
  if (changing_) return;
  {
    const widgets::BusyMark changing(changing_);
    core::OrLog(needs_.log, "frmNewUI:aClick_Click", [&] { Change(); });
  }
  needs_.AgentLevel = CheckAgnSta();
  needs_.FillAgentFra();
}

void AgentPane::Change() {
  if (aClick.caption.Get() == "[Disable]") {
    needs_.agent.StopAgent(false);
  } else {
    needs_.agent.StartAgent(false);
    AgentJustStarted = true;
  }
}

}  // namespace zendrix::home
