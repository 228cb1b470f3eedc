#include "qt/qt_loop.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTest>
#include <QTimer>

namespace zendrix::qt {
namespace {

TEST(QtMessageLoopTest, QueueIsServedOnceInAWhileHoweverOftenItIsAskedFor) {
  QtMessageLoop loop;
  QObject receiver;
  int served = 0;
  const auto post = [&] { QTimer::singleShot(0, &receiver, [&] { ++served; }); };
  loop.ProcessMessages();
  post();
  QElapsedTimer clock;
  clock.start();
  int asked = 0;
  while (served == 0) {
    loop.ProcessMessages();
    ++asked;
    ASSERT_LT(clock.elapsed(), 60'000);
  }
  EXPECT_GT(asked, 10);
  EXPECT_EQ(served, 1);
}

TEST(QtMessageLoopTest, WaitServesWhatComesAtOnce) {
  QtMessageLoop loop;
  QObject receiver;
  bool served = false;
  loop.ProcessMessages();
  QTimer::singleShot(0, &receiver, [&] { served = true; });
  loop.WaitForMessages(10'000);
  EXPECT_TRUE(served);
}

}  // namespace
}  // namespace zendrix::qt
