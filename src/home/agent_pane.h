// The top of the Advanced pane: whether the Agent monitors this computer, and the link that changes it.
#pragma once

#include <cstdint>
#include <functional>

#include "control/agent_control.h"
#include "core/app_state.h"
#include "core/error_log.h"
#include "home/status.h"
#include "widgets/image.h"
#include "widgets/label.h"

namespace zendrix::home {

// Everything outlives the pane.
struct AgentNeeds {
  core::AppState& state;
  core::ErrorLog& log;
  control::AgentControl& agent;
  bool& AttentionPending;  // something new needs the user
  std::int16_t& AgentLevel;
  std::function<void()> FillAgentFra;  // what selecting the pane runs
};

class AgentPane {
 public:
  explicit AgentPane(AgentNeeds needs);
  AgentPane(const AgentPane&) = delete;
  AgentPane& operator=(const AgentPane&) = delete;

  // 1 the Agent runs, 3 it does not, or what it writes cannot be seen; paints the top of the pane.
  std::int16_t CheckAgnSta();
  void aClick_Click();

  // Whether something else than a stopped Agent keeps its events from being seen: starting it does not help.
  bool Unseen = false;
  // The next "not running" draws attention, once.
  bool AgentJustStarted = true;

  widgets::Label aAgSta{"aAgSta", "Monitoring Status"};
  widgets::Label aTitleDesc{"aTitleDesc"};
  widgets::Label aStatus{"aStatus"};
  widgets::Label aClick{"aClick"};
  widgets::Image StaImg{"StaImg(2)"};

 private:
  void Change();

  AgentNeeds needs_;
  bool changing_ = false;  // the Agent is being started or stopped
};

}  // namespace zendrix::home
