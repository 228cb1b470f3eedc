// The browser needs its scheme, and as the superuser no sandbox, before the application object exists.
#include <gmock/gmock.h>
#include <unistd.h>

#include <QApplication>
#include <QLoggingCategory>
#include <cstdlib>

#include "qt/details_page.h"

int main(int argc, char** argv) {
  ::testing::InitGoogleMock(&argc, argv);
  ::setenv("QT_QPA_PLATFORM", "offscreen", 0);
  ::setenv("QTWEBENGINE_CHROMIUM_FLAGS", "--disable-gpu", 0);
  if (::geteuid() == 0) ::setenv("QTWEBENGINE_DISABLE_SANDBOX", "1", 0);
  QLoggingCategory::setFilterRules(QStringLiteral("qt.webenginecontext.info=false"));
  zendrix::qt::RegisterPageScheme();
  QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
