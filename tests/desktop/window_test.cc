// The window put away and brought back, with a notification area and without.
#include <gmock/gmock.h>

#include <fstream>
#include <iterator>
#include <string>

#include "desktop/console_program.h"
#include "desktop/eventually.h"

namespace zendrix::desktop {
namespace {

class WindowTest : public ::testing::Test {
 protected:
  Screen& screen() { return console_.screen(); }
  void StartTray() {
    tray_ = TheStage().desktop->Start(
        {"/usr/bin/trayer", "--edge", "top", "--align", "left", "--widthtype", "request"}, "tray");
    ASSERT_TRUE(Eventually([&] { return screen().HasTray(); })) << tray_.Output();
  }
  Place AwaitIcon() {
    std::optional<Place> icon;
    EXPECT_TRUE(Eventually([&] { return (icon = screen().TrayIcon()).has_value(); })) << tray_.Output();
    return icon.value_or(Place());
  }
  bool HasWindow() { return screen().WithTitle("Home Edition -  v ").has_value(); }
  // The icon's menu comes up at a click; its items tell of themselves when the keys come by.
  void ChooseInTheIconsMenu(const std::string& item) {
    ASSERT_TRUE(Eventually([&] {
      const Place icon = AwaitIcon();
      screen().Click(icon.x + icon.width / 2, icon.y + icon.height / 2);
      return ComesSoon([&] { return screen().HasMenu(); });
    }));
    console_.MoveFocusTo("menu item", item, "Down");
    screen().Key("Return");
  }
  static constexpr char kStaysOpen[] = "This desktop shows no notification area";

  ConsoleProgram console_;
  ChildProcess tray_;
};

TEST_F(WindowTest, CloseBoxHidesItAndTheIconBringsItBack) {
  StartTray();
  console_.StartAndWait();
  AwaitIcon();
  screen().CloseWindow(console_.MainWindow());
  ASSERT_TRUE(Eventually([&] { return !HasWindow(); }));
  EXPECT_TRUE(console_.process().Running());
  ChooseInTheIconsMenu("Open Zendrix");
  EXPECT_TRUE(Eventually([&] { return console_.IsActive(); }));
}

TEST_F(WindowTest, DesktopFindsItsEntryByTheNameOfTheWindow) {
  console_.StartAndWait();
  EXPECT_EQ(screen().EntryOf(console_.MainWindow()), "com.korvessa.zendrix");
}

// Where a page is drawn by the graphics processor, the toolkit takes the window down for its first browser
// and puts it up again: it flickered, and stood in the middle of the screen then, wherever the user had put
// it.
TEST_F(WindowTest, FirstExplanationLeavesItWhereTheUserHasPutIt) {
  console_.Event("Aggregation", "a", "0.99", "", "Q,1");
  console_.StartAndWait();
  const auto stands_at_the_edge = [&] {
    const auto window = screen().WithTitle("Home Edition -  v ");
    const auto place = window ? screen().PlaceOf(*window) : std::nullopt;
    return place && place->x >= 12 && place->x < 24 && place->y >= 8 && place->y < 48;
  };
  screen().Move(console_.MainWindow(), 12, 8);
  ASSERT_TRUE(Eventually(stands_at_the_edge));
  const WindowId window = console_.MainWindow();
  console_.OpenPane("Alerts");
  console_.AwaitText("Risk level: Intrusion");
  EXPECT_TRUE(Eventually(stands_at_the_edge));
  EXPECT_EQ(console_.MainWindow(), window);
}

TEST_F(WindowTest, PageOfTextLoadsNoGraphicsDriverAndNothingIsSaidAboutIt) {
  console_.Event("Aggregation", "a", "0.99", "", "Q,1");
  console_.StartAndWait();
  console_.OpenPane("Alerts");
  console_.AwaitText("Risk level: Intrusion");
  std::ifstream maps("/proc/" + std::to_string(console_.process().id()) + "/maps");
  const std::string loaded{std::istreambuf_iterator<char>(maps), {}};
  EXPECT_THAT(loaded, ::testing::HasSubstr("libQt6WebEngineCore"));
  EXPECT_THAT(loaded, ::testing::Not(::testing::HasSubstr("_dri.so")));
  EXPECT_THAT(console_.process().Output(), ::testing::Not(::testing::HasSubstr("raphics")));
}

TEST_F(WindowTest, HiddenConsoleIsEndedFromTheIconsMenu) {
  StartTray();
  console_.StartAndWait();
  AwaitIcon();
  screen().CloseWindow(console_.MainWindow());
  ASSERT_TRUE(Eventually([&] { return !HasWindow(); }));
  ChooseInTheIconsMenu("Quit");
  console_.Press("push button", "Yes");
  console_.AwaitText("You have chosen to exit");
  console_.Press("push button", "OK");
  ASSERT_TRUE(Eventually([&] { return !console_.process().Running(); })) << console_.Log();
  EXPECT_EQ(console_.process().status(), 0);
}

TEST_F(WindowTest, WithoutANotificationAreaTheCloseBoxMinimisesAndSaysSoOnce) {
  console_.StartAndWait();
  const WindowId window = console_.MainWindow();
  screen().CloseWindow(window);
  console_.AwaitText(kStaysOpen);
  console_.Press("push button", "OK");
  ASSERT_TRUE(Eventually([&] { return screen().IsMinimised(window); }));
  screen().Activate(window);
  ASSERT_TRUE(Eventually([&] { return console_.IsActive() && !screen().IsMinimised(window); }));
  screen().CloseWindow(window);
  ASSERT_TRUE(Eventually([&] { return screen().IsMinimised(window); }));
  EXPECT_FALSE(console_.HasText(kStaysOpen));
}

TEST_F(WindowTest, NotificationAreaThatComesLateGetsTheIcon) {
  console_.StartAndWait();
  StartTray();
  AwaitIcon();
  screen().CloseWindow(console_.MainWindow());
  EXPECT_TRUE(Eventually([&] { return !HasWindow(); }));
  EXPECT_FALSE(console_.HasText(kStaysOpen));
}

}  // namespace
}  // namespace zendrix::desktop
