#include "alerts/console_alerts.h"

#include "support/alert_fixture.h"

namespace zendrix::test {
namespace {

using alerts::Answer;
using alerts::ListedAlert;
using alerts::Purpose;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;

class ConsoleAlertsTest : public AlertFixture {
 protected:
  // Row 4 is the alert of two events; the Agent's reaction is told behind it. Row 6 is another alert.
  void AnAlertOfTwoEvents(const std::string& reaction) {
    Event(0, "System", "start");
    Event(1, "Running Processes", "tool");
    Event(2, "Windows Folder", "new.dll");
    Alert(3, "Running Processes=tool;Windows Folder=new.dll");
    Community(4, reaction);
    Alert(3600, "nothing known;");
    Load();
    state_.Desc[2] = {"Aggregation,N,At <time>:<Corrected><NotCorrected>", "Windows Folder,1,<description>"};
  }
  std::vector<std::string> Checked() {
    std::vector<std::string> entries;
    for (const auto& entry : alerts_.ChkAlrColl().entries()) entries.push_back(entry.key + "=" + entry.value);
    return entries;
  }
};

TEST_F(ConsoleAlertsTest, AlertHasDetailsWhenOneOfItsTablesHasARow) {
  AnAlertOfTwoEvents("Windows Folder=success");
  EXPECT_TRUE(alerts_.HasDetails("4"));
  state_.Desc[2] = {"Aggregation,N,x", "Running Processes,1,x"};
  EXPECT_TRUE(alerts_.HasDetails("4")) << "nothing was done about the process: it could not be blocked";
  state_.Desc[2] = {"Aggregation,N,x", "Aggregation,1,x", "System,1,x"};
  EXPECT_FALSE(alerts_.HasDetails("4")) << "no sentence for either, and the alert's own is no row";
}

TEST_F(ConsoleAlertsTest, AlertWithoutEventsHasNoDetails) {
  AnAlertOfTwoEvents("Windows Folder=success");
  EXPECT_FALSE(alerts_.HasDetails("6"));
  EXPECT_FALSE(alerts_.HasDetails("77"));
  state_.Desc[2] = {};
  EXPECT_FALSE(alerts_.HasDetails("6"));
}

TEST_F(ConsoleAlertsTest, OneEventIsEnoughForDetails) {
  Event(0, "Windows Folder", "new.dll");
  Alert(1, "Windows Folder=new.dll;");
  Load();
  state_.Desc[2] = {"Windows Folder,1,x"};
  EXPECT_TRUE(alerts_.HasDetails("2"));
}

TEST_F(ConsoleAlertsTest, WithoutADictionaryEveryAlertWithEventsHasDetails) {
  AnAlertOfTwoEvents("");
  state_.Desc[2] = {};
  EXPECT_TRUE(alerts_.HasDetails("4"));
}

TEST_F(ConsoleAlertsTest, DetailsAreTheShortPageAsItIsShown) {
  Event(0, "Windows Folder", "<b>new.dll");
  Alert(1, "Windows Folder=<b>new.dll;");
  Load();
  state_.Desc[2] = {"Aggregation,N,At <time>:<NotCorrected>", "Windows Folder,1,[<description>]"};
  const std::string page = alerts_.RenderDetails("2");
  EXPECT_EQ(page, Page(true, Purpose::kShown));
  EXPECT_THAT(page, HasSubstr("&lt;b&gt;new.dll"));
  EXPECT_THAT(page, Not(HasSubstr("<b>")));
  EXPECT_THAT(page, Not(HasSubstr("earliest date")));
}

TEST_F(ConsoleAlertsTest, ForgottenEventsAreOneBlankEntry) {
  AnAlertOfTwoEvents("");
  EXPECT_THAT(LookUp(4), SizeIs(3));
  alerts_.ForgetNotableInfo();
  ASSERT_THAT(alerts_.context().NotableInfo, SizeIs(1));
  EXPECT_EQ(Found(0).Monitor, "");
}

TEST_F(ConsoleAlertsTest, ExplanationIsOfItsOwnAlertWhateverIsLookedUpLater) {
  AnAlertOfTwoEvents("");
  state_.Desc[5] = {"Running Processes,P &lt;description&gt; at &lt;time of alert&gt;",
                    "Windows Folder,F &lt;description&gt;", "Aggregation,all"};
  const auto explanation = alerts_.Explain(Listed(4));
  EXPECT_EQ(explanation.events, 2U);
  LookUp(6);
  Page();
  EXPECT_EQ(explanation.page(0), "all");
  EXPECT_EQ(explanation.page(1), "P tool at 01:45:03 AM");
  EXPECT_EQ(explanation.page(2), "F new.dll");
  EXPECT_EQ(explanation.page(3), "");
}

// The time of an alert rendered before stood in the explanation of one whose own page cannot be built.
TEST_F(ConsoleAlertsTest, ExplanationDoesNotNameTheTimeOfAnAlertRenderedBefore) {
  AnAlertOfTwoEvents("");
  state_.Desc[5] = {"Running Processes,at [&lt;time of alert&gt;]"};
  LookUp(6);
  Page();
  ASSERT_EQ(alerts_.context().AlertTime, "02:45:00 AM");
  state_.Desc[2] = {"System,1,x"};
  EXPECT_EQ(alerts_.Explain(Listed(4)).page(1), "at []");
}

TEST_F(ConsoleAlertsTest, AlertWhoseRowIsAnothersByNowIsExplainedByNothing) {
  AnAlertOfTwoEvents("");
  EXPECT_EQ(alerts_.Explain({"4", "1795220000", ""}).events, 0U);
  EXPECT_EQ(alerts_.Explain({"77", "1795220000", ""}).events, 0U);
}

TEST_F(ConsoleAlertsTest, ConclusionOfTheWizardIsTheMarkAndNothingElse) {
  AnAlertOfTwoEvents("Running Processes=failed");
  alerts_.Conclude(Answer::kAllow, {"4", "100", ""});
  alerts_.Conclude(Answer::kBlock, {"6", "200", ""});
  EXPECT_THAT(Checked(), ElementsAre("100=100", "200=200A"));
  EXPECT_THAT(world_.platform.family.quarantine_calls, IsEmpty());
  EXPECT_THAT(world_.platform.message_boxes.Texts(), IsEmpty());
}

TEST_F(ConsoleAlertsTest, AllowedAlertThatIsAllowedAgainKeepsItsPlace) {
  alerts_.Conclude(Answer::kAllow, {"4", "100", ""});
  alerts_.Conclude(Answer::kAllow, {"6", "200", ""});
  alerts_.Conclude(Answer::kAllow, {"4", "100", ""});
  EXPECT_THAT(Checked(), ElementsAre("100=100", "200=200"));
}

TEST_F(ConsoleAlertsTest, ConclusionReplacesTheOtherDecision) {
  alerts_.Conclude(Answer::kBlock, {"4", "100", ""});
  EXPECT_EQ(alerts_.Decision("100"), "100A");
  alerts_.Conclude(Answer::kAllow, {"4", "100", ""});
  EXPECT_EQ(alerts_.Decision("100"), "100");
  alerts_.Conclude(Answer::kBlock, {"4", "100", ""});
  EXPECT_EQ(alerts_.Decision("100"), "100A");
}

}  // namespace
}  // namespace zendrix::test
