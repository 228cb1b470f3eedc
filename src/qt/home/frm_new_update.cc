#include "qt/home/frm_new_update.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QLabel>
#include <QPushButton>

#include "qt/bind_check_box.h"
#include "qt/bind_label.h"
#include "qt/pane_looks.h"

namespace zendrix::qt {

NewUpdateWindow::NewUpdateWindow(home::frmNewUpdate& form, const Toolkit& kit) : FormDialog(form, kit) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(24, 20, 24, 18);
  column->setSpacing(12);
  auto* head = new QHBoxLayout;
  head->setSpacing(16);
  auto* mark = new QLabel;
  mark->setPixmap(kit.pictures.Pixmap(QStringLiteral("icon"), 40, devicePixelRatioF()));
  head->addWidget(mark, 0, Qt::AlignTop);
  auto* words = new QVBoxLayout;
  words->setSpacing(8);
  QLabel* message = MakeLabel(form.lblMsg, kit);
  message->setMinimumWidth(380);
  words->addWidget(message);
  words->addWidget(WithRole(MakeLabel(form.lblMsg2, kit), "faint"));
  head->addLayout(words, 1);
  column->addLayout(head);
  column->addWidget(MakeCheckBox(form.chkDontAsk, kit));
  auto* buttons = new QHBoxLayout;
  buttons->addStretch(1);
  // The window comes by itself, perhaps into the middle of somebody's typing: no key installs before the user
  // has gone to that button.
  QPushButton* later = MakeButton(form.lblNo, "flat", kit);
  for (QPushButton* button : {MakeButton(form.lblYes, "flat", kit), later}) {
    button->setAutoDefault(false);
    buttons->addWidget(button);
  }
  column->addLayout(buttons);
  later->setFocus();
  Keep(this, form.repaint.Connect([this] {
    layout()->activate();
    repaint();
  }));
}

}  // namespace zendrix::qt
