// The portal's windows and links, with the whole console behind them.
#include "control/portal.h"
#include "core/date_rules.h"
#include "core/moments.h"
#include "flow_fixture.h"

namespace zendrix::flow {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

class PortalFlow : public FlowTest {
 protected:
  PortalFlow() { Write(Line(0, "System", "s")); }

  void Save(const std::string& key, const std::string& value) {
    settings::RegIni(world_.state, world_.log).SaveSettingHashed("Misc", key, value);
  }
  std::vector<std::string> ShownNames() {
    std::vector<std::string> names;
    for (const auto& shown : world_.host.shown) names.push_back(shown.name);
    return names;
  }
  std::string DaysBack(int days) {
    const core::Date now = core::Now(world_.platform.clock, world_.platform.family);
    return core::FormatDate(std::floor(now) - days, "Short Date", world_.platform.locale.info);
  }
};

TEST_F(PortalFlow, TourComesBehindTheWindowAtTheFirstStart) {
  Save("TTour", "N");
  Start("");
  EXPECT_THAT(ShownNames(), ElementsAre("frmSplash", "frmNewUI", "frmTour"));
  EXPECT_TRUE(console_->portal()->Tour().visible);
}

TEST_F(PortalFlow, TourDoesNotComeWithoutASplash) {
  Save("TTour", "N");
  Start("-NS");
  EXPECT_THAT(ShownNames(), ElementsAre("frmNewUI"));
}

TEST_F(PortalFlow, TourDoesNotComeWhenItWasSwitchedOff) {
  Save("TTour", "Y");
  Start("");
  EXPECT_THAT(ShownNames(), Not(Contains("frmTour")));
}

TEST_F(PortalFlow, TourIsOfTheHomeEditionOnly) {
  Save("TTour", "N");
  world_.state.ProductEdition = "Administrator";
  Start("");
  EXPECT_THAT(ShownNames(), Not(Contains("frmTour")));
  EXPECT_EQ(console_->portal(), nullptr);
}

TEST_F(PortalFlow, TickInTheTourKeepsItFromTheNextStart) {
  Save("TTour", "N");
  Start("");
  home::frmTour& tour = console_->portal()->Tour();
  tour.chkNO.checked = true;
  tour.chkNO.clicked.Raise();
  page_.reset();
  console_.reset();
  world_.host.shown.clear();
  Start("");
  EXPECT_THAT(ShownNames(), Not(Contains("frmTour")));
}

TEST_F(PortalFlow, GettingStartedOpensTheTourAtAnyTime) {
  Start();
  Home().links.hGetStr.clicked.Raise();
  EXPECT_THAT(ShownNames(), ElementsAre("frmNewUI", "frmTour"));
  console_->portal()->Tour().Unload(widgets::UnloadCause::kCloseBox);
  Home().links.hGetStr.clicked.Raise();
  EXPECT_TRUE(console_->portal()->Tour().visible);
}

TEST_F(PortalFlow, LinksOpenTheUsersBrowser) {
  Start();
  Home().links.Feedbacklbl.clicked.Raise();
  Home().links.Supportlbl.clicked.Raise();
  Home().links.NewVerlbl.clicked.Raise();
  EXPECT_THAT(world_.platform.shell.opened,
              ElementsAre(HasSubstr("?PostType=UserFeedback&"), HasSubstr("?PostType=UserSupport&"),
                          HasSubstr("?PostType=UserCheckNewVersion&")));
}

TEST_F(PortalFlow, SurveyComesOnTheThirdDayAndNeverAgain) {
  Save("IniDate", DaysBack(2));
  Start();
  Seconds(3601);
  EXPECT_THAT(ShownNames(), Not(Contains("frmSurvey"))) << "two days";
  world_.state.settings.IniDate = DaysBack(3);
  Seconds(3601);
  EXPECT_THAT(world_.host.shown, Contains(widgets::ScriptedFormHost::Shown{"frmSurvey", "frmNewUI"}));
  EXPECT_EQ(world_.state.settings.TSurv, "Y");
  EXPECT_THAT(File("zendrix.ini"), HasSubstr("TSurv=Y"));
  console_->portal()->survey()->Unload(widgets::UnloadCause::kCloseBox);
  world_.host.shown.clear();
  Seconds(100000);
  EXPECT_THAT(ShownNames(), Not(Contains("frmSurvey")));
}

TEST_F(PortalFlow, SurveyThatCannotBeHadDoesNotComeAgainEither) {
  Save("IniDate", DaysBack(5));
  Start();
  world_.platform.family.library_missing = true;
  Seconds(3601);
  EXPECT_THAT(world_.quiet.Take(), ElementsAre("'frmNewUI : TakeSurvey': 53: File not found"));
  EXPECT_EQ(world_.state.settings.TSurv, "Y");
}

// The tour was open when the user quit.
TEST_F(PortalFlow, TourAndSurveyEndWithTheConsole) {
  Save("TTour", "N");
  Start("");
  world_.state.settings.IniDate = DaysBack(5);
  Home().CheckSurvey();
  SayYes();
  EXPECT_EQ(world_.EndOf([&] { Home().mPopExit.clicked.Raise(); }), 0);
  EXPECT_FALSE(world_.state.forms.IsFormLoaded("frmTour"));
  EXPECT_FALSE(world_.state.forms.IsFormLoaded("frmSurvey"));
  world_.quiet.Take();
}

}  // namespace
}  // namespace zendrix::flow
