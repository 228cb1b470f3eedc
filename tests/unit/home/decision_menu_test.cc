#include "home_fixture.h"

namespace zendrix::home {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class DecisionMenuTest : public HomeFixture {
 protected:
  // Two alerts with nothing to act on; the newer one is selected.
  void OpenTwo() {
    Open(Alert(1, "0.5") + Alert(2, "0.99"));
    alerts_.rendered.clear();
  }
  std::string TextOfTop() const { return form_->alerts.lvAlerts.at(0).text; }
};

TEST_F(DecisionMenuTest, RightButtonOpensTheMenuOnASelectedItem) {
  OpenTwo();
  int opened = 0;
  form_->alerts.mPopReview.popup.ConnectForever([&] { ++opened; });
  form_->alerts.lvAlerts.right_button_up.Raise();
  EXPECT_EQ(opened, 1);
}

TEST_F(DecisionMenuTest, RightButtonOpensNoMenuOnAnEmptyList) {
  Open(Line(0, "System", "0") + Line(1, "System", "0"));
  int opened = 0;
  form_->alerts.mPopReview.popup.ConnectForever([&] { ++opened; });
  form_->alerts.lvAlerts.right_button_up.Raise();
  EXPECT_EQ(opened, 0);
}

TEST_F(DecisionMenuTest, BlockMarksTheItemAndRendersItAnew) {
  OpenTwo();
  form_->alerts.mPopRAbnormal.clicked.Raise();
  EXPECT_THAT(alerts_.asked, ElementsAre("block 2 " + TextOfTop() + " " + Tag(2)));
  EXPECT_THAT(Rows(), ElementsAre("K2 Intrusion:18 Blocked:19", "K1 Normal:23"));
  EXPECT_THAT(alerts_.rendered, ElementsAre("2"));
}

TEST_F(DecisionMenuTest, AllowMarksTheItem) {
  OpenTwo();
  form_->alerts.mPopRNormal.clicked.Raise();
  EXPECT_THAT(alerts_.asked, ElementsAre("allow 2 " + TextOfTop() + " " + Tag(2)));
  EXPECT_THAT(Rows(), ElementsAre("K2 Intrusion:18 Allowed:21", "K1 Normal:23"));
}

TEST_F(DecisionMenuTest, MarkTakesTheThirdColumnOfAnItemWithDetails) {
  alerts_.details = {"2"};
  OpenTwo();
  EXPECT_THAT(Rows(), ElementsAre("K2 Intrusion:18 -:0 -:30", "K1 Normal:23"));
  form_->alerts.mPopRAbnormal.clicked.Raise();
  EXPECT_THAT(Rows(), ElementsAre("K2 Intrusion:18 Blocked:19 -:30", "K1 Normal:23"));
}

TEST_F(DecisionMenuTest, OneMarkReplacesTheOther) {
  OpenTwo();
  form_->alerts.mPopRAbnormal.clicked.Raise();
  form_->alerts.mPopRNormal.clicked.Raise();
  EXPECT_THAT(Rows(), ElementsAre("K2 Intrusion:18 Allowed:21", "K1 Normal:23"));
}

TEST_F(DecisionMenuTest, AnsweringNoOnlyRendersTheItemAnew) {
  OpenTwo();
  alerts_.says_yes = false;
  form_->alerts.mPopRAbnormal.clicked.Raise();
  EXPECT_THAT(Rows(), ElementsAre("K2 Intrusion:18", "K1 Normal:23"));
  EXPECT_THAT(alerts_.rendered, ElementsAre("2"));
}

TEST_F(DecisionMenuTest, ListThatIsClearedUnderTheQuestionIsLeftAlone) {
  OpenTwo();
  alerts_.on_question = [this] { form_->alerts.ClearAlertList(); };
  form_->alerts.mPopRAbnormal.clicked.Raise();
  EXPECT_THAT(Rows(), IsEmpty());
}

TEST_F(DecisionMenuTest, NewAlertUnderTheQuestionDoesNotTakeTheMark) {
  OpenTwo();
  alerts_.on_question = [this] {
    Append(Alert(3, "0.99"));
    Poll();
  };
  form_->alerts.mPopRAbnormal.clicked.Raise();
  EXPECT_THAT(Rows(), ElementsAre("K3 Intrusion:18", "K2 Intrusion:18 Blocked:19", "K1 Normal:23"));
}

}  // namespace
}  // namespace zendrix::home
