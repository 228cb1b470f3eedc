#include "app/prepare.h"

#include <unistd.h>

#include <QApplication>
#include <QLoggingCategory>
#include <cstdlib>

#include "app/end_signals.h"
#include "platform/linux/clean_environment.h"
#include "qt/details_page.h"

namespace zendrix::app {

void BeforeApplication() {
#ifndef ZENDRIX_TEST_BUILD
  platform::CleanEnvironment();
#endif
  EndSignals::Block();
  qt::RegisterPageScheme();
  // The browser part refuses to start as the superuser inside its own sandbox.
  if (::geteuid() == 0) ::setenv("QTWEBENGINE_DISABLE_SANDBOX", "1", 0);
  // A page of text needs no graphics processor, and a host under attack no more open doors than that.
  ::setenv("QTWEBENGINE_CHROMIUM_FLAGS", "--disable-gpu", 0);
  QLoggingCategory::setFilterRules(QStringLiteral("qt.webenginecontext.info=false"));
}

void AfterApplication() {
  QApplication::setApplicationName(QStringLiteral("zendrix"));
  QApplication::setDesktopFileName(QStringLiteral("zendrix"));
  // The console lives in the notification area when its window is closed.
  QApplication::setQuitOnLastWindowClosed(false);
}

}  // namespace zendrix::app
