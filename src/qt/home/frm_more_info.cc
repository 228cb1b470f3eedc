#include "qt/home/frm_more_info.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>

#include "qt/bind_browser_view.h"
#include "qt/bind_label.h"
#include "qt/bind_option_button.h"
#include "qt/pane_looks.h"
#include "qt/text_edge.h"

namespace zendrix::qt {

MoreInfoWindow::MoreInfoWindow(home::frmMoreInfo& form, const Toolkit& kit) : FormDialog(form, kit) {
  setMinimumSize(700, 600);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(kPaneMargin, kPaneMargin - 4, kPaneMargin, kPaneMargin - 6);
  column->setSpacing(kPaneGap);
  auto* inner = new QVBoxLayout;
  inner->addWidget(MakeBrowserView(form.WBr, QStringLiteral("Explanation"), kit));
  column->addWidget(Card(inner), 1);

  // The place of the question stays free on pages without one, so that the page does not jump.
  auto* question = new QWidget;
  QSizePolicy keeps_place = question->sizePolicy();
  keeps_place.setRetainSizeWhenHidden(true);
  question->setSizePolicy(keeps_place);
  auto* asked = new QVBoxLayout(question);
  asked->setContentsMargins(0, 0, 0, 0);
  asked->addWidget(MakeLabel(form.lblQuestion, kit));
  auto* answers = new QHBoxLayout;
  answers->setSpacing(2 * kPaneGap);
  for (widgets::OptionButton& option : form.optAns) answers->addWidget(MakeOptionButton(option, kit));
  answers->addStretch(1);
  asked->addLayout(answers);
  BindControl(form.fraQ, question, ToQt(form.lblQuestion.caption.Get()));
  column->addWidget(question);

  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(kPaneGap);
  for (widgets::Label* label : {&form.bBack, &form.bNext, &form.bFinish}) {
    QPushButton* const button = MakeButton(*label, "flat", kit);
    button->setAutoDefault(false);
    if (label == &form.bNext) buttons->addStretch(1);
    buttons->addWidget(button);
  }
  column->addLayout(buttons);
}

}  // namespace zendrix::qt
