// The window of frmNewUI: the navigation and a frame around the panes.
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
  // A pane's title, its sentence and, where it has one, its flag.
  QWidget* MakeHeading(int view, widgets::Label& description, widgets::Image* flag);
  QWidget* MakeAdvancedPane();

  home::frmNewUI& ui_;
};

}  // namespace zendrix::qt
