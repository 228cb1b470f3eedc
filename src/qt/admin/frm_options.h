// The window of frmOptions.
#pragma once

#include "admin/frm_options.h"
#include "qt/bind_form.h"

class QTabBar;

namespace zendrix::qt {

class OptionsDialog : public FormDialog {
 public:
  OptionsDialog(admin::frmOptions& form, const Toolkit& kit);

 private:
  QWidget* MakePages();
  QWidget* MakeMonitors();
  QWidget* MakeEventView();
  QWidget* MakeTimeLine();
  QWidget* MakeAlerts();
  QLayout* MakeButtons();
  void GoToNextTab();

  admin::frmOptions& ui_;
  Toolkit kit_;
  QTabBar* tabs_;
};

}  // namespace zendrix::qt
