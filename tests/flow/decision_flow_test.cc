// A decision is about the alert that the user saw, whatever happens between the sight, the click and the act.
#include "flow_fixture.h"

namespace zendrix::flow {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class DecisionFlow : public FlowTest {
 protected:
  DecisionFlow() { HaveDescription(2, "Aggregation,N,<A href='do'><dotext></A> at <time>\r\n"); }

  // Rows 1 to 3 an alert of the same risk with a code, rows 4 to 6 the alert of the tool.
  void OpenOnTool() {
    Write(Alert(0, "/opt/first", "failed", "FIRST,1") + Alert(10, "/opt/tool", "failed", "TOOL,2"));
    Start();
    Home().ViewItems_Click(home::kAlertsView);
    ClickRow("K5");
  }
};

TEST_F(DecisionFlow, BlockInThePageActsOnTheAlertOnShow) {
  OpenOnTool();
  ClickLink("about:do");
  EXPECT_THAT(Taken(), ElementsAre("/opt/tool"));
  EXPECT_EQ(File("KorvessaActivations.kvl"), "FIRST,1\r\n");
}

// A new row looked up another alert while this one stayed on show: the new one's program went into
// quarantine.
TEST_F(DecisionFlow, AlertThatArrivesWhileAPageIsReadDoesNotTakeItsClick) {
  OpenOnTool();
  Append(Alert(20, "/opt/new"));
  Tick();
  ASSERT_THAT(Rows(), ElementsAre("K8 Intrusion", "K5 Intrusion", "K2 Intrusion"));
  EXPECT_EQ(Home().alerts.sDesc.subject(), "5 " + Tag(11));
  ClickLink("about:do");
  EXPECT_THAT(Taken(), ElementsAre("/opt/tool"));
}

// The list's menu asked about one alert and filed the code of the other.
TEST_F(DecisionFlow, AlertThatArrivesUnderTheQuestionChangesNothingOfTheDecision) {
  OpenOnTool();
  SayYes();
  Boxes().while_open = [&](const auto&) {
    Append(Alert(20, "/opt/new", "failed", "NEW,3"));
    Tick();
  };
  Home().alerts.mPopRAbnormal.clicked.Raise();
  EXPECT_EQ(File("KorvessaActivations.kvl"), "FIRST,1\r\n");
  EXPECT_THAT(Rows(), ElementsAre("K8 Intrusion", "K5 Intrusion Blocked", "K2 Intrusion"));
  EXPECT_EQ(console_->alerts().Decision(Tag(11)), Tag(11) + "A");
}

// The table that the question was asked about was freed under it.
TEST_F(DecisionFlow, FileReplacedUnderTheQuestionFilesAndMarksNoOtherAlert) {
  OpenOnTool();
  SayYes();
  Boxes().while_open = [&](const auto&) {
    Write(Line(40, "System", "s") + Alert(50, "/opt/a", "failed", "A,1"));
    Tick();
    ASSERT_THAT(Rows(), ElementsAre("K3 Intrusion"));
    Append(Line(60, "System", "s") + Alert(70, "/opt/b", "failed", "B,1"));
    Tick();
  };
  Home().alerts.mPopRAbnormal.clicked.Raise();
  EXPECT_FALSE(world_.platform.files.Has(Path("KorvessaActivations.kvl")));
  EXPECT_THAT(Rows(), ElementsAre("K7 Intrusion", "K3 Intrusion"));
  EXPECT_EQ(console_->alerts().Decision(Tag(11)), Tag(11) + "A") << "the user's own decision is kept";
}

TEST_F(DecisionFlow, FileReplacedUnderThePagesMessageFilesNothing) {
  OpenOnTool();
  world_.platform.family.ScriptMessage(std::string("moved\0", 6));
  Boxes().while_open = [&](const auto&) {
    Write(Line(40, "System", "s"));
    Tick();
  };
  ClickLink("about:do");
  EXPECT_THAT(Taken(), ElementsAre("/opt/tool"));
  EXPECT_FALSE(world_.platform.files.Has(Path("KorvessaActivations.kvl")));
}

TEST_F(DecisionFlow, ReplacedFileLeavesNoPageToClickIn) {
  OpenOnTool();
  Write(Line(40, "System", "s"));
  Tick();
  EXPECT_EQ(Home().alerts.sDesc.subject(), "");
  ClickLink("about:do");
  EXPECT_THAT(Taken(), IsEmpty());
}

TEST_F(DecisionFlow, RightClickOnAnotherRowDecidesAboutThatRow) {
  OpenOnTool();
  ClickRow("K2");
  SayYes();
  Home().alerts.mPopRAbnormal.clicked.Raise();
  EXPECT_THAT(Rows(), ElementsAre("K5 Intrusion", "K2 Intrusion Blocked"));
}

// The first page of two waits for the browser while the user clicks on another row: it comes last, and a
// command in it is its own.
TEST_F(DecisionFlow, ClickInThePageThatCameLastIsAboutItsOwnAlert) {
  OpenOnTool();
  bool clicked = false;
  page_->on_navigate = [&] {
    world_.platform.timers.Post([&] {
      if (!std::exchange(clicked, true)) ClickRow("K2");
      Home().alerts.sDesc.NavigationComplete.Raise();
    });
  };
  ClickRow("K5");
  EXPECT_TRUE(clicked);
  EXPECT_EQ(Home().alerts.sDesc.subject(), "5 " + Tag(11));
  ClickLink("about:do");
  EXPECT_THAT(Taken(), ElementsAre("/opt/tool"));
}

}  // namespace
}  // namespace zendrix::flow
