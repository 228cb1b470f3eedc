#include "qt/home/frm_tour.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QPushButton>

#include "qt/bind_check_box.h"
#include "qt/bind_label.h"
#include "qt/home/frm_survey.h"

namespace zendrix::qt {

TourWindow::TourWindow(home::frmTour& form, const Toolkit& toolkit) : FormWindow(form, toolkit) {
  escape_closes = true;
  resize(860, 620);
  setMinimumSize(480, 360);
  auto* central = new QWidget;
  auto* column = new QVBoxLayout(central);
  column->setContentsMargins(0, 0, 0, 12);
  column->setSpacing(12);
  column->addLayout(MakePortalPane(form.WBr, form.page, QStringLiteral("Tour"), kit()), 1);
  auto* foot = new QHBoxLayout;
  foot->setContentsMargins(16, 0, 16, 0);
  foot->addWidget(MakeCheckBox(form.chkNO, kit()));
  foot->addStretch(1);
  foot->addWidget(MakeButton(form.bbutton, "flat", kit()));
  foot->addWidget(MakeButton(form.fbutton, "flat", kit()));
  column->addLayout(foot);
  setCentralWidget(central);
}

}  // namespace zendrix::qt
