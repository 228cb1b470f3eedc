#include "home/portal_windows.h"

#include "control/portal.h"
#include "settings/reg_ini.h"
#include "support/console_world.h"
#include "support/fake_portal.h"

namespace zendrix::home {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;
using Shown = widgets::ScriptedFormHost::Shown;

class PortalWindowsTest : public ::testing::Test {
 protected:
  zendrix::testing::ConsoleWorld world_;
  settings::RegIni reg_ini_{world_.state, world_.log};
  settings::MiscSettings misc_{world_.state, reg_ini_};
  widgets::Screen screen_;
  widgets::Form main_{world_.state.forms, "frmNewUI"};
  PortalWindows windows_{TourNeeds{world_.state, world_.log, misc_, screen_}, main_};
};

TEST_F(PortalWindowsTest, SurveyIsOwnedByTheMainWindowAndGoesToItsPage) {
  windows_.TakeSurvey();
  EXPECT_THAT(world_.host.shown, ElementsAre(Shown{"frmSurvey", "frmNewUI", false, true, false}));
  EXPECT_EQ(windows_.survey()->WBr.awaited(),
            control::PortalUrl(world_.state, screen_, control::PortalRequest::kSurvey));
  EXPECT_THAT(windows_.survey()->WBr.awaited(),
              StartsWith("http://portal.example.com/redir.asp?PostType=UserSurvey&HostID="));
  EXPECT_THAT(windows_.survey()->WBr.awaited(), ::testing::EndsWith("&Reason=inUse"));
  EXPECT_FALSE(windows_.survey()->page.lblNoPage.visible);
}

TEST_F(PortalWindowsTest, SurveyStaysOnThePortalAndStopsWhenItIsClosed) {
  windows_.TakeSurvey();
  zendrix::testing::FakePortal browser(windows_.survey()->WBr);
  EXPECT_TRUE(windows_.survey()->WBr.Cancels("http://evil.org/"));
  browser.events.clear();
  windows_.survey()->Unload(widgets::UnloadCause::kCloseBox);
  EXPECT_THAT(browser.events, ElementsAre("stop"));
}

TEST_F(PortalWindowsTest, SurveyWithoutTheLibraryIsLoggedAndDoesNotOpen) {
  world_.platform.family.library_missing = true;
  world_.quiet.Expect("'frmNewUI : TakeSurvey': 53: File not found");
  windows_.TakeSurvey();
  EXPECT_EQ(windows_.survey(), nullptr);
  EXPECT_THAT(world_.host.shown, IsEmpty());
}

TEST_F(PortalWindowsTest, PointerIsAnHourglassWhileTheHostIsAskedFor) {
  std::vector<int> shapes;
  const auto link = screen_.MousePointer.changed.Connect([&] { shapes.push_back(screen_.MousePointer); });
  windows_.TakeSurvey();
  EXPECT_THAT(shapes, ElementsAre(widgets::kPointerHourglass, widgets::kPointerDefault));
}

TEST_F(PortalWindowsTest, TourThatIsOpenComesToTheFront) {
  windows_.ShowTour();
  frmTour* const first = &windows_.Tour();
  int forward = 0;
  const auto link = first->bring_forward.Connect([&] { ++forward; });
  windows_.ShowTour();
  EXPECT_EQ(&windows_.Tour(), first);
  EXPECT_EQ(forward, 1);
}

TEST_F(PortalWindowsTest, TourOpensAnewAfterItWasClosed) {
  windows_.ShowTour();
  windows_.Tour().Unload(widgets::UnloadCause::kCloseBox);
  windows_.ShowTour();
  EXPECT_TRUE(windows_.Tour().visible);
  EXPECT_TRUE(windows_.Tour().loaded());
}

// The tour was closed and opened again while the first one still waited for a page that failed.
TEST_F(PortalWindowsTest, TourOpenedAnewDuringTheWaitOfTheFormerOneStands) {
  windows_.ShowTour();
  const auto act = world_.platform.timers.MakeTimer([&] {
    windows_.Tour().Unload(widgets::UnloadCause::kCloseBox);
    windows_.ShowTour();
  });
  act->StartOnce(1000);
  windows_.Tour().WBr.NavigateError.Raise();
  EXPECT_TRUE(windows_.Tour().visible);
  EXPECT_FALSE(windows_.Tour().page.lblNoPage.visible);
}

}  // namespace
}  // namespace zendrix::home
