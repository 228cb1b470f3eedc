// The icon in the notification area.
#include <QMenu>
#include <QSystemTrayIcon>
#include <QTest>

#include "qt/bind_tray.h"
#include "qt/theme.h"
#include "support/console_world.h"

namespace zendrix::qt {
namespace {

class TrayTest : public ::testing::Test {
 protected:
  TrayTest() { BindTray(tray_, &menu_, &owner_, Toolkit{guard_, pictures_, theme_}); }
  QSystemTrayIcon& icon() { return *owner_.findChild<QSystemTrayIcon*>(QStringLiteral("tray")); }

  testing::ConsoleWorld world_;
  SlotGuard guard_{world_.log};
  Pictures pictures_{""};
  Theme theme_{pictures_};
  widgets::Tray tray_;
  QMenu menu_;
  QWidget owner_;
};

TEST_F(TrayTest, ActsOfTheMouseArriveAsTheirMessages) {
  std::vector<int> messages;
  int menus = 0;
  tray_.mouse.ConnectForever([&](int message) { messages.push_back(message); });
  tray_.menu_opens.ConnectForever([&] { ++menus; });
  icon().activated(QSystemTrayIcon::Trigger);
  icon().activated(QSystemTrayIcon::DoubleClick);
  EXPECT_EQ(messages, (std::vector<int>{widgets::kTrayLeftUp, widgets::kTrayLeftDouble}));
  EXPECT_EQ(menus, 0);
  icon().activated(QSystemTrayIcon::Context);
  EXPECT_EQ(messages.size(), 2U);
  EXPECT_EQ(menus, 1);
}

// The menu of the first click took the second, and the window stayed hidden.
TEST_F(TrayTest, FirstOfTwoClicksIsHeldWhereItOpensSomething) {
  std::vector<int> messages;
  tray_.mouse.ConnectForever([&](int message) { messages.push_back(message); });
  tray_.click_waits = true;
  icon().activated(QSystemTrayIcon::Trigger);
  EXPECT_TRUE(messages.empty());
  icon().activated(QSystemTrayIcon::DoubleClick);
  EXPECT_EQ(messages, std::vector<int>{widgets::kTrayLeftDouble});
  icon().activated(QSystemTrayIcon::Trigger);
  EXPECT_TRUE(QTest::qWaitFor([&] { return messages.size() == 2; }));
  EXPECT_EQ(messages.back(), widgets::kTrayLeftUp);
}

TEST_F(TrayTest, DesktopHasNoMenuToOpenWhileTheFormForbidsIt) {
  EXPECT_EQ(icon().contextMenu(), &menu_);
  tray_.has_menu = false;
  EXPECT_EQ(icon().contextMenu(), nullptr);
  tray_.has_menu = true;
  EXPECT_EQ(icon().contextMenu(), &menu_);
}

}  // namespace
}  // namespace zendrix::qt
