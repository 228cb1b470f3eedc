// The top of the Advanced pane.
#pragma once

#include "home/agent_pane.h"
#include "qt/bind.h"

class QWidget;

namespace zendrix::qt {

QWidget* MakeAgentCard(home::AgentPane& pane, const Toolkit& kit);

}  // namespace zendrix::qt
