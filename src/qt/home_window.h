// The window of frmNewUI.
#pragma once

#include "home/frm_new_ui.h"
#include "qt/bind_form.h"

namespace zendrix::qt {

class HomeWindow : public FormWindow {
 public:
  HomeWindow(home::frmNewUI& form, const Toolkit& toolkit);

 private:
  QWidget* MakeStrip();
  QWidget* MakeNavigationRow(int view);
  QWidget* MakeHeading(int view, widgets::Label& description);
  QWidget* MakeAlertsPane();
  QWidget* MakeAdvancedPane();
  QWidget* MakeHelpPane();
  QWidget* MakeSummaryPane();
  QWidget* MakeStatusBand();
  QWidget* MakeCountsCard();
  QWidget* MakeSummaryRow(int view);

  home::frmNewUI& ui_;
};

}  // namespace zendrix::qt
