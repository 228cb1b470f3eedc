// The splash, the short message window and the About window.
#pragma once

#include <QDialog>

#include "core/about_window.h"
#include "core/message_window.h"
#include "core/splash.h"
#include "qt/bind.h"

namespace zendrix::qt {

class SplashWindow : public QWidget {
 public:
  SplashWindow(core::frmSplash& form, const Toolkit& kit);
};

// Both return when the window has gone.
void ShowMessageWindow(core::frmMsg& form, const Toolkit& kit);
void ShowAboutWindow(core::frmAbout& form, const Toolkit& kit);

}  // namespace zendrix::qt
