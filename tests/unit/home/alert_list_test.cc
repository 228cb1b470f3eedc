#include "core/moments.h"
#include "home_fixture.h"
#include "support/fake_page.h"

namespace zendrix::home {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class AlertListTest : public HomeFixture {};

TEST_F(AlertListTest, HeaderHasFourColumns) {
  Open(Alert(1, "0.5"));
  const auto& columns = form_->alerts.lvAlerts.columns.Get();
  ASSERT_EQ(columns.size(), 4u);
  EXPECT_EQ(columns[0], (widgets::ListColumn{"Time", 0.4, 0}));
  EXPECT_EQ(columns[1], (widgets::ListColumn{"Event Type", 1 / 3.3, 0}));
  EXPECT_EQ(columns[2], (widgets::ListColumn{"Status", 0, 700}));
  EXPECT_EQ(columns[3], (widgets::ListColumn{"Details", 0, 700}));
}

TEST_F(AlertListTest, NewestAlertOnTopWithThePictureOfItsLevel) {
  Open(Line(0, "System", "0") + Alert(1, "0.5") + Alert(2, "0.92") + Alert(3, "0.99"));
  EXPECT_THAT(Rows(), ElementsAre("K4 Intrusion:18", "K3 Suspicious:22", "K2 Normal:23"));
  const widgets::ListRow& row = form_->alerts.lvAlerts.at(0);
  EXPECT_EQ(row.tag, Tag(3));
  EXPECT_EQ(row.picture, 28);
  EXPECT_EQ(row.text, core::DisplayTime(kStart + 3, 0, world_.platform.family, world_.platform.locale.info));
}

// A fresh computer showed an empty list, which looked like a console that does not work.
TEST_F(AlertListTest, EmptyListSaysThatNothingWasFoundAndSinceWhen) {
  Open(Line(0, "System", "0") + Alert(1, "-0.5"));
  const std::string since = core::DisplayTime(kStart, 0, world_.platform.family, world_.platform.locale.info);
  EXPECT_EQ(form_->alerts.lvAlerts.empty_text.Get(), "Nothing suspicious was found since " + since + ".");
}

TEST_F(AlertListTest, EmptyListWithoutEventsSaysThatNothingIsRecorded) {
  Open("");
  EXPECT_EQ(form_->alerts.lvAlerts.empty_text.Get(), "Nothing has been recorded yet.");
  Append(Line(0, "System", "0"));
  Poll();
  EXPECT_THAT(form_->alerts.lvAlerts.empty_text.Get(), HasSubstr("Nothing suspicious was found since "));
}

TEST_F(AlertListTest, ListThatHidesItsAlertsDoesNotSayThatNothingWasFound) {
  state_.settings.ShRskLvl = 50;
  Open(Alert(1, "0.1") + Alert(2, "0.2"));
  constexpr char kHidden[] = "No alert is on show: those recorded are cleared, or below the level to show.";
  EXPECT_EQ(form_->alerts.lvAlerts.empty_text.Get(), kHidden);
  Append(Alert(3, "0.9"));
  Poll();
  form_->alerts.lvAlerts.empty_text = "";
  form_->alerts.sClearAll_Click();
  EXPECT_EQ(form_->alerts.lvAlerts.empty_text.Get(), kHidden);
}

TEST_F(AlertListTest, OnlyAggregationRowsWithoutANegativeChangeAreListed) {
  Open(Alert(1, "-0.5") + Line(2, "Community", "0.99") + Alert(3, "0"));
  EXPECT_THAT(Rows(), ElementsAre("K3 Normal:23"));
}

TEST_F(AlertListTest, RowBelowTheShownRiskIsLeftOut) {
  state_.settings.ShRskLvl = 50;
  Open(Alert(1, "0.49") + Alert(2, "0.495") + Alert(3, "0.6"));
  EXPECT_THAT(Rows(), ElementsAre("K3 Normal:23", "K2 Normal:23"));
}

TEST_F(AlertListTest, FullRiskReachesAHundred) {
  state_.settings.ShRskLvl = 100;
  Open(Alert(1, "0.98") + Alert(2, "0.99"));
  EXPECT_THAT(Rows(), ElementsAre("K2 Intrusion:18"));
}

TEST_F(AlertListTest, DecidedAlertsShowTheirStatus) {
  alerts_.decisions = {{Tag(1), Tag(1) + "A"}, {Tag(2), Tag(2)}};
  Open(Alert(1, "0.5") + Alert(2, "0.5") + Alert(3, "0.5"));
  EXPECT_THAT(Rows(), ElementsAre("K3 Normal:23", "K2 Normal:23 Allowed:21", "K1 Normal:23 Blocked:19"));
}

TEST_F(AlertListTest, BlockedAlertsAreListedOnlyWhileTheyAreShown) {
  alerts_.decisions = {{Tag(1), "1A"}, {Tag(2), "2"}};
  Open(Alert(1, "0.5") + Alert(2, "0.5"));
  form_->alerts.sckShowAll.checked = false;
  form_->alerts.sckShowAll.clicked.Raise();
  EXPECT_THAT(Rows(), ElementsAre("K2 Normal:23 Allowed:21"));
  form_->alerts.sShowAll.clicked.Raise();
  EXPECT_THAT(Rows(), ElementsAre("K2 Normal:23 Allowed:21", "K1 Normal:23 Blocked:19"));
}

TEST_F(AlertListTest, AlertThatTheAgentActedOnHasItsMarkInTheFourthColumn) {
  alerts_.details = {"1", "2"};
  alerts_.decisions = {{Tag(2), "x"}};
  Open(Alert(1, "0.5") + Alert(2, "0.5"));
  EXPECT_THAT(Rows(), ElementsAre("K2 Normal:23 Allowed:21 -:30", "K1 Normal:23 -:0 -:30"));
}

TEST_F(AlertListTest, RowsThatAreNotListedCostNoLookup) {
  state_.settings.ShRskLvl = 50;
  alerts_.decisions = {{Tag(2), "A"}};
  Open(Alert(1, "0.1") + Alert(2, "0.9") + Alert(3, "0.9"));
  alerts_.asked_details.clear();
  form_->alerts.sckShowAll.checked = false;
  form_->alerts.sckShowAll_Click();
  EXPECT_THAT(alerts_.asked_details, ElementsAre("3"));
}

TEST_F(AlertListTest, FirstLoadRaisesNoPopUpThoughItsWindowIsNotOnShowYet) {
  Open(Alert(1, "0.5") + Alert(2, "0.99"));
  EXPECT_EQ(PopUpKey(), "none");
}

TEST_F(AlertListTest, NewAlertIsAddedOnTopAndOffersAPopUp) {
  Open(Alert(1, "0.5"));
  form_->visible = false;
  Append(Alert(2, "0.99"));
  Poll();
  EXPECT_THAT(Rows(), ElementsAre("K2 Intrusion:18", "K1 Normal:23"));
  EXPECT_EQ(PopUpKey(), "K2");
}

TEST_F(AlertListTest, DecidedAlertOffersNoPopUp) {
  alerts_.decisions = {{Tag(1), "x"}};
  Open(Alert(1, "0.99"));
  form_->visible = false;
  form_->alerts.sShowAll.clicked.Raise();
  EXPECT_EQ(PopUpKey(), "none");
  alerts_.decisions.clear();
  form_->alerts.sShowAll.clicked.Raise();
  EXPECT_EQ(PopUpKey(), "K1");
}

TEST_F(AlertListTest, NewAlertIsAddedBehindABatchThatEndedInAnotherEvent) {
  Open(Alert(1, "0.5") + Line(2, "Community", "0"));
  Append(Alert(3, "0.5") + Line(4, "Community", "0"));
  Poll();
  Append(Alert(5, "0.5"));
  Poll();
  EXPECT_THAT(Rows(), ElementsAre("K5 Normal:23", "K3 Normal:23", "K1 Normal:23"));
}

TEST_F(AlertListTest, FirstAlertIsAddedToAListWithoutAny) {
  Open(Line(1, "System", "0"));
  Append(Alert(2, "0.5"));
  Poll();
  EXPECT_THAT(Rows(), ElementsAre("K2 Normal:23"));
  EXPECT_EQ(Selected(), "K2");
}

TEST_F(AlertListTest, UpdateDoesNotConsultDecisionsUntilTheNextFullLoad) {
  Open(Alert(1, "0.5"));
  alerts_.decisions = {{Tag(2), "A"}};
  Append(Alert(2, "0.5"));
  Poll();
  EXPECT_THAT(Rows(), ElementsAre("K2 Normal:23", "K1 Normal:23"));
  form_->alerts.sShowAll_Click();
  EXPECT_THAT(Rows(), ElementsAre("K2 Normal:23 Blocked:19", "K1 Normal:23"));
}

TEST_F(AlertListTest, BookmarkOutsideTheTableAddsNothingAndIsLogged) {
  Open(Alert(1, "0.5"));
  reader_.LastBookmark = 99;
  world_.quiet.Expect("'frmNewUI:UpdatelvAlerts': 3001: " + core::DescriptionOf(3001));
  form_->alerts.UpdatelvAlerts();
  EXPECT_EQ(form_->alerts.lvAlerts.size(), 1u);
  EXPECT_FALSE(form_->ListBusy);
}

TEST_F(AlertListTest, RemovedAndReplacedFileRebuildsTheList) {
  Open(Alert(1, "0.5") + Alert(2, "0.5") + Alert(3, "0.5"));
  Replace(Alert(9, "0.99"));
  Poll();
  EXPECT_THAT(Rows(), ElementsAre("K1 Intrusion:18"));
  EXPECT_FALSE(reader_.ReloadedFlag);
}

TEST_F(AlertListTest, SelectedRowThatIsListedNoMoreLeavesTheListWithoutOneAndSaysNothing) {
  Open(Alert(1, "0.99") + Alert(2, "0.1"));
  EXPECT_EQ(Selected(), "K2");
  state_.settings.ShRskLvl = 50;
  reader_.ReloadedFlag = true;
  form_->alerts.LoadlvAlerts();
  EXPECT_THAT(Rows(), ElementsAre("K1 Intrusion:18"));
  EXPECT_EQ(Selected(), "none");
  EXPECT_TRUE(form_->alerts.sMoreInfo.enabled);
  EXPECT_FALSE(form_->ListBusy);
}

TEST_F(AlertListTest, ReplacedFileWithoutAnAlertEmptiesTheList) {
  Open(Alert(1, "0.5") + Alert(2, "0.5"));
  Replace(Line(9, "System", "0"));
  Poll();
  EXPECT_THAT(Rows(), IsEmpty());
  EXPECT_EQ(Selected(), "none");
  EXPECT_FALSE(form_->alerts.sMoreInfo.enabled);
}

TEST_F(AlertListTest, EmptyTableClearsNothing) {
  Open(Alert(1, "0.5"));
  reader_.EventTable = store::EventTable::CreateEventTable(9, world_.platform.locale.info);
  form_->alerts.LoadlvAlerts();
  EXPECT_EQ(form_->alerts.lvAlerts.size(), 1u);
  EXPECT_TRUE(form_->alerts.sMoreInfo.enabled);
}

TEST_F(AlertListTest, AbsentTableClearsTheList) {
  Open(Alert(1, "0.5"));
  reader_.EventTable = nullptr;
  form_->alerts.LoadlvAlerts();
  EXPECT_EQ(form_->alerts.lvAlerts.size(), 0u);
  EXPECT_FALSE(form_->alerts.sMoreInfo.enabled);
}

TEST_F(AlertListTest, SelectionSurvivesAnUpdate) {
  Open(Alert(1, "0.5") + Alert(2, "0.5"));
  EXPECT_EQ(Selected(), "K2");
  form_->alerts.lvAlerts.Select(form_->alerts.lvAlerts.Find("K1"));
  Append(Alert(3, "0.5"));
  Poll();
  EXPECT_EQ(Selected(), "K1");
}

// A browser that was busy left the page blank, and clicking the same row again did nothing.
TEST_F(AlertListTest, PageThatStayedBlankIsShownByAnotherClickOnTheSameRow) {
  Open(Alert(1, "0.5") + Alert(2, "0.5"));
  testing::FakePage page(form_->alerts.sDesc);
  const auto on_navigate = std::exchange(page.on_navigate, nullptr);
  const auto row = *form_->alerts.lvAlerts.Find("K2");
  ASSERT_EQ(Selected(), "K2");
  form_->alerts.lvAlerts.Click(row);
  EXPECT_EQ(page.events.size(), 1u) << "only the blank page";
  page.on_navigate = on_navigate;
  page.events.clear();
  form_->alerts.lvAlerts.Click(row);
  EXPECT_THAT(page.events, ElementsAre(HasSubstr("navigate"), HasSubstr("<b>told</b>"), HasSubstr("script")));
  EXPECT_EQ(Selected(), "K2");
}

// For as long as a slow browser took, the window showed an empty list that said that nothing had been found.
TEST_F(AlertListTest, RowsAreOnShowWhileTheirPageIsAwaited) {
  Open(Line(1, "System", "0"));
  ASSERT_FALSE(form_->alerts.lvAlerts.empty_text.Get().empty());
  testing::FakePage page(form_->alerts.sDesc);
  int told = 0, told_in_time = -1;
  const auto rows = form_->alerts.lvAlerts.rows_added.Connect([&] { ++told; });
  page.on_navigate = [&, then = page.on_navigate] {
    told_in_time = told;
    then();
  };
  Append(Alert(2, "0.5"));
  Poll();
  EXPECT_THAT(Rows(), ElementsAre("K2 Normal:23"));
  EXPECT_EQ(told_in_time, 1);
}

TEST_F(AlertListTest, ListStaysUsableBehindAnAlertWithoutAnExplanation) {
  Open(Alert(1, "0.5") + Alert(2, "0.5"));
  testing::FakePage page(form_->alerts.sDesc);
  alerts_.without_explanation = {"1"};
  form_->alerts.lvAlerts.Click(*form_->alerts.lvAlerts.Find("K1"));
  EXPECT_THAT(page.events.back(), HasSubstr("script"));
  EXPECT_THAT(page.events, Contains(HasSubstr("Description Not Available")));
  page.events.clear();
  form_->alerts.lvAlerts.Click(*form_->alerts.lvAlerts.Find("K2"));
  EXPECT_THAT(page.events, ElementsAre(HasSubstr("navigate"), HasSubstr("<b>told</b>"), HasSubstr("script")));
}

TEST_F(AlertListTest, IntrusionRaisesAttentionAndNothingBelowItDoes) {
  Open(Alert(1, "0.5"));
  form_->AttentionPending = false;
  Append(Alert(2, "0.92"));
  Poll();
  EXPECT_FALSE(form_->AttentionPending);
  Append(Alert(3, "0.99"));
  Poll();
  EXPECT_TRUE(form_->AttentionPending);
}

TEST_F(AlertListTest, DecidedRowClearsTheAttentionThatAnEarlierRowRaised) {
  alerts_.decisions = {{Tag(2), "x"}};
  Open(Alert(1, "0.99") + Alert(2, "0.99"));
  form_->AttentionPending = false;
  form_->alerts.sShowAll_Click();
  EXPECT_FALSE(form_->AttentionPending);
  alerts_.decisions = {{Tag(1), "x"}};
  form_->alerts.sShowAll_Click();
  EXPECT_TRUE(form_->AttentionPending);
}

TEST_F(AlertListTest, TimeOfTheLatestUndecidedIntrusionIsKept) {
  alerts_.decisions = {{Tag(30), "x"}};
  Open(Alert(10, "0.99") + Alert(20, "0.92") + Alert(30, "0.99"));
  const core::Date at_ten =
      *core::ReadDate(core::DisplayTime(kStart + 10, 0, world_.platform.family, world_.platform.locale.info),
                      world_.platform.locale.info, 2004);
  EXPECT_DOUBLE_EQ(form_->alerts.LastIntrusionTime, at_ten);
}

TEST_F(AlertListTest, IntrusionWithoutAReadableDateIsListedAndMovesNoTime) {
  const std::string undated = "some day,HOST,7,Aggregation|0.99|0.99|Tcp Port=22|||x\r\n";
  Open(Alert(10, "0.99") + undated + Alert(20, "0.92"));
  EXPECT_THAT(Rows(), ElementsAre("K3 Suspicious:22", "K2 Intrusion:18", "K1 Intrusion:18"));
  EXPECT_EQ(form_->alerts.lvAlerts.at(1).text, "some day");
  const core::Date at_ten = form_->alerts.LastIntrusionTime;
  EXPECT_GT(at_ten, 38000);
  form_->visible = false;
  Append(undated + Alert(5, "0.99"));
  Poll();
  EXPECT_THAT(Rows(), ElementsAre("K5 Intrusion:18", "K4 Intrusion:18", "K3 Suspicious:22", "K2 Intrusion:18",
                                  "K1 Intrusion:18"));
  EXPECT_EQ(form_->alerts.LastIntrusionTime, at_ten);
  EXPECT_EQ(PopUpKey(), "K5");
  EXPECT_TRUE(form_->AttentionPending);
}

TEST_F(AlertListTest, NewIntrusionUnderAWindowOnShowMovesTheTime) {
  Open(Alert(1, "0.5"));
  EXPECT_EQ(form_->alerts.LastIntrusionTime, 0);
  Append(Alert(2, "0.99"));
  Poll();
  EXPECT_GT(form_->alerts.LastIntrusionTime, 38000);
  EXPECT_EQ(PopUpKey(), "none");
}

TEST_F(AlertListTest, ClearAllEmptiesUntilTheNextFullLoad) {
  Open(Alert(1, "0.5"));
  form_->alerts.sClearAll.clicked.Raise();
  EXPECT_EQ(form_->alerts.lvAlerts.size(), 0u);
  EXPECT_EQ(alerts_.forgotten, 1);
  EXPECT_FALSE(form_->alerts.ShowBlockedAlerts);
  EXPECT_FALSE(form_->alerts.sMoreInfo.enabled);
  form_->alerts.sShowAll.clicked.Raise();
  EXPECT_EQ(form_->alerts.lvAlerts.size(), 1u);
  EXPECT_TRUE(form_->alerts.sMoreInfo.enabled);
}

// The reader's bookmark stands on the last row that was there before; only what lies behind it is new.
TEST_F(AlertListTest, UpdateBehindAClearAllDoesNotBringTheLastOldAlertBack) {
  Open(Alert(1, "0.5") + Alert(2, "0.5"));
  form_->alerts.sClearAll.clicked.Raise();
  Append(Alert(3, "0.5"));
  Poll();
  EXPECT_THAT(Rows(), ElementsAre("K3 Normal:23"));
}

TEST_F(AlertListTest, UpdateDoesNotListABlockedAlertThatIsHidden) {
  alerts_.decisions = {{Tag(2), "A"}};
  Open(Alert(1, "0.5") + Alert(2, "0.5"));
  form_->alerts.sckShowAll.checked = false;
  form_->alerts.sckShowAll.clicked.Raise();
  Append(Alert(3, "0.5"));
  Poll();
  EXPECT_THAT(Rows(), ElementsAre("K3 Normal:23", "K1 Normal:23"));
}

TEST_F(AlertListTest, TickWhileAListIsBuiltIsLost) {
  Open(Alert(1, "0.5"));
  const auto hours = form_->HourTicks;
  const auto quarters = form_->QuarterTicks;
  bool was_busy = false;
  alerts_.on_details = [&] {
    was_busy = form_->ListBusy;
    Seconds(5);
  };
  form_->alerts.sShowAll_Click();
  EXPECT_TRUE(was_busy);
  EXPECT_FALSE(form_->ListBusy);
  EXPECT_EQ(form_->HourTicks, hours);
  EXPECT_EQ(form_->QuarterTicks, quarters);
  alerts_.on_details = nullptr;
  Seconds(1);
  EXPECT_EQ(form_->HourTicks, hours + 1);
}

TEST_F(AlertListTest, EveryCommandThatRebuildsTheListChecksTheOverallLevel) {
  Open(Alert(1, "0.99"));
  form_->AgentLevel = 1;
  const auto repaints = [&](widgets::Signal<>& clicked) {
    form_->summary.OSFlag.picture = std::string("stale");
    clicked.Raise();
    return form_->summary.OSFlag.picture.Get() != "stale";
  };
  EXPECT_TRUE(repaints(form_->alerts.sckShowAll.clicked));
  EXPECT_TRUE(repaints(form_->alerts.sShowAll.clicked));
  EXPECT_TRUE(repaints(form_->alerts.sClearAll.clicked));
}

TEST_F(AlertListTest, ReplacedFileRepaintsTheOverallLevel) {
  Open(Alert(1, "0.5") + Alert(2, "0.5"));
  form_->summary.OSFlag.picture = std::string("stale");
  Replace(Alert(9, "0.99"));
  Poll();
  EXPECT_NE(form_->summary.OSFlag.picture.Get(), "stale");
}

TEST_F(AlertListTest, ClearedListShowsTheOpeningPage) {
  state_.Desc[0] = {"-1,x", "0,opening words", "1,b", "2,c", "3,d", "4,e", "5,f", "6,g"};
  Open(Alert(1, "0.5"));
  testing::FakePage page(form_->alerts.sDesc);
  form_->alerts.sClearAll.clicked.Raise();
  EXPECT_THAT(page.events, ElementsAre(HasSubstr("opening words")));
}

TEST_F(AlertListTest, ViewsHearOfABuildOnce) {
  Open(Alert(1, "0.5") + Alert(2, "0.5"));
  int told = 0;
  const auto link = form_->alerts.lvAlerts.rows_added.Connect([&] { ++told; });
  form_->alerts.sShowAll_Click();
  EXPECT_EQ(told, 1);
}

TEST_F(AlertListTest, ErrorInTheMiddleLeavesAPartialListAndIsLogged) {
  Open(Alert(1, "0.5") + Alert(2, "0.5"));
  form_->alerts.sClearAll_Click();
  int asked = 0;
  alerts_.on_details = [&] {
    if (++asked == 2) core::Raise(core::kTypeMismatch);
  };
  world_.quiet.Expect("'frmNewUI:LoadlvAlerts': 13: Type mismatch");
  form_->alerts.LoadlvAlerts();
  EXPECT_FALSE(form_->ListBusy);
  EXPECT_TRUE(form_->alerts.sMoreInfo.enabled);
  EXPECT_EQ(form_->alerts.lvAlerts.size(), 2u);
}

}  // namespace
}  // namespace zendrix::home
