#include "qt/home/frm_survey.h"

#include <QBoxLayout>
#include <QLabel>

#include "qt/bind_label.h"
#include "qt/portal_browser.h"

namespace zendrix::qt {

QVBoxLayout* MakePortalPane(widgets::PortalView& view, home::PortalPage& page, const QString& accessible_name,
                            const Toolkit& kit) {
  auto* column = new QVBoxLayout;
  column->setSpacing(0);
  column->addWidget(MakeWarning(page.lblNoPage, kit));
  column->addWidget(MakePortalView(view, accessible_name, kit), 1);
  return column;
}

SurveyWindow::SurveyWindow(home::frmSurvey& form, const Toolkit& toolkit) : FormWindow(form, toolkit) {
  escape_closes = true;
  resize(720, 560);
  setMinimumSize(420, 320);
  auto* central = new QWidget;
  auto* pane = MakePortalPane(form.WBr, form.page, QStringLiteral("Survey"), kit());
  pane->setContentsMargins(0, 0, 0, 0);
  central->setLayout(pane);
  setCentralWidget(central);
}

}  // namespace zendrix::qt
