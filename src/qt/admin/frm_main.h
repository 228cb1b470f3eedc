// The window of frmMain: menu, toolbar, the panes where the form has laid them out, status bar, and the icon
// in the notification area. What the window's units show is put into the area of panes.
#pragma once

#include "admin/frm_main.h"
#include "qt/bind_form.h"

namespace zendrix::qt {

class PaneArea;

class AdminWindow : public FormWindow {
 public:
  AdminWindow(admin::frmMain& form, const Toolkit& toolkit);

 private:
  void MakeMenuBar();
  void MakeToolBar();
  void MakePanes();
  void MakeStatusBar();
  void KeepSplitterInSight();

  admin::frmMain& ui_;
};

// Widths of texts in the font that the grid is shown in.
admin::TextMetrics GridMetrics();

}  // namespace zendrix::qt
