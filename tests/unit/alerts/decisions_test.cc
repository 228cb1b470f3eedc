#include "alerts/decisions.h"

#include "alerts/activations.h"
#include "core/text_rules.h"
#include "support/alert_fixture.h"

namespace zendrix::test {
namespace {

using alerts::Answer;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using QuarantineCall = platform::MemoryFamily::QuarantineCall;

class DecisionsTest : public AlertFixture {
 protected:
  // Two alerts of the same risk, the first of which carries the code; the second, row 5, is decided about.
  void TwoAlerts(const std::string& code = "AG,5,1") {
    Event(0, "System", "start");
    Alert(1, "first", "0.99", code);
    Event(2, "Running Processes", "a");
    Event(3, "Windows Folder", "b");
    Alert(4, "Running Processes=a;Windows Folder=b", "0.99", "AG,9,9");
    Community(5, "Running Processes=failed;Windows Folder=success");
    Load();
  }
  std::string Activations() {
    const auto text = world_.platform.files.ReadAll(world_.InFolder(alerts::kActivationsFile));
    return text ? text.value() : "(none)";
  }
  void HaveActivations(const std::string& text) {
    world_.platform.files.Put(world_.InFolder(alerts::kActivationsFile), text);
  }
  std::vector<std::string> Checked() {
    std::vector<std::string> entries;
    for (const auto& entry : alerts_.ChkAlrColl().entries()) entries.push_back(entry.key + "=" + entry.value);
    return entries;
  }
  std::vector<std::string> Boxes() { return world_.platform.message_boxes.Texts(); }
  void HaveDecisions(const std::string& text) {
    world_.platform.files.Put(world_.InFolder(alerts::kCheckedAlertsFile), text);
    alerts_.LoadChkAlrColl();
  }
};

TEST_F(DecisionsTest, BlockFilesTheCodeOfTheEarlierAlertLessItsLastField) {
  TwoAlerts();
  alerts_.DecideFromPage(Answer::kBlock, Listed(5));
  EXPECT_EQ(Activations(), "AG,5,1\r\n");
}

TEST_F(DecisionsTest, CodeWithoutACommaIsUsedWhole) {
  TwoAlerts("AGGR");
  alerts_.DecideFromPage(Answer::kAllow, Listed(5));
  EXPECT_EQ(Activations(), "AGGR,0\r\n");
}

TEST_F(DecisionsTest, BlockingTwiceLeavesOneLine) {
  TwoAlerts();
  alerts_.DecideFromPage(Answer::kBlock, Listed(5));
  alerts_.DecideFromPage(Answer::kBlock, Listed(5));
  EXPECT_EQ(Activations(), "AG,5,1\r\n");
}

TEST_F(DecisionsTest, DecisionIsReplacedAtItsOldPlace) {
  HaveActivations("X,0\r\nAG,5,0\r\nY,1\r\n");
  TwoAlerts();
  alerts_.DecideFromPage(Answer::kBlock, Listed(5));
  EXPECT_EQ(Activations(), "X,0\r\nAG,5,1\r\nY,1\r\n");
}

TEST_F(DecisionsTest, CodeThatBeginsALongerCodeReplacesItsLineToo) {
  HaveActivations("AG,55,0\r\n");
  TwoAlerts();
  alerts_.DecideFromPage(Answer::kBlock, Listed(5));
  EXPECT_EQ(Activations(), "AG,5,1\r\n");
}

// An empty code stands in every line: one such decision once replaced all the others.
TEST_F(DecisionsTest, EmptyCodeIsNotWrittenAndTheLogSaysSo) {
  for (const std::string code : {"", ",5"}) {
    HaveActivations("X,0\r\nY,1\r\n");
    lines_.clear();
    TwoAlerts(code);
    alerts_.DecideFromPage(Answer::kBlock, Listed(5));
    EXPECT_EQ(Activations(), "X,0\r\nY,1\r\n");
    EXPECT_THAT(
        world_.quiet.Take(),
        ElementsAre("'EventUtils:UpdateActivations': The alert has no code. Its decision is not written."));
  }
}

// A list that is read on under the question leaves the shared cursor behind the alert.
TEST_F(DecisionsTest, CursorMovedUnderTheBoxDoesNotHideTheAlert) {
  TwoAlerts();
  world_.platform.message_boxes.Answer(platform::BoxAnswer::kYes);
  world_.platform.message_boxes.while_open = [this](const auto&) { reader_.EventTable->cursor()->GoTo(5); };
  EXPECT_TRUE(alerts_.DecideFromMenu(Answer::kBlock, Listed(5)));
  EXPECT_EQ(Activations(), "AG,5,1\r\n");
}

TEST_F(DecisionsTest, EarlierEventOfTheSameRiskIsNoAlertWithACode) {
  Event(0, "System", "start");
  Alert(1, "first");
  Event(2, "System", "x", "0.99", "", "EVENT,1");
  Alert(3, "second", "0.99", "AG,9,9");
  Load();
  alerts_.DecideFromPage(Answer::kBlock, Listed(4));
  EXPECT_EQ(Activations(), "AG,5,1\r\n");
}

TEST_F(DecisionsTest, FirstAlertWithItsRiskIsDroppedSilently) {
  Event(0, "System", "start");
  Alert(1, "first");
  Load();
  alerts_.DecideFromPage(Answer::kBlock, Listed(2));
  EXPECT_EQ(Activations(), "(none)");
}

TEST_F(DecisionsTest, FailedWriteLeavesTheOldFileAndIsLogged) {
  HaveActivations("X,0\r\n");
  TwoAlerts();
  world_.platform.files.FailNext(platform::FileOp::kWriteAll, world_.InFolder(alerts::kActivationsFile),
                                 platform::ErrorKind::kPermissionDenied, 1);
  alerts_.DecideFromPage(Answer::kBlock, Listed(5));
  EXPECT_EQ(Activations(), "X,0\r\n");
  const auto lines = world_.quiet.Take();
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_THAT(lines[0], ::testing::StartsWith("'EventUtils:UpdateActivations': 70: "));
}

TEST_F(DecisionsTest, PageBlockActsOnFailedItemsAndAllowOnBlockedOnes) {
  TwoAlerts();
  alerts_.DecideFromPage(Answer::kBlock, Listed(5));
  alerts_.DecideFromPage(Answer::kAllow, Listed(5));
  EXPECT_THAT(world_.platform.family.quarantine_calls,
              ElementsAre(QuarantineCall{true, "a"}, QuarantineCall{false, "b"}));
}

TEST_F(DecisionsTest, TheLibraryIsToldMonitorMomentAndAlertOfEachItem) {
  TwoAlerts();
  alerts_.DecideFromPage(Answer::kBlock, Listed(5));
  ASSERT_EQ(world_.platform.family.quarantine_events.size(), 1U);
  const auto& event = world_.platform.family.quarantine_events[0];
  EXPECT_EQ(event.monitor, "Running Processes");
  EXPECT_EQ(event.event_utc, "1795225502");
  EXPECT_EQ(event.alert, "1795225504");
  EXPECT_TRUE(event.shown) << "without a dictionary the page tells every description";
}

// A click acted on entries for which the page had no row.
TEST_F(DecisionsTest, TheLibraryIsToldWhenThePageHasNoRowForAnItem) {
  TwoAlerts();
  world_.state.Desc[2] = {"Windows Folder,1,<description>"};
  alerts_.DecideFromPage(Answer::kBlock, Listed(5));
  alerts_.DecideFromPage(Answer::kAllow, Listed(5));
  ASSERT_EQ(world_.platform.family.quarantine_events.size(), 2U);
  EXPECT_FALSE(world_.platform.family.quarantine_events[0].shown);
  EXPECT_TRUE(world_.platform.family.quarantine_events[1].shown);
}

TEST_F(DecisionsTest, LibraryMessagesAreShownTogether) {
  TwoAlerts();
  world_.platform.family.ScriptMessage(std::string("moved\0rest", 10));
  alerts_.DecideFromPage(Answer::kBlock, Listed(5));
  EXPECT_THAT(Boxes(), ElementsAre("moved\r\n"));
}

TEST_F(DecisionsTest, MessageWithoutAnEndTellsNothing) {
  TwoAlerts();
  alerts_.DecideFromPage(Answer::kBlock, Listed(5));
  EXPECT_THAT(Boxes(), IsEmpty());
}

TEST_F(DecisionsTest, MissingLibraryIsToldAndLoggedAndTheDecisionIsFiledAllTheSame) {
  TwoAlerts();
  world_.platform.family.library_missing = true;
  alerts_.DecideFromPage(Answer::kBlock, Listed(5));
  ASSERT_EQ(Boxes().size(), 1U);
  const auto lines = world_.quiet.Take();
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_THAT(lines[0], ::testing::StartsWith("'frmNewUI:sDesc:beforeNavigate2': 53: "));
  EXPECT_EQ(Activations(), "AG,5,1\r\n");
}

TEST_F(DecisionsTest, AlertWithoutCommunityRowCallsNothingButIsFiled) {
  Event(0, "System", "start");
  Alert(1, "first");
  Event(2, "Running Processes", "a");
  Alert(3, "Running Processes=a;");
  Load();
  alerts_.DecideFromPage(Answer::kBlock, Listed(4));
  EXPECT_THAT(world_.platform.family.quarantine_calls, IsEmpty());
  EXPECT_THAT(Boxes(), IsEmpty());
  EXPECT_EQ(Activations(), "AG,5,1\r\n");
}

// Both failing items are told of: the loop goes on behind a message that has no end and a call that failed.
TEST_F(DecisionsTest, LoopGoesOnBehindAnItemThatFailed) {
  Event(0, "System", "start");
  Alert(1, "first");
  Event(2, "Running Processes", "a");
  Event(3, "Windows Folder", "b");
  Alert(4, "Running Processes=a;Windows Folder=b");
  Community(5, "Running Processes=failed;Windows Folder=failed");
  Load();
  alerts_.DecideFromPage(Answer::kBlock, Listed(5));
  EXPECT_THAT(world_.platform.family.quarantine_calls,
              ElementsAre(QuarantineCall{true, "a"}, QuarantineCall{true, "b"}));
  EXPECT_THAT(Boxes(), IsEmpty());
  world_.platform.family.library_missing = true;
  alerts_.DecideFromPage(Answer::kBlock, Listed(5));
  EXPECT_EQ(world_.quiet.Take().size(), 2U);
  ASSERT_EQ(Boxes().size(), 1U);
  EXPECT_THAT(core::Split(Boxes()[0], "\r\n"),
              ::testing::SizeIs(3));  // two sentences and the end of the last
}

// What the Agent did about the alert itself is none of its events.
TEST_F(DecisionsTest, AlertItselfIsNoItemToActOn) {
  Event(0, "System", "start");
  Alert(1, "first");
  Event(2, "Running Processes", "a");
  Event(3, "Aggregation", "Running Processes=a;", "0.99", "failed", "AG,9,9");
  Load();
  alerts_.DecideFromPage(Answer::kBlock, Listed(4));
  EXPECT_THAT(world_.platform.family.quarantine_calls, IsEmpty());
  EXPECT_EQ(Activations(), "AG,5,1\r\n");
}

// A new row looked up another alert while an older one was on show: the new alert's program went into
// quarantine.
TEST_F(DecisionsTest, PageCommandActsOnItsOwnAlertWhateverWasLookedUpLast) {
  TwoAlerts();
  alerts_.GetNotableInfo("2");
  alerts_.DecideFromPage(Answer::kBlock, Listed(5));
  EXPECT_THAT(world_.platform.family.quarantine_calls, ElementsAre(QuarantineCall{true, "a"}));
}

// The list's menu asked about one alert and filed the code of another.
TEST_F(DecisionsTest, MenuFilesTheCodeOfTheAlertThatItAskedAbout) {
  TwoAlerts();
  Event(6, "System", "x");
  Alert(7, "third", "0.5", "OTHER,1");
  Alert(8, "fourth", "0.5", "OTHER,2");
  Load();
  world_.platform.message_boxes.Answer(platform::BoxAnswer::kYes);
  world_.platform.message_boxes.while_open = [this](const auto&) { alerts_.GetNotableInfo("9"); };
  alerts_.DecideFromMenu(Answer::kBlock, Listed(5));
  EXPECT_EQ(Activations(), "AG,5,1\r\n");
}

// A file that was replaced under an open question left a pointer to the old table: a use after free.
TEST_F(DecisionsTest, FileReplacedUnderTheBoxFilesNothingForAnotherRowOfTheSameId) {
  TwoAlerts();
  world_.platform.message_boxes.Answer(platform::BoxAnswer::kYes);
  world_.platform.message_boxes.while_open = [this](const auto&) {
    lines_.clear();
    for (int second = 20; second < 24; ++second)
      Alert(second, "new", "0.99", "NEW," + std::to_string(second) + ",1");
    Alert(25, "new", "0.99", "NEW,25,1");
    Load();
  };
  const alerts::ListedAlert asked = Listed(5);
  EXPECT_TRUE(alerts_.DecideFromMenu(Answer::kBlock, asked));
  EXPECT_EQ(Activations(), "(none)");
  EXPECT_THAT(Checked(), ElementsAre("1795225504=1795225504A"));
}

TEST_F(DecisionsTest, FileReplacedUnderThePagesBoxFilesNothingForAnotherRowOfTheSameId) {
  TwoAlerts();
  world_.platform.family.ScriptMessage(std::string("moved\0", 6));
  world_.platform.message_boxes.while_open = [this](const auto&) {
    lines_.clear();
    for (int second = 20; second < 25; ++second)
      Alert(second, "new", "0.99", "NEW," + std::to_string(second) + ",1");
    Load();
  };
  alerts_.DecideFromPage(Answer::kBlock, Listed(5));
  EXPECT_EQ(Boxes().size(), 1U);
  EXPECT_EQ(Activations(), "(none)");
}

TEST_F(DecisionsTest, AlertThatIsNotInTheTableAnyMoreIsLeftAlone) {
  TwoAlerts();
  alerts_.DecideFromPage(Answer::kBlock, {"5", "1795225999", ""});
  EXPECT_THAT(world_.platform.family.quarantine_calls, IsEmpty());
  EXPECT_EQ(Activations(), "(none)");
}

class OfferBackTest : public DecisionsTest {
 protected:
  void HaveTwoEntries() {
    TwoAlerts();
    // "a" is the event that the Agent could not stop; the other entry of this alert's second is of another
    // alert.
    world_.platform.family.quarantine_entries = {{"0001", "a", 1, "", 0, 0, "1795225504"},
                                                 {"0003", "/opt/evil", 1, "", 0, 0, "1795225504"},
                                                 {"0002", "/opt/other", 1, "", 0, 0, "1795225777"}};
  }
  const std::vector<std::string>& Restored() { return world_.platform.family.restore_calls; }
};

// A Block had put the file away; Allow said that it may run and left it in quarantine without a word.
TEST_F(OfferBackTest, AllowInThePageOffersBackWhatIsInQuarantineForTheAlert) {
  HaveTwoEntries();
  world_.platform.message_boxes.Answer(platform::BoxAnswer::kYes);
  alerts_.DecideFromPage(Answer::kAllow, Listed(5));
  EXPECT_THAT(Restored(), ElementsAre("0001"));
  EXPECT_THAT(Boxes(), ElementsAre("In quarantine because of this alert:\r\na\r\nPut back in place?"));
  EXPECT_EQ(world_.platform.message_boxes.shown[0].buttons, platform::BoxButtons::kYesNo);
}

TEST_F(OfferBackTest, AllowInTheMenuOffersItBackBehindTheDecision) {
  HaveTwoEntries();
  world_.platform.message_boxes.Answer(platform::BoxAnswer::kYes);
  world_.platform.message_boxes.Answer(platform::BoxAnswer::kYes);
  EXPECT_TRUE(alerts_.DecideFromMenu(Answer::kAllow, Listed(5)));
  EXPECT_THAT(Restored(), ElementsAre("0001"));
  EXPECT_EQ(Boxes().size(), 2U);
}

// The store holds a name in bytes of Windows-1252, the file system in UTF-8 or as it stands.
TEST_F(OfferBackTest, NameWithALetterBeyondAsciiIsOfferedBackInEitherSpelling) {
  Event(0, "System", "start");
  Alert(1, "first");
  Event(2, "Running Processes", "/opt/caf\xE9");
  Alert(3, "Running Processes=/opt/caf\xE9;");
  Load();
  world_.platform.family.quarantine_entries = {{"0001", "/opt/caf\xE9", 1, "", 0, 0, "1795225503"},
                                               {"0002", "/opt/caf\xC3\xA9", 1, "", 0, 0, "1795225503"},
                                               {"0003", "/opt/caf", 1, "", 0, 0, "1795225503"}};
  world_.platform.message_boxes.Answer(platform::BoxAnswer::kYes);
  alerts_.DecideFromPage(Answer::kAllow, Listed(4));
  EXPECT_THAT(Restored(), ElementsAre("0001", "0002"));
}

// A library that is gone in the middle: the decision stands, and nobody is asked about what cannot be listed.
TEST_F(OfferBackTest, AllowWithoutTheLibraryIsFiledAndOffersNothing) {
  HaveTwoEntries();
  world_.platform.family.library_missing = true;
  world_.platform.message_boxes.Answer(platform::BoxAnswer::kYes);
  EXPECT_TRUE(alerts_.DecideFromMenu(Answer::kAllow, Listed(5)));
  EXPECT_EQ(Boxes().size(), 1U) << "the question about the decision";
  EXPECT_EQ(Activations(), "AG,5,0\r\n");
}

TEST_F(OfferBackTest, ANoLeavesItInQuarantine) {
  HaveTwoEntries();
  world_.platform.message_boxes.Answer(platform::BoxAnswer::kNo);
  alerts_.DecideFromPage(Answer::kAllow, Listed(5));
  EXPECT_THAT(Restored(), IsEmpty());
  EXPECT_EQ(Activations(), "AG,5,0\r\n");
}

TEST_F(OfferBackTest, BlockOffersNothing) {
  HaveTwoEntries();
  alerts_.DecideFromPage(Answer::kBlock, Listed(5));
  EXPECT_THAT(Boxes(), IsEmpty());
}

TEST_F(OfferBackTest, AllowWithNothingInQuarantineAsksNothing) {
  TwoAlerts();
  alerts_.DecideFromPage(Answer::kAllow, Listed(5));
  EXPECT_THAT(Boxes(), IsEmpty());
}

TEST_F(OfferBackTest, WhatTheLibrarySaysOfTheWayBackIsTold) {
  HaveTwoEntries();
  world_.platform.message_boxes.Answer(platform::BoxAnswer::kYes);
  // The first message is taken by the item that the Agent had blocked.
  world_.platform.family.ScriptMessage(std::string("none\0", 5));
  world_.platform.family.ScriptMessage(std::string("It is back.\0", 12));
  alerts_.DecideFromPage(Answer::kAllow, Listed(5));
  ASSERT_EQ(Boxes().size(), 3U);
  EXPECT_EQ(Boxes()[2], "It is back.\r\n");
}

TEST_F(DecisionsTest, PageCommandsLeaveTheMarkAlone) {
  TwoAlerts();
  alerts_.DecideFromPage(Answer::kBlock, Listed(5));
  EXPECT_THAT(Checked(), IsEmpty());
}

TEST_F(DecisionsTest, MenuBlockAsksFilesAndMarks) {
  TwoAlerts();
  world_.platform.message_boxes.Answer(platform::BoxAnswer::kYes);
  EXPECT_TRUE(alerts_.DecideFromMenu(Answer::kBlock, {"5", "1795225504", "11/21/2026"}));
  EXPECT_THAT(Boxes(),
              ElementsAre("Item 11/21/2026\r\nwill be set as a blocked Alert. This event occurred in the \r\n"
                          "past and can only be blocked from re-occurrence in the future.\r\nAre you sure?"));
  EXPECT_EQ(world_.platform.message_boxes.shown[0].title, "");
  EXPECT_EQ(Activations(), "AG,5,1\r\n");
  EXPECT_THAT(Checked(), ElementsAre("1795225504=1795225504A"));
  EXPECT_THAT(world_.platform.family.quarantine_calls, IsEmpty());
}

TEST_F(DecisionsTest, MenuAllowReplacesTheEarlierDecision) {
  TwoAlerts();
  alerts_.ChkAlrColl().MarkBlocked("1795225504");
  world_.platform.message_boxes.Answer(platform::BoxAnswer::kYes);
  EXPECT_TRUE(alerts_.DecideFromMenu(Answer::kAllow, {"5", "1795225504", "x"}));
  EXPECT_THAT(Boxes(),
              ElementsAre("Item x\r\nwill be set as an Allowed Alert.  This event occurred \r\n"
                          "in the past and can only be allowed to occur in the future.\r\nAre you sure?"));
  EXPECT_EQ(Activations(), "AG,5,0\r\n");
  EXPECT_THAT(Checked(), ElementsAre("1795225504=1795225504"));
}

TEST_F(DecisionsTest, AnsweringNoLeavesFileAndCollectionAsTheyWere) {
  TwoAlerts();
  world_.platform.message_boxes.Answer(platform::BoxAnswer::kNo);
  EXPECT_FALSE(alerts_.DecideFromMenu(Answer::kBlock, {"5", "1795225504", "x"}));
  EXPECT_EQ(Activations(), "(none)");
  EXPECT_THAT(Checked(), IsEmpty());
}

TEST_F(DecisionsTest, UndoIsToldFromDoByBeingTestedFirst) {
  using alerts::PageCommand;
  EXPECT_EQ(alerts::PageCommandOf("about:undo"), PageCommand::kUndo);
  EXPECT_EQ(alerts::PageCommandOf("about:do"), PageCommand::kDo);
  EXPECT_EQ(alerts::PageCommandOf("about:blank/todo"), PageCommand::kDo);
  EXPECT_EQ(alerts::PageCommandOf("about:showhide"), PageCommand::kShowHide);
  EXPECT_EQ(alerts::PageCommandOf("about: <body>"), PageCommand::kNone);
  EXPECT_EQ(alerts::PageCommandOf("http://x/do"), PageCommand::kNone);
}

TEST_F(DecisionsTest, DecidedAlertsAreReadInOrder) {
  HaveDecisions(" 100 \r\n200A\r\nnonsense\r\n\r\n300\t\r\n");
  EXPECT_THAT(Checked(), ElementsAre("100=100", "200=200A", "300=300"));
  EXPECT_EQ(alerts_.Decision("200"), "200A");
  EXPECT_EQ(alerts_.Decision("201"), std::nullopt);
}

TEST_F(DecisionsTest, LineOfOnlyTheMarkIsSkipped) {
  HaveDecisions("A\r\n100\r\n");
  EXPECT_THAT(Checked(), ElementsAre("100=100"));
}

TEST_F(DecisionsTest, SecondLineForAKeyEndsTheLoadThere) {
  world_.quiet.Expect(
      "'EventUtils : LoadChkAlrColl': 457: This key is already associated with an element of this "
      "collection");
  HaveDecisions("100\r\n100A\r\n200\r\n");
  EXPECT_THAT(Checked(), ElementsAre("100=100"));
}

TEST_F(DecisionsTest, NoFileOrAnEmptyOneGivesNoDecisions) {
  alerts_.LoadChkAlrColl();
  EXPECT_THAT(Checked(), IsEmpty());
  HaveDecisions("");
  EXPECT_THAT(Checked(), IsEmpty());
}

TEST_F(DecisionsTest, LoadReplacesWhatWasThere) {
  alerts_.ChkAlrColl().MarkBlocked("1");
  HaveDecisions("2\r\n");
  EXPECT_THAT(Checked(), ElementsAre("2=2"));
}

}  // namespace
}  // namespace zendrix::test
