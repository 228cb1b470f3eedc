// What reaches the user while the window is hidden.
#include <gmock/gmock.h>

#include "desktop/console_program.h"
#include "desktop/eventually.h"
#include "desktop/notification_area.h"

namespace zendrix::desktop {
namespace {

class HiddenTest : public ::testing::Test {
 protected:
  void SetUp() override {
    console_.StartAndWait();
    tray_.AwaitIcon();
    screen().CloseWindow(console_.MainWindow());
    ASSERT_TRUE(Eventually([&] { return !screen().WithTitle("Home Edition -  v "); }));
  }
  Screen& screen() { return console_.screen(); }
  std::vector<unsigned long> Icon() { return tray_.Icon(); }

  ConsoleProgram console_;
  NotificationArea tray_{console_.screen()};
};

TEST_F(HiddenTest, NewIntrusionPopsUpAndLeadsToItsExplanation) {
  const WindowId active = screen().Active();
  console_.Event("Aggregation", "a", "0.99", "", "Q,1");
  console_.Await("push button", "[Details ]");
  EXPECT_TRUE(screen().WithTitle("Suspicious Event Alert!"));
  EXPECT_EQ(screen().Active(), active) << "the pop-up took the keyboard";
  console_.Press("push button", "[Details ]");
  ASSERT_TRUE(Eventually([&] { return screen().WithTitle("Home Edition -  v ").has_value(); }));
  console_.AwaitText("Risk level: Intrusion");
  EXPECT_TRUE(Eventually([&] { return !screen().WithTitle("Suspicious Event Alert!"); }));
}

TEST_F(HiddenTest, IconBlinksAfterANewIntrusion) {
  const auto calm = Icon();
  console_.Event("Aggregation", "a", "0.99", "", "Q,1");
  ASSERT_TRUE(Eventually([&] { return Icon() != calm; }));
  ASSERT_TRUE(Eventually([&] { return Icon() == calm; }));
  EXPECT_TRUE(Eventually([&] { return Icon() != calm; }));
}

TEST_F(HiddenTest, IconRestsWhenTheWindowHasBeenOpened) {
  const auto calm = Icon();
  console_.Event("Aggregation", "a", "0.99", "", "Q,1");
  ASSERT_TRUE(Eventually([&] { return Icon() != calm; }));
  console_.Press("push button", "[Details ]");
  ASSERT_TRUE(Eventually([&] { return screen().WithTitle("Home Edition -  v ").has_value(); }));
  EXPECT_TRUE(Eventually([&] { return !ComesSoon([&] { return Icon() != calm; }); }));
}

// The first click opens the icon's menu, which must not swallow the second.
TEST_F(HiddenTest, DoubleClickOnTheIconBringsTheWindowBack) {
  tray_.Click();
  tray_.Click();
  EXPECT_TRUE(Eventually([&] { return screen().WithTitle("Home Edition -  v ").has_value(); }));
}

}  // namespace
}  // namespace zendrix::desktop
