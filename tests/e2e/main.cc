// Test programs of the windows run without a screen unless the environment names one.
#include <gmock/gmock.h>

#include <QApplication>

#include "app/prepare.h"

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  ::testing::InitGoogleMock(&argc, argv);
  zendrix::app::BeforeApplication("Home");
  QApplication application(argc, argv);
  zendrix::app::AfterApplication("Home");
  return RUN_ALL_TESTS();
}
