#include "qt/home/logs_pane.h"

#include <QLabel>

#include "qt/bind_label.h"
#include "qt/home/pane_looks.h"

namespace zendrix::qt {

QWidget* MakeLogs(home::LogsPane& pane, const Toolkit& kit) {
  return WithRole(MakeLabel(pane.aDesc, kit), "faint");
}

}  // namespace zendrix::qt
