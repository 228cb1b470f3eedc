#include "home/portal_links.h"

#include "control/portal.h"
#include "support/console_world.h"

namespace zendrix::home {
namespace {

using control::PortalRequest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class PortalLinksTest : public ::testing::Test {
 protected:
  std::string Url(PortalRequest request) { return control::PortalUrl(world_.state, screen_, request); }
  std::vector<std::string>& Opened() { return world_.platform.shell.opened; }

  zendrix::testing::ConsoleWorld world_;
  widgets::Screen screen_;
  int tours_ = 0;
  PortalLinks links_{{world_.state, world_.log, screen_, [this] { ++tours_; }}};
};

TEST_F(PortalLinksTest, SignAndWordLeadToTheSameRequest) {
  for (widgets::Label* label : {&links_.Feedbacklbl, &links_.Feedback, &links_.NewVerlbl, &links_.NewVer,
                                &links_.Supportlbl, &links_.Support})
    label->clicked.Raise();
  const std::string feedback = Url(PortalRequest::kFeedback);
  const std::string version = Url(PortalRequest::kNewVersion);
  const std::string support = Url(PortalRequest::kSupport);
  EXPECT_THAT(Opened(), ElementsAre(feedback, feedback, version, version, support, support));
  EXPECT_EQ(tours_, 0);
}

TEST_F(PortalLinksTest, GettingStartedOpensTheTourAndNoBrowser) {
  EXPECT_EQ(links_.hGetStr.caption.Get(), "Getting Started");
  links_.hGetStr.clicked.Raise();
  EXPECT_EQ(tours_, 1);
  EXPECT_THAT(Opened(), IsEmpty());
}

TEST_F(PortalLinksTest, WithoutATourItsLinkDoesNothing) {
  PortalLinks links({world_.state, world_.log, screen_, {}});
  links.hGetStr.clicked.Raise();
}

// Feedback is logged under the name of Support.
TEST_F(PortalLinksTest, FailuresAreLoggedUnderTheirNamesAndNoBrowserOpens) {
  world_.platform.family.library_missing = true;
  links_.Feedback_Click();
  links_.NewVer_Click();
  links_.Support_Click();
  EXPECT_THAT(world_.quiet.Take(), ElementsAre("'frmNewUI : Support_Click': 53: File not found",
                                               "'frmNewUI : NewVer_Click': 53: File not found",
                                               "'frmNewUI : Support_Click': 53: File not found"));
  EXPECT_THAT(Opened(), IsEmpty());
}

TEST_F(PortalLinksTest, LabelButtonHasABorderWhileItIsHeldDown) {
  links_.hGetStr.fore_colour = 1;
  links_.hGetStr.back_colour = 2;
  links_.hGetStr.MouseDown();
  EXPECT_TRUE(links_.hGetStr.bordered);
  links_.hGetStr.MouseUp();
  EXPECT_FALSE(links_.hGetStr.bordered);
  EXPECT_EQ(links_.hGetStr.fore_colour.Get(), 0x80000012U);
  EXPECT_EQ(links_.hGetStr.back_colour.Get(), 0x8000000FU);
}

}  // namespace
}  // namespace zendrix::home
