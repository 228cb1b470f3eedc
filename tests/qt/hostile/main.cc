#include <gmock/gmock.h>

#include <QApplication>
#include <cstdlib>

#include "qt/browser_start.h"

int main(int argc, char** argv) {
  ::testing::InitGoogleMock(&argc, argv);
  ::setenv("QT_QPA_PLATFORM", "offscreen", 0);
  zendrix::qt::BeforeBrowser();
  QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
