// The window of frmMain.
#pragma once

#include "admin/frm_main.h"
#include "qt/bind_form.h"

namespace zendrix::qt {

class AdminWindow : public FormWindow {
 public:
  AdminWindow(admin::frmMain& form, const Toolkit& toolkit);

 private:
  void MakeMenuBar();
  void MakeToolBar();
  void MakeGrid();
  void MakeStatusBar();

  admin::frmMain& ui_;
};

// Widths of texts in the font that the grid is shown in.
admin::TextMetrics GridMetrics();

}  // namespace zendrix::qt
