#include "app/prepare.h"

#include <stdlib.h>

#include <QApplication>

#include "app/end_signals.h"
#include "platform/linux/clean_environment.h"
#include "qt/browser_start.h"

namespace zendrix::app {

std::string DesktopEntryOf(const std::string& edition) {
  return edition == "Home" ? "com.korvessa.zendrix" : "com.korvessa.zendrix.administrator";
}

void BeforeApplication(const std::string& edition) {
#ifndef ZENDRIX_TEST_BUILD
  platform::CleanEnvironment();
#endif
  // One executable has two entries, so its own name does not do; this one goes before it (ICCCM 4.1.2.5).
  ::setenv("RESOURCE_NAME", DesktopEntryOf(edition).c_str(), 1);
  EndSignals::Block();
  qt::BeforeBrowser();
}

void AfterApplication(const std::string& edition) {
  QApplication::setApplicationName(QStringLiteral("zendrix"));
  QApplication::setDesktopFileName(QString::fromStdString(DesktopEntryOf(edition)));
  // The console lives in the notification area when its window is closed.
  QApplication::setQuitOnLastWindowClosed(false);
}

}  // namespace zendrix::app
