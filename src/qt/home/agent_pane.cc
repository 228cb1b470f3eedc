#include "qt/home/agent_pane.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "qt/bind_label.h"
#include "qt/pane_looks.h"

namespace zendrix::qt {

QWidget* MakeAgentCard(home::AgentPane& pane, const Toolkit& kit) {
  auto* column = new QVBoxLayout;
  auto* state = new QHBoxLayout;
  column->addWidget(WithRole(MakeLabel(pane.aAgSta, kit), "faint"));
  QLabel* status = WithRole(MakeLabel(pane.aStatus, kit), "value");
  status->setWordWrap(false);
  state->addWidget(status);
  state->addWidget(MakeButton(pane.aClick, "link", kit));
  state->addStretch(1);
  column->addLayout(state);
  return Card(column);
}

}  // namespace zendrix::qt
