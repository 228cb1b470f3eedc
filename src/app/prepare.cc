#include "app/prepare.h"

#include <QApplication>

#include "app/end_signals.h"
#include "platform/linux/clean_environment.h"
#include "qt/browser_start.h"

namespace zendrix::app {

void BeforeApplication() {
#ifndef ZENDRIX_TEST_BUILD
  platform::CleanEnvironment();
#endif
  EndSignals::Block();
  qt::BeforeBrowser();
}

void AfterApplication() {
  QApplication::setApplicationName(QStringLiteral("zendrix"));
  QApplication::setDesktopFileName(QStringLiteral("zendrix"));
  // The console lives in the notification area when its window is closed.
  QApplication::setQuitOnLastWindowClosed(false);
}

}  // namespace zendrix::app
