#include "qt/home/help_pane.h"

#include <QBoxLayout>
#include <QLabel>

#include "qt/bind_label.h"
#include "qt/pane_looks.h"

namespace zendrix::qt {

QWidget* MakeHelpPane(home::HelpPane& pane, const Toolkit& kit) {
  auto* column = new QVBoxLayout;
  column->setSpacing(6);
  column->addWidget(MakeLabel(pane.hAppTitle, kit));
  column->addWidget(WithRole(MakeLabel(pane.hVersion, kit), "faint"));
  column->addSpacing(8);
  column->addWidget(MakeLabel(pane.hDescription, kit));
  column->addWidget(WithRole(MakeLabel(pane.hDisclaimer, kit), "faint"));
  return Card(column);
}

}  // namespace zendrix::qt
