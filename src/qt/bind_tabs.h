// Labels that stand for the tabs of a pane: the one with a border is the current one.
#pragma once

#include <vector>

#include "qt/bind.h"
#include "widgets/label.h"

class QTabBar;

namespace zendrix::qt {

QTabBar* MakeTabs(const std::vector<widgets::Label*>& labels, const QString& accessible_name,
                  const Toolkit& kit);

}  // namespace zendrix::qt
