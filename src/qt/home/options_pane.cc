#include "qt/home/options_pane.h"

#include <QLabel>

#include "qt/bind_label.h"

namespace zendrix::qt {

QWidget* MakeOptionsPane(home::OptionsPane& pane, const Toolkit& kit) {
  return MakeLabel(pane.etopDesc, kit);
}

}  // namespace zendrix::qt
