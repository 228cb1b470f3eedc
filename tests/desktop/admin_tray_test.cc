// The Administrator console in the notification area.
#include <gmock/gmock.h>

#include <functional>

#include "desktop/admin_console.h"
#include "desktop/eventually.h"
#include "desktop/notification_area.h"

namespace zendrix::desktop {
namespace {

class AdminTrayTest : public ::testing::Test {
 protected:
  AdminTrayTest() {
    console_.Add(1, "HOST", "System", "A", "first");
    console_.StartAndWait();
    tray_.AwaitIcon();
  }
  std::optional<WindowId> Window() { return console_.screen().WithTitle(AdminConsole::kTitle); }
  void Hide() {
    console_.screen().CloseWindow(*Window());
    ASSERT_TRUE(Eventually([&] { return !Window(); }));
    ASSERT_TRUE(console_.process().Running());
  }
  // The entry of the icon's menu at this place, from 1; until what it leads to has come.
  void ChooseFromMenu(int place, const std::function<bool()>& come) {
    SCOPED_TRACE(place);
    ASSERT_TRUE(Eventually([&] {
      if (!console_.screen().HasMenu()) tray_.Click(3);
      if (!ComesSoon([&] { return console_.screen().HasMenu(); })) return false;
      for (int i = 0; i < place; ++i) console_.screen().Key("Down");
      console_.screen().Key("Return");
      return ComesSoon(come);
    }));
  }

  AdminConsole console_;
  NotificationArea tray_{console_.screen()};
};

TEST_F(AdminTrayTest, WindowHidesInTheTrayAndComesBackByItsIconAndItsMenu) {
  Hide();
  tray_.Click();
  console_.AwaitActive();
  const Place place = *console_.screen().PlaceOf(*Window());
  Hide();
  ChooseFromMenu(1, [&] { return Window().has_value(); });
  console_.AwaitActive();
  console_.Await("table cell", "first");
  ChooseFromMenu(2, [&] { return console_.screen().IsMinimised(*Window()); });
  ChooseFromMenu(3, [&] { return console_.screen().PlaceOf(*Window())->width > place.width; });
  console_.AwaitActive();
}

TEST_F(AdminTrayTest, IconFlashesAfterANotableEventUntilTheWindowIsOpenedWhichShowsIt) {
  Hide();
  const auto calm = tray_.Icon();
  console_.Add(2, "HOST", "Monitoring Agent", "N", "saw a port");
  console_.Add(3, "HOST", "System", "A", "what came behind");
  ASSERT_TRUE(Eventually([&] { return tray_.Icon() != calm; }));
  ASSERT_TRUE(Eventually([&] { return tray_.Icon() == calm; }));
  ASSERT_TRUE(Eventually([&] { return tray_.Icon() != calm; }));
  tray_.Click();
  console_.AwaitActive();
  console_.AwaitMoment(":02");
  EXPECT_TRUE(Eventually([&] { return tray_.Icon() == calm; }));
}

}  // namespace
}  // namespace zendrix::desktop
