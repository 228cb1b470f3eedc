// Pop-ups over the whole console: what they lead to, and that they change nothing of what is on show.
#include "core/moments.h"
#include "flow_fixture.h"

namespace zendrix::flow {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;

class PopUpFlow : public FlowTest {
 protected:
  PopUpFlow() { HaveDescription(2, "Aggregation,N,<A href='do'><dotext></A> at <time>\r\n"); }

  void OpenHidden() {
    Write(Alert(0, "/opt/first") + Alert(10, "/opt/tool"));
    Start();
    Home().ViewItems_Click(home::kAlertsView);
    ClickRow("K5");
    Home().Unload(widgets::UnloadCause::kCloseBox);
    ASSERT_FALSE(Home().visible);
  }
  home::frmPopUpMsg& PopUp() { return *Home().pop_ups.pop_up(); }
  bool IsOpen(const char* name) { return world_.state.forms.IsFormLoaded(name); }
};

TEST_F(PopUpFlow, NewIntrusionReachesAUserWhoDoesNotSeeTheWindow) {
  OpenHidden();
  Append(Alert(20, "/opt/new"));
  Tick();
  ASSERT_TRUE(IsOpen("frmPopUpMsg"));
  EXPECT_EQ(PopUp().Key, "K8");
  EXPECT_EQ(world_.host.shown.back(),
            (widgets::ScriptedFormHost::Shown{"frmPopUpMsg", "frmNewUI", true, false, false}));
  EXPECT_FALSE(Home().visible);
}

TEST_F(PopUpFlow, DetailsBringTheWindowBackOnTheReportedAlert) {
  OpenHidden();
  Append(Alert(20, "/opt/new") + Alert(30, "/opt/newer"));
  Tick();
  EXPECT_EQ(PopUp().Key, "K11") << "the newest alert takes the window";
  Home().ViewItems_Click(home::kHelpView);
  Home().state = widgets::WindowState::kMinimised;
  PopUp().lblDetails.clicked.Raise();
  EXPECT_TRUE(Home().visible);
  EXPECT_EQ(Home().state.Get(), widgets::WindowState::kNormal);
  EXPECT_EQ(Home().CurrentView, home::kAlertsView);
  EXPECT_EQ(Home().alerts.sDesc.subject(), "11 " + Tag(31));
  EXPECT_FALSE(IsOpen("frmPopUpMsg"));
}

TEST_F(PopUpFlow, PopUpChangesNothingOfWhatAClickDecidesAbout) {
  OpenHidden();
  Append(Alert(20, "/opt/new"));
  Tick();
  EXPECT_EQ(Home().alerts.sDesc.subject(), "5 " + Tag(11));
  PopUp().lblClose.clicked.Raise();
  Home().mPopRestore.clicked.Raise();
  ClickLink("about:do");
  EXPECT_THAT(Taken(), ElementsAre("/opt/tool"));
}

TEST_F(PopUpFlow, DetailsOfAnAlertThatIsGoneAreLoggedAndTheWindowCloses) {
  OpenHidden();
  Append(Alert(20, "/opt/new"));
  Tick();
  Write(Line(40, "System", "s"));
  Tick();
  ASSERT_TRUE(IsOpen("frmPopUpMsg"));
  PopUp().lblDetails.clicked.Raise();
  EXPECT_FALSE(IsOpen("frmPopUpMsg"));
  EXPECT_TRUE(Home().visible);
  EXPECT_THAT(world_.quiet.Take(),
              Contains("'frmPopUpMsg:lblDetails_Click': Error Showing main form with Alert details."));
}

TEST_F(PopUpFlow, PopUpUnderAQuestionOnlyCloses) {
  OpenHidden();
  Boxes().Answer(platform::BoxAnswer::kNo);
  Boxes().while_open = [&](const auto&) {
    Append(Alert(20, "/opt/new"));
    Tick();
    ASSERT_TRUE(IsOpen("frmPopUpMsg"));
    PopUp().lblDetails.clicked.Raise();
    EXPECT_FALSE(IsOpen("frmPopUpMsg"));
    EXPECT_FALSE(Home().visible);
  };
  Home().mPopExit.clicked.Raise();
  EXPECT_EQ(Home().alerts.sDesc.subject(), "5 " + Tag(11));
}

// The user hides the window again while it waits for the explanation, and the next alert comes.
TEST_F(PopUpFlow, AlertThatComesWhileTheDetailsAreBroughtUpIsReportedAllTheSame) {
  OpenHidden();
  Append(Alert(20, "/opt/new"));
  Tick();
  bool hidden = false;
  page_->on_navigate = [&] {
    world_.platform.timers.Post([&] {
      if (!std::exchange(hidden, true)) {
        Home().Unload(widgets::UnloadCause::kCloseBox);
        Append(Alert(30, "/opt/newer"));
        Tick();
      }
      Home().alerts.sDesc.NavigationComplete.Raise();
    });
  };
  PopUp().lblDetails.clicked.Raise();
  EXPECT_TRUE(hidden);
  ASSERT_TRUE(IsOpen("frmPopUpMsg"));
  EXPECT_EQ(PopUp().Key, "K11");
}

TEST_F(PopUpFlow, QuitWithAPopUpOpenKeepsWhatItsCheckBoxSays) {
  OpenHidden();
  Append(Alert(20, "/opt/new"));
  Tick();
  PopUp().chkNotify.checked = true;
  SayYes();
  EXPECT_EQ(world_.EndOf([&] { Home().mPopExit.clicked.Raise(); }), 0);
  EXPECT_FALSE(IsOpen("frmPopUpMsg"));
  EXPECT_THAT(File("zendrix.ini"), ::testing::HasSubstr("PopOrigHigh=0"));
  world_.quiet.Take();
}

TEST_F(PopUpFlow, DayWithoutAnIntrusionIsToldAtTheHourlyTestAndAgainADayLater) {
  Write(Line(0, "System", "s"));
  Start();
  Home().Unload(widgets::UnloadCause::kCloseBox);
  const auto set_last = [&](double hours) {
    const core::Date now = core::Now(world_.platform.clock, world_.platform.family);
    Home().alerts.LastIntrusionTime = now + 1.0 / 86400 - hours / 24;
    Home().HourTicks = 3600;
    Seconds(1);
  };
  set_last(24);
  ASSERT_TRUE(IsOpen("frmNotifyMsg"));
  Home().pop_ups.notice()->lblClose.clicked.Raise();
  set_last(30);
  EXPECT_FALSE(IsOpen("frmNotifyMsg"));
  set_last(48);
  EXPECT_TRUE(IsOpen("frmNotifyMsg"));
}

TEST_F(PopUpFlow, WithNoIntrusionAtAllTheHoursCountFromTheZeroDate) {
  Write(Line(0, "System", "s"));
  Start();
  Home().Unload(widgets::UnloadCause::kCloseBox);
  // At ten minutes to two; whole days from the zero date end at midnight.
  ASSERT_EQ(Home().alerts.LastIntrusionTime, 0);
  Home().HourTicks = 3600;
  Seconds(1);
  EXPECT_FALSE(IsOpen("frmNotifyMsg"));
  world_.platform.clock.SetUtc(kNow + 22 * 3600 + 660);
  Home().HourTicks = 3600;
  Seconds(1);
  EXPECT_TRUE(IsOpen("frmNotifyMsg"));
}

}  // namespace
}  // namespace zendrix::flow
