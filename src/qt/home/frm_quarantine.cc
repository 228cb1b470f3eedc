#include "qt/home/frm_quarantine.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "qt/bind_label.h"
#include "qt/bind_list_view.h"
#include "qt/pane_looks.h"

namespace zendrix::qt {

QuarantineWindow::QuarantineWindow(home::frmQuarantine& form, const Toolkit& kit) : FormDialog(form, kit) {
  setMinimumSize(880, 420);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(kPaneMargin, kPaneMargin - 4, kPaneMargin, kPaneMargin - 6);
  column->setSpacing(kPaneGap);
  column->addWidget(WithRole(MakeLabel(form.lblAbout, kit), "faint"));
  column->addWidget(
      new ListTable(form.lvQuarantine, QStringLiteral("h3"), QStringLiteral("Quarantine"), QString(), kit),
      1);
  QLabel* const entry = MakeLabel(form.lblEntry, kit);
  entry->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  Reflect(entry, form.lblEntry.caption,
          [entry](const std::string&) { entry->setAccessibleName(entry->text()); });
  column->addWidget(entry);
  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(kPaneGap);
  buttons->addStretch(1);
  for (widgets::Label* label : {&form.qRestore, &form.qClose}) {
    QPushButton* const button = MakeButton(*label, "flat", kit);
    button->setAutoDefault(false);
    buttons->addWidget(button);
  }
  column->addLayout(buttons);
}

}  // namespace zendrix::qt
