#include "home_fixture.h"
#include "settings/ini_file.h"

namespace zendrix::home {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class LogsPaneTest : public HomeFixture {
 protected:
  LogsPaneTest() {
    state_.Desc[0] = {"-1,a", "0,b", "1,c", "2,The list shows messages.", "3,e", "4,f", "5,g", "6,h"};
  }
  static std::string Entry(int second, const std::string& text) {
    return Tag(second) + ",HOST,7," + text + "\r\n";
  }
  void AgentLog(const std::string& bytes) {
    world_.platform.files.Put(world_.InFolder("KorvessaEventLog.kvl"), bytes);
  }
  void OwnLog(const std::string& bytes) {
    world_.platform.files.Put(world_.InFolder("KorvessaAdministratorEventLog.kvl"), bytes);
  }
  LogsPane& Logs() { return form_->logs; }
  // The form with one event, on its Advanced pane.
  void OpenPane() {
    Open(Line(1, "System", "0"));
    form_->ViewItems[kAdvancedView]->clicked.Raise();
  }
  // Keys from the top, "~" in front of a ghosted row.
  std::vector<std::string> Listed() {
    std::vector<std::string> keys;
    for (std::size_t i = 0; i < Logs().alvAgErrLog.size(); ++i) {
      const widgets::ListRow& row = Logs().alvAgErrLog.at(i);
      keys.push_back((row.ghosted ? "~" : "") + row.key);
    }
    return keys;
  }
  std::string Saved(const std::string& key) {
    const std::string ini = world_.platform.files.Get(world_.InFolder("zendrix.ini"));
    return settings::IniFile(ini).GetString("Misc", key, "(none)", 100);
  }
  void Click(const std::string& key) { Logs().alvAgErrLog.Click(Logs().alvAgErrLog.Find(key).value()); }
};

TEST_F(LogsPaneTest, HeaderHasThreeColumnsAndTheButtonsTheirTips) {
  OpenPane();
  const auto& columns = Logs().alvAgErrLog.columns.Get();
  ASSERT_EQ(columns.size(), 3u);
  EXPECT_EQ(columns[0], (widgets::ListColumn{"Time", 0, 2268}));
  EXPECT_EQ(columns[1], (widgets::ListColumn{"Host", 0, 700}));
  EXPECT_EQ(columns[2], (widgets::ListColumn{"Description", 0, 5670}));
  EXPECT_EQ(Logs().aClearAll.tip.Get(), "Mark as deleted");
  EXPECT_EQ(Logs().aShowAll.tip.Get(), "Show also deleted items");
  EXPECT_TRUE(Logs().aAgStatus.checked);
  EXPECT_FALSE(Logs().aUIError.checked);
}

TEST_F(LogsPaneTest, SelectingThePaneListsTheAgentsLogNewestOnTop) {
  AgentLog(Entry(0, "one") + Entry(10, "two, and more") + Entry(20, "three"));
  OpenPane();
  EXPECT_EQ(Logs().alvAgErrLog.Print(),
            "11/09/2004 11:33:40 AM[17] | HOST | three\n"
            "11/09/2004 11:33:30 AM[17] | HOST | two\n"
            "11/09/2004 11:33:20 AM[17] | HOST | one\n");
  EXPECT_EQ(Logs().alvAgErrLog.at(0).tag, Tag(20));
  EXPECT_EQ(Logs().aDesc.caption.Get(), "The list shows messages.");
}

TEST_F(LogsPaneTest, ListGetsTheKeyboardWhenThePaneIsSelected) {
  Open(Line(1, "System", "0"));
  int focused = 0;
  const auto link = Logs().alvAgErrLog.focus.Connect([&] { ++focused; });
  form_->ViewItems_Click(kOptionsView);
  EXPECT_EQ(focused, 0);
  form_->ViewItems_Click(kAdvancedView);
  EXPECT_EQ(focused, 1);
}

TEST_F(LogsPaneTest, OwnLogHasItsOwnPicture) {
  Open(Line(1, "System", "0"));
  OwnLog("11/09/2004 11:33:20 AM,PC,0,'Load': UI started.\r\n");
  AgentLog(Entry(0, "one"));
  form_->ViewItems_Click(kAdvancedView);
  Logs().aUIError.Click();
  EXPECT_EQ(Logs().alvAgErrLog.Print(), "11/09/2004 11:33:20 AM[19] | PC | 'Load': UI started.\n");
  Logs().aAgStatus.Click();
  EXPECT_EQ(Logs().alvAgErrLog.Print(), "11/09/2004 11:33:20 AM[17] | HOST | one\n");
}

TEST_F(LogsPaneTest, MissingLogIsAnEmptyList) {
  OpenPane();
  EXPECT_THAT(Listed(), IsEmpty());
  Logs().aShowAll.clicked.Raise();
  EXPECT_THAT(Listed(), IsEmpty());
  EXPECT_EQ(screen_.MousePointer, widgets::kPointerDefault);
}

TEST_F(LogsPaneTest, HourglassStandsUntilTheStatusHasBeenLookedAtAgain) {
  OpenPane();
  int pointer = -1;
  form_->summary.OSRiskLevel.to_front.ConnectForever([&] { pointer = screen_.MousePointer; });
  Logs().aShowAll.clicked.Raise();
  EXPECT_EQ(pointer, widgets::kPointerHourglass);
  EXPECT_EQ(screen_.MousePointer, widgets::kPointerDefault);
}

TEST_F(LogsPaneTest, PaneSelectedAgainAddsOnlyWhatIsNew) {
  AgentLog(Entry(0, "one"));
  OpenPane();
  Click("K1");
  AgentLog(Entry(0, "one") + Entry(5, "two"));
  form_->ViewItems_Click(kAdvancedView);
  EXPECT_THAT(Listed(), ElementsAre("K2", "K1"));
  EXPECT_EQ(Logs().alvAgErrLog.selected(), Logs().alvAgErrLog.Find("K1"));
}

TEST_F(LogsPaneTest, ClearAllMarksTheNewestRowAndEmptiesTheList) {
  AgentLog(Entry(0, "one") + Entry(10, "two"));
  OpenPane();
  Click("K1");
  Logs().aClearAll.clicked.Raise();
  EXPECT_THAT(Listed(), IsEmpty());
  EXPECT_EQ(Saved("ldErlog"), Tag(10));
  EXPECT_EQ(Saved("ldUIErlog"), "(none)");
  EXPECT_EQ(Logs().aDesc.caption.Get(), "The list shows messages.");
  AgentLog(Entry(0, "one") + Entry(10, "two") + Entry(11, "three"));
  form_->ViewItems_Click(kAdvancedView);
  EXPECT_THAT(Listed(), ElementsAre("K3"));
}

TEST_F(LogsPaneTest, RowWithTheTimeOfTheMarkCountsAsCleared) {
  state_.settings.ldErlog = Tag(10);
  AgentLog(Entry(9, "before") + Entry(10, "same") + Entry(11, "after"));
  OpenPane();
  EXPECT_THAT(Listed(), ElementsAre("K3"));
}

TEST_F(LogsPaneTest, MarksAreComparedAsTexts) {
  state_.settings.ldErlog = "2";  // greater than every text that begins with 1
  AgentLog(Entry(0, "one"));
  OpenPane();
  EXPECT_THAT(Listed(), IsEmpty());
}

TEST_F(LogsPaneTest, ClearAllOnAnEmptyListDoesNotMoveTheMark) {
  state_.settings.ldErlog = Tag(10);
  OpenPane();
  Logs().aClearAll.clicked.Raise();
  EXPECT_EQ(state_.settings.ldErlog, Tag(10));
  EXPECT_EQ(Saved("ldErlog"), "(none)");
}

TEST_F(LogsPaneTest, ShowAllGhostsWhatWasClearedAndASecondClearAllGivesItUpAgain) {
  AgentLog(Entry(0, "one") + Entry(10, "two"));
  OpenPane();
  Logs().aClearAll.clicked.Raise();
  Logs().aShowAll.clicked.Raise();
  EXPECT_THAT(Listed(), ElementsAre("~K2", "~K1"));
  EXPECT_TRUE(Logs().ShowAllAgentLog);
  Logs().aClearAll.clicked.Raise();
  EXPECT_THAT(Listed(), IsEmpty());
  EXPECT_FALSE(Logs().ShowAllAgentLog);
  EXPECT_EQ(Saved("ldErlog"), Tag(10));
  form_->ViewItems_Click(kAdvancedView);
  EXPECT_THAT(Listed(), IsEmpty());
}

TEST_F(LogsPaneTest, OlderRowsStandAboveNewerOnesUntilTheNextLoadFromEmpty) {
  state_.settings.ldErlog = Tag(10);
  AgentLog(Entry(0, "one") + Entry(10, "two") + Entry(20, "three"));
  OpenPane();
  EXPECT_THAT(Listed(), ElementsAre("K3"));
  Logs().aShowAll.clicked.Raise();
  EXPECT_THAT(Listed(), ElementsAre("~K2", "~K1", "K3"));
  Logs().aUIError.Click();
  Logs().aAgStatus.Click();
  EXPECT_THAT(Listed(), ElementsAre("K3", "~K2", "~K1"));
}

TEST_F(LogsPaneTest, EachLogKeepsItsShowAllAndItsMark) {
  state_.settings.ldErlog = Tag(10);
  state_.settings.ldUIErlog = Tag(10);
  AgentLog(Entry(0, "one"));
  Open(Line(1, "System", "0"));
  OwnLog("11/09/2004 11:33:20 AM,PC,0,one\r\n");
  form_->ViewItems_Click(kAdvancedView);
  Logs().aShowAll.clicked.Raise();
  Logs().aUIError.Click();
  EXPECT_THAT(Listed(), IsEmpty());
  EXPECT_FALSE(Logs().ShowAllUILog);
  Logs().aShowAll.clicked.Raise();
  EXPECT_THAT(Listed(), ElementsAre("~K1"));
  Logs().aClearAll.clicked.Raise();
  EXPECT_EQ(Saved("ldUIErlog"), Tag(0));
  EXPECT_EQ(Saved("ldErlog"), "(none)");
  Logs().aAgStatus.Click();
  EXPECT_THAT(Listed(), ElementsAre("~K1")) << "still asked for";
}

// An empty list cannot tell that it was cleared; only something that loads it again fills it.
TEST_F(LogsPaneTest, ClickOnTheChosenLogLoadsNothing) {
  AgentLog(Entry(0, "one"));
  OpenPane();
  Logs().aClearAll.clicked.Raise();
  state_.settings.ldErlog.clear();
  Logs().aAgStatus.Click();
  EXPECT_THAT(Listed(), IsEmpty());
}

TEST_F(LogsPaneTest, ClickOnARowShowsItsMessageUnderTheGeneralText) {
  AgentLog(Entry(0, "<b>one</b>"));
  OpenPane();
  Click("K1");
  EXPECT_EQ(Logs().aDesc.caption.Get(), "The list shows messages.\r\n\r\n<b>one</b>");
}

TEST_F(LogsPaneTest, RowOfNumberZeroShowsOnlyTheGeneralText) {
  OpenPane();
  auto& list = Logs().alvAgErrLog;
  for (const char* key : {"K0", "K-3"}) {
    const auto slot = *list.InsertTop(key, "", 17, "");
    list.AddSubItem(slot, "HOST");
    list.AddSubItem(slot, "message");
    Click(key);
    EXPECT_EQ(Logs().aDesc.caption.Get(), "The list shows messages.");
  }
}

TEST_F(LogsPaneTest, FailedClickIsLoggedUnderItsOwnName) {
  AgentLog(Entry(0, "one"));
  OpenPane();
  state_.Desc[0].resize(2);
  world_.quiet.Expect("'alvAgErrLog_ItemClick': 9: Subscript out of range");
  Click("K1");
}

TEST_F(LogsPaneTest, ShortDescriptionFileCostsALogLineAndTheLogIsListed) {
  AgentLog(Entry(0, "one"));
  Open(Line(1, "System", "0"));
  state_.Desc[0].resize(2);
  world_.quiet.Expect("'frmNewUI:FillAgentFra': 9: Subscript out of range");
  form_->ViewItems_Click(kAdvancedView);
  EXPECT_THAT(Listed(), ElementsAre("K1"));
}

// Whoever can write one such line must neither hide the others nor bring back what was cleared.
TEST_F(LogsPaneTest, RowWithoutAReadableDateIsListedAndMovesNoMark) {
  AgentLog(Entry(0, "one") + "someday,HOST,7,two\r\n");
  OpenPane();
  EXPECT_EQ(Logs().alvAgErrLog.Print(), "[17] | HOST | two\n11/09/2004 11:33:20 AM[17] | HOST | one\n");
  Logs().aClearAll.clicked.Raise();
  EXPECT_EQ(Saved("ldErlog"), Tag(0));
  form_->ViewItems_Click(kAdvancedView);
  EXPECT_THAT(Listed(), IsEmpty());
}

TEST_F(LogsPaneTest, RowsOfALogThatWasReplacedStayUntilTheListIsLoadedFromEmpty) {
  AgentLog(Entry(0, "old one") + Entry(1, "old two"));
  OpenPane();
  AgentLog(Entry(50, "new one"));
  Click("K1");
  EXPECT_EQ(Logs().aDesc.caption.Get(), "The list shows messages.\r\n\r\nold one");
  form_->ViewItems_Click(kAdvancedView);
  EXPECT_THAT(Listed(), ElementsAre("K2", "K1"));
  Logs().aUIError.Click();
  Logs().aAgStatus.Click();
  EXPECT_THAT(Listed(), ElementsAre("K1"));
  Click("K1");
  EXPECT_EQ(Logs().aDesc.caption.Get(), "The list shows messages.\r\n\r\nnew one");
}

TEST_F(LogsPaneTest, MarkThatCannotBeSavedHoldsForThisRun) {
  AgentLog(Entry(0, "one"));
  OpenPane();
  world_.platform.files.FailNext(platform::FileOp::kWriteAll, "*", platform::ErrorKind::kNoSpace,
                                 platform::MemoryFiles::kAlways);
  Logs().aClearAll.clicked.Raise();
  world_.platform.files.ClearFaults();
  EXPECT_THAT(Listed(), IsEmpty());
  form_->ViewItems_Click(kAdvancedView);
  EXPECT_THAT(Listed(), IsEmpty());
  EXPECT_EQ(Saved("ldErlog"), "(none)");
}

TEST_F(LogsPaneTest, BothButtonsCheckTheOverallLevel) {
  OpenPane();
  for (widgets::Label* button : {&Logs().aClearAll, &Logs().aShowAll}) {
    int front = 0;
    const auto link = form_->summary.OSRiskLevel.to_front.Connect([&] { ++front; });
    button->clicked.Raise();
    EXPECT_EQ(front, 1) << button->name();
  }
}

TEST_F(LogsPaneTest, ViewsHearOfALoadOnce) {
  AgentLog(Entry(0, "one") + Entry(1, "two"));
  Open(Line(1, "System", "0"));
  int added = 0;
  const auto link = Logs().alvAgErrLog.rows_added.Connect([&] { ++added; });
  std::vector<int> shapes;
  const auto pointer = screen_.MousePointer.changed.Connect([&] { shapes.push_back(screen_.MousePointer); });
  Logs().FillAgentFra();
  EXPECT_EQ(added, 1);
  EXPECT_THAT(shapes, ElementsAre(widgets::kPointerHourglass, widgets::kPointerDefault));
}

}  // namespace
}  // namespace zendrix::home
