// The Alerts pane: the list, the controls around it and the explanation.
#pragma once

#include "home/alerts_pane.h"
#include "qt/bind.h"

class QWidget;

namespace zendrix::qt {

QWidget* MakeAlertsPane(home::AlertsPane& pane, const Toolkit& kit);

}  // namespace zendrix::qt
