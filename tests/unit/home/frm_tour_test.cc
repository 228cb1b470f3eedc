#include "home/frm_tour.h"

#include "control/portal.h"
#include "settings/reg_ini.h"
#include "support/console_world.h"
#include "support/fake_portal.h"

namespace zendrix::home {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using widgets::PortalView;

class TourTest : public ::testing::Test {
 protected:
  TourTest() {
    world_.platform.family.host_id = "HOST1";
    reg_ini_.SaveSettingHashed("Misc", "TTour", "N");
    reg_ini_.ReadRegInfo();
  }
  frmTour& Open() {
    form_ = std::make_unique<frmTour>(TourNeeds{world_.state, world_.log, misc_, screen_});
    browser_ = std::make_unique<zendrix::testing::FakePortal>(form_->WBr);
    world_.state.host().Show(*form_);
    return *form_;
  }
  ~TourTest() override { browser_.reset(); }
  std::string Ini() { return world_.platform.files.Get(world_.InFolder("zendrix.ini")); }
  void Click(bool ticked) {
    form_->chkNO.checked = ticked;
    form_->chkNO.clicked.Raise();
  }

  zendrix::testing::ConsoleWorld world_;
  settings::RegIni reg_ini_{world_.state, world_.log};
  settings::MiscSettings misc_{world_.state, reg_ini_};
  widgets::Screen screen_;
  std::unique_ptr<frmTour> form_;
  std::unique_ptr<zendrix::testing::FakePortal> browser_;
};

TEST_F(TourTest, OpensOnTheTourOfThePortal) {
  Open();
  const std::string url = control::PortalUrl(world_.state, screen_, control::PortalRequest::kTour);
  EXPECT_THAT(url, HasSubstr("?PostType=UserGettingStarted&HostID=HOST1&Product=ZendrixHome&Ver="));
  EXPECT_THAT(browser_->events, ElementsAre("navigate " + url));
  EXPECT_FALSE(form_->chkNO.checked);
  EXPECT_FALSE(form_->page.lblNoPage.visible);
}

TEST_F(TourTest, CheckBoxIsTickedWhenTheTourIsNotToCome) {
  misc_.Set(&core::Settings::TTour, "Y");
  Open();
  EXPECT_TRUE(form_->chkNO.checked);
}

TEST_F(TourTest, EachClickOnTheCheckBoxIsKeptAtOnce) {
  Open();
  Click(true);
  EXPECT_EQ(world_.state.settings.TTour, "Y");
  EXPECT_THAT(Ini(), HasSubstr("TTour=Y"));
  Click(false);
  EXPECT_EQ(world_.state.settings.TTour, "N");
  EXPECT_THAT(Ini(), HasSubstr("TTour=N"));
}

TEST_F(TourTest, ButtonsAreOnOnlyWhileTheirDirectionIsPossible) {
  Open();
  const auto on = [this] { return std::pair(form_->bbutton.enabled.Get(), form_->fbutton.enabled.Get()); };
  EXPECT_EQ(on(), std::pair(false, false));
  form_->WBr.CommandStateChange.Raise(2, true);
  EXPECT_EQ(on(), std::pair(true, false));
  form_->WBr.CommandStateChange.Raise(1, true);
  EXPECT_EQ(on(), std::pair(true, true));
  form_->WBr.CommandStateChange.Raise(PortalView::kBack, false);
  EXPECT_EQ(on(), std::pair(false, true));
  form_->WBr.CommandStateChange.Raise(PortalView::kForward, false);
  EXPECT_EQ(on(), std::pair(false, false));
  form_->WBr.CommandStateChange.Raise(3, true);
  form_->WBr.CommandStateChange.Raise(-1, true);
  EXPECT_EQ(on(), std::pair(false, false)) << "no other command is one of the buttons'";
}

TEST_F(TourTest, ButtonsGoBackAndForward) {
  Open();
  browser_->events.clear();
  form_->bbutton.clicked.Raise();
  form_->fbutton.clicked.Raise();
  EXPECT_THAT(browser_->events, ElementsAre("back", "forward"));
}

TEST_F(TourTest, StaysWhereItIsWhenAskedToGoToAnotherHost) {
  Open();
  EXPECT_TRUE(form_->WBr.Cancels("http://evil.org/"));
  EXPECT_TRUE(form_->WBr.Cancels("http://portal.example.com.evil.org/"));
  EXPECT_FALSE(form_->WBr.Cancels("http://portal.example.com/tour/2"));
}

// The trigger ends before an address is there, and the procedure with it.
TEST_F(TourTest, WithoutTheLibraryNoRequestGoesOutAndTheReasonIsLogged) {
  world_.platform.family.library_missing = true;
  misc_.Set(&core::Settings::TTour, "Y");
  world_.quiet.Expect("'frmTour : Form_Load': 53: File not found");
  Open();
  EXPECT_THAT(browser_->events, IsEmpty());
  EXPECT_TRUE(form_->page.lblNoPage.visible);
  EXPECT_FALSE(form_->chkNO.checked);
  EXPECT_TRUE(form_->visible);
}

TEST_F(TourTest, CentralLineMovesTheTour) {
  world_.state.Desc[10] = {"Central,https://tour.test/x"};
  Open();
  EXPECT_THAT(browser_->events[0], HasSubstr("navigate https://tour.test/x?PostType=UserGettingStarted"));
  EXPECT_TRUE(form_->WBr.Cancels("http://portal.example.com/"));
}

TEST_F(TourTest, ClosingStopsThePane) {
  Open();
  browser_->events.clear();
  form_->Unload(widgets::UnloadCause::kCloseBox);
  EXPECT_THAT(browser_->events, ElementsAre("stop"));
}

}  // namespace
}  // namespace zendrix::home
