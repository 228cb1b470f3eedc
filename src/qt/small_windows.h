// The windows of the splash, the short message and the About form.
#pragma once

#include <QDialog>

#include "core/about_window.h"
#include "core/message_window.h"
#include "core/splash.h"
#include "qt/bind_form.h"

namespace zendrix::qt {

class SplashWindow : public QWidget {
 public:
  SplashWindow(core::frmSplash& form, const Toolkit& kit);
};

class MessageWindow : public FormDialog {
 public:
  MessageWindow(core::frmMsg& form, const Toolkit& kit);
};

class AboutWindow : public FormDialog {
 public:
  AboutWindow(core::frmAbout& form, const Toolkit& kit);
};

}  // namespace zendrix::qt
