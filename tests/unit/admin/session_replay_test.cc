#include "admin/session_replay.h"

#include <algorithm>

#include "frm_main_fixture.h"

namespace zendrix::admin {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr char kStart[] = "** Start baseline **";
constexpr char kEnd[] = "** End baseline **";
constexpr char kSession[] = "Begin Session Refresh.";
constexpr widgets::Colour kMarked = 0xFF8080;

class SessionReplayTest : public FrmMainFixture {
 protected:
  // So many events of one monitor, the oldest of second 1, so that row 1 is of second `count`.
  void OpenRows(int count) {
    std::vector<std::string> lines;
    for (int i = 1; i <= count; ++i) lines.push_back(Line(i, "tcp port", "item " + std::to_string(i)));
    OpenOn(lines);
  }
  SessionReplay& Replay() { return form_->replay; }
  widgets::Grid& Grid() { return form_->EventList; }
  std::vector<int> ColouredRows() const {
    std::vector<int> rows;
    for (int row = 1; row < form_->EventList.Rows(); ++row)
      if (form_->EventList.CellColor(row, kColDateTime) != 0) rows.push_back(row);
    return rows;
  }
  void Press(widgets::MenuItem& key) { key.clicked.Raise(); }
  void Click(int row) { Grid().row_clicked.Raise(row); }
  void PointAt(int row, int col = kColHostname) {
    Grid().cell_under_pointer = [row, col] { return widgets::Grid::Cell{row, col}; };
  }
  void SortByTime(bool ascending) {
    form_->sort.SortDirectionFlag = ascending;
    Grid().header_clicked.Raise(kColDateTime);
  }
  std::string Tree() { return Replay().tvVCR.Print(); }
  static std::string Root(int second) {
    return "System State @ 01/01/1970 12:00:" + std::string(second < 10 ? "0" : "") + std::to_string(second) +
           " AM";
  }
  static std::string Error(const std::string& procedure) {
    return "'frmMain : " + procedure + "': 9: Subscript out of range";
  }
};

// The tree.

TEST_F(SessionReplayTest, OpeningPutsTheCursorOnTheNewestEventAndShowsItsState) {
  OpenOn({Line(1, "tcp port", kStart, "B"), Line(2, "tcp port", "80"), Line(3, "tcp port", "443"),
          Line(4, "tcp port", kEnd, "B"), Line(5, "running processes", "sh"),
          Line(6, "running processes", "bash")});
  EXPECT_EQ(Replay().CurrentRow, 1);
  EXPECT_THAT(ColouredRows(), ElementsAre(1));
  EXPECT_EQ(Grid().CellColor(1, kColDescription), kMarked);
  EXPECT_EQ(Tree(), "- " + Root(6) + "\n  + Running Processes[9]\n  + Tcp Port[11]\n");
  Replay().tvVCR.Expand(0, true);
  Replay().tvVCR.Expand(1, true);
  EXPECT_EQ(Tree(),
            "- " + Root(6) +
                "\n  - Running Processes[9]\n      bash\n      sh\n  - Tcp Port[11]\n      443\n      80\n");
}

TEST_F(SessionReplayTest, GridWithItsHeaderAloneShowsTheBareRoot) {
  OpenOn({});
  EXPECT_EQ(Tree(), "  System State\n");
  EXPECT_EQ(Replay().CurrentRow, 0);
  EXPECT_EQ(Replay().CurrentRowColor, -1);
}

TEST_F(SessionReplayTest, MonitorWhoseStateIsEmptyHasNoNode) {
  OpenOn({Line(1, "system", "bottom"), Line(2, "tcp port", "80"), Line(3, "tcp port", "80", "R")});
  EXPECT_EQ(Tree(), "  " + Root(3) + "\n");
  EXPECT_EQ(Replay().NodeOmitted[0], "System");
  EXPECT_EQ(Replay().NodeOmitted[3], "Tcp Port");
  EXPECT_EQ(Replay().NodeOmitted[4], " ");
  Press(Replay().TbarBack);
  EXPECT_EQ(Tree(), "- " + Root(2) + "\n  + Tcp Port[11]\n");
  EXPECT_EQ(Replay().NodeOmitted[3], "Tcp Port") << "forgotten only when the grid is loaded anew";
}

TEST_F(SessionReplayTest, OnlyMonitorsOfTheValueOneHaveNodes) {
  for (const char* value : {"0", "2"}) {
    reg_ini_.SaveSettingHashed("Monitors", "Tcp Port", value);
    reg_ini_.ReadRegInfo();
    OpenOn({Line(1, "system"), Line(2, "tcp port", "80"), Line(3, "system", "a")});
    EXPECT_EQ(Tree(), "- " + Root(3) + "\n  + System[2]\n") << value;
  }
}

TEST_F(SessionReplayTest, MonitorOfTheNameOfTheRootIsLikeAnyOther) {
  OpenOn({Line(1, "root"), Line(2, "root", "a"), Line(3, "tcp port", "b")});
  EXPECT_EQ(Tree(), "- " + Root(3) + "\n  + Tcp Port[11]\n  + Root[30]\n");
}

TEST_F(SessionReplayTest, PointerIsAnHourglassWhileTheTreeIsBuilt) {
  OpenRows(3);
  std::vector<int> shapes;
  const auto link = screen_.MousePointer.changed.Connect([&] { shapes.push_back(screen_.MousePointer); });
  Press(Replay().TbarBack);
  EXPECT_THAT(shapes, ElementsAre(widgets::kPointerHourglass, widgets::kPointerDefault));
}

TEST_F(SessionReplayTest, NodesStayOpenFromStepToStep) {
  OpenRows(5);
  Replay().tvVCR.Expand(0, true);
  for (widgets::MenuItem* key : {&Replay().TbarBack, &Replay().TbarStep}) {
    Press(*key);
    EXPECT_TRUE(Replay().tvVCR.Find("Tcp Port")->expanded) << key->name();
  }
  Click(3);
  EXPECT_TRUE(Replay().tvVCR.Find("Tcp Port")->expanded);
  Replay().tvVCR.Expand(0, false);
  Click(2);
  EXPECT_FALSE(Replay().tvVCR.Find("Tcp Port")->expanded);
}

// The next event hid the node for one step; behind it the node came back closed.
TEST_F(SessionReplayTest, NodeThatWasAwayForAStepComesBackAsItWas) {
  OpenOn(
      {Line(1, "system"), Line(2, "tcp port", "a"), Line(3, "tcp port", "a", "R"), Line(4, "tcp port", "b")});
  Replay().tvVCR.Expand(0, true);
  Press(Replay().TbarBack);
  EXPECT_EQ(Replay().tvVCR.Find("Tcp Port"), nullptr);
  Press(Replay().TbarBack);
  ASSERT_NE(Replay().tvVCR.Find("Tcp Port"), nullptr);
  EXPECT_TRUE(Replay().tvVCR.Find("Tcp Port")->expanded);
}

TEST_F(SessionReplayTest, WayToASessionDoesNotSaveWhichNodesAreOpen) {
  OpenRows(3);
  Replay().tvVCR.Expand(0, true);
  Press(Replay().TbarNxt);
  EXPECT_FALSE(Replay().tvVCR.Find("Tcp Port")->expanded);
}

TEST_F(SessionReplayTest, RefreshForgetsWhichNodesWereOpen) {
  OpenRows(3);
  Replay().tvVCR.Expand(0, true);
  Press(Replay().TbarBack);
  Replay().NodeOmitted[7] = "x";
  form_->ResetClick();
  EXPECT_FALSE(Replay().tvVCR.Find("Tcp Port")->expanded);
  EXPECT_THAT(Replay().NodeExpanded, Each(false));
  EXPECT_EQ(Replay().NodeOmitted[7], " ");
  EXPECT_EQ(Replay().CurrentRow, 1);
  EXPECT_THAT(ColouredRows(), ElementsAre(1));
}

// The items are read from the rows, which go when the file has shrunk.
TEST_F(SessionReplayTest, TreeKeepsItsTextsWhenTheRowsGo) {
  OpenRows(4);
  Replay().tvVCR.Expand(0, true);
  const std::string before = Tree();
  EXPECT_THAT(before, HasSubstr("item 4\n      item 3\n"));
  Put({Line(9, "system")});
  Tick();
  ASSERT_EQ(Grid().DataRows(), 1);
  EXPECT_EQ(Tree(), before);
}

// Steps.

TEST_F(SessionReplayTest, StepGoesUpAndStepBackGoesDown) {
  OpenRows(5);
  Press(Replay().TbarBack);
  Press(Replay().TbarBack);
  EXPECT_EQ(Replay().CurrentRow, 3);
  EXPECT_THAT(ColouredRows(), ElementsAre(3));
  EXPECT_THAT(Tree(), HasSubstr(Root(3)));
  Press(Replay().TbarStep);
  EXPECT_EQ(Replay().CurrentRow, 2);
  EXPECT_THAT(ColouredRows(), ElementsAre(2));
}

TEST_F(SessionReplayTest, StepsEndAtTheFirstAndAtTheLastRow) {
  OpenRows(2);
  Press(Replay().TbarStep);
  EXPECT_EQ(Replay().CurrentRow, 1);
  for (int i = 0; i < 3; ++i) Press(Replay().TbarBack);
  EXPECT_EQ(Replay().CurrentRow, 2);
  EXPECT_THAT(ColouredRows(), ElementsAre(2));
}

// The bound is the count of lines, and the line of a hidden monitor has no row.
TEST_F(SessionReplayTest, StepPastTheLastRowIsAnErrorWhereLinesHaveNoRow) {
  reg_ini_.SaveSettingHashed("Monitors", "System", "0");
  reg_ini_.ReadRegInfo();
  OpenOn({Line(1, "system"), Line(2, "tcp port")});
  world_.quiet.Expect(Error("StepBack"));
  Press(Replay().TbarBack);
  EXPECT_EQ(Replay().CurrentRow, 1);
  EXPECT_THAT(ColouredRows(), IsEmpty());
  EXPECT_TRUE(Grid().redraw());
}

TEST_F(SessionReplayTest, StepsKeepTheCursorInSight) {
  OpenRows(60);
  Grid().TopRow = 20;
  Click(21);
  Press(Replay().TbarStep);
  EXPECT_EQ(Grid().TopRow.Get(), 20);
  Press(Replay().TbarStep);
  EXPECT_EQ(Grid().TopRow.Get(), 19);
  Click(44);
  Press(Replay().TbarBack);
  EXPECT_EQ(Grid().TopRow.Get(), 20);
  Grid().TopRow = 20;
  Press(Replay().TbarBack);
  EXPECT_EQ(Grid().TopRow.Get(), 21);
}

TEST_F(SessionReplayTest, NotableRowMarksItsRelatedOnesOnEitherStep) {
  OpenOn({Line(1, "tcp port", "x"), Line(2, "monitoring agent", "saw port", "N"), Line(3, "system", "y")});
  Press(Replay().TbarBack);
  EXPECT_EQ(Replay().RelatedRow[3], 3);
  EXPECT_THAT(ColouredRows(), ElementsAre(2, 3));
  Press(Replay().TbarBack);
  EXPECT_EQ(Replay().RelatedRow[3], 0);
  EXPECT_THAT(ColouredRows(), ElementsAre(3));
  Press(Replay().TbarStep);
  EXPECT_THAT(ColouredRows(), ElementsAre(2, 3));
}

// Sessions.

class SessionsTest : public SessionReplayTest {
 protected:
  // Sessions begin in rows 2 and 5.
  SessionsTest() {
    OpenOn({Line(1, "tcp port", "a"), Line(2, "tcp port", "b"), Line(3, "system", kSession),
            Line(4, "tcp port", "c"), Line(5, "tcp port", "d"), Line(6, "system", kSession),
            Line(7, "tcp port", "e")});
  }
};

TEST_F(SessionsTest, PreviousGoesDownFromSessionToSession) {
  Press(Replay().TbarPrev);
  EXPECT_EQ(Replay().CurrentRow, 2);
  EXPECT_EQ(Grid().Row.Get(), 2);
  EXPECT_EQ(Grid().TopRow.Get(), 2);
  EXPECT_THAT(ColouredRows(), ElementsAre(2));
  EXPECT_THAT(Tree(), HasSubstr(Root(6)));
  Press(Replay().TbarPrev);
  EXPECT_EQ(Replay().CurrentRow, 5);
  EXPECT_EQ(Grid().TopRow.Get(), 3);
}

TEST_F(SessionsTest, WithoutAnOlderSessionTheGridsCursorStays) {
  Grid().Row = 6;
  Press(Replay().TbarPrev);
  EXPECT_EQ(Grid().Row.Get(), 6);
  EXPECT_EQ(Replay().CurrentRow, 6);
}

TEST_F(SessionsTest, NextGoesUpAndEndsAtRowOne) {
  Grid().Row = 7;
  Press(Replay().TbarNxt);
  EXPECT_EQ(Replay().CurrentRow, 5);
  Press(Replay().TbarNxt);
  EXPECT_EQ(Replay().CurrentRow, 2);
  EXPECT_EQ(Grid().TopRow.Get(), 2);
  Press(Replay().TbarNxt);
  EXPECT_EQ(Replay().CurrentRow, 1);
  EXPECT_EQ(Grid().Row.Get(), 1);
  Press(Replay().TbarNxt);
  EXPECT_EQ(Replay().CurrentRow, 1);
}

TEST_F(SessionsTest, DescriptionHasToBeExactlyThatOfASession) {
  OpenOn({Line(1, "system", "begin session refresh."), Line(2, "system", "Begin Session Refresh. "),
          Line(3, "system", "x"), Line(4, "system", "x")});
  Press(Replay().TbarPrev);
  EXPECT_EQ(Replay().CurrentRow, 3) << "blanks behind the line are no part of it";
  OpenOn({Line(1, "system", "begin session refresh."), Line(2, "system", "Begin Session Refresh.."),
          Line(3, "system", "x")});
  Press(Replay().TbarPrev);
  EXPECT_EQ(Replay().CurrentRow, 1);
}

TEST_F(SessionsTest, WayToASessionLeavesRelatedRowsMarked) {
  OpenOn(
      {Line(1, "system", kSession), Line(2, "tcp port", "x"), Line(3, "monitoring agent", "saw port", "N")});
  ASSERT_THAT(ColouredRows(), ElementsAre(1, 2));
  Press(Replay().TbarPrev);
  EXPECT_THAT(ColouredRows(), ElementsAre(2, 3));
  EXPECT_EQ(Replay().RelatedRow[3], 2);
}

TEST_F(SessionsTest, NotableRowIsNotFollowedFromASession) {
  OpenOn({Line(1, "tcp port", "x"), Line(2, "monitoring agent", "saw port", "N"), Line(3, "system", "y")});
  Grid().Row = 2;
  Press(Replay().TbarPrev);
  EXPECT_EQ(Replay().CurrentRow, 2);
  EXPECT_THAT(ColouredRows(), ElementsAre(2));
}

TEST_F(SessionsTest, EmptyGridHasNoSession) {
  OpenOn({});
  world_.quiet.Expect(Error("NextSession"));
  world_.quiet.Expect(Error("PreviousSession"));
  Press(Replay().TbarNxt);
  Press(Replay().TbarPrev);
  EXPECT_EQ(Replay().CurrentRow, 0);
  EXPECT_EQ(Grid().Row.Get(), 0);
}

// Notable events.

TEST_F(SessionReplayTest, GoToNotableFindsTheNewestAndPutsItOnTop) {
  OpenOn(
      {Line(1, "system"), Line(2, "system", "old", "N"), Line(3, "system", "new", "N"), Line(4, "system")});
  Press(Replay().TbarNotable);
  EXPECT_EQ(Replay().CurrentRow, 2);
  EXPECT_EQ(Grid().TopRow.Get(), 2);
  EXPECT_THAT(Tree(), HasSubstr(Root(3)));
}

TEST_F(SessionReplayTest, GoToNotableNeverLooksAtTheLastRow) {
  OpenOn({Line(1, "system", "oldest", "N"), Line(2, "system"), Line(3, "system")});
  Press(Replay().TbarBack);
  Press(Replay().TbarNotable);
  EXPECT_EQ(Replay().CurrentRow, 2);
  EXPECT_EQ(Grid().TopRow.Get(), 1);
}

TEST_F(SessionReplayTest, RelatedRowIsTheFirstOfItsMonitorWithinThirtyRows) {
  for (const int between : {29, 30}) {
    std::vector<std::string> lines = {Line(1, "tcp port", "older"), Line(2, "tcp port", "near")};
    for (int i = 0; i < between; ++i) lines.push_back(Line(3 + i, "system"));
    lines.push_back(Line(90, "monitoring agent", "port scan", "N"));
    OpenOn(lines);
    EXPECT_EQ(Replay().RelatedRow[3], between == 29 ? 31 : 0) << between;
  }
}

TEST_F(SessionReplayTest, RelatedRowIsLookedForUpwardWhereTheGridAscends) {
  OpenOn({Line(1, "system"), Line(2, "tcp port"), Line(3, "monitoring agent", "port", "N"),
          Line(4, "tcp port"), Line(5, "system")});
  SortByTime(true);
  Replay().NotableHL(3);
  EXPECT_EQ(Replay().RelatedRow[3], 2);
}

TEST_F(SessionReplayTest, OneWordMarksBothMonitorsThatEndWithIt) {
  reg_ini_.SaveSetwChk("Monitors", "Serial Port", "1");
  reg_ini_.ReadRegInfo();
  OpenOn({Line(1, "serial port"), Line(2, "tcp port"), Line(3, "system", "The PORT is open", "N")});
  EXPECT_EQ(Replay().RelatedRow[3], 2);
  EXPECT_EQ(Replay().RelatedRow[4], 3);
  EXPECT_THAT(ColouredRows(), ElementsAre(1, 2, 3));
}

TEST_F(SessionReplayTest, MonitorIsNamedByTheWholeLastWordOfItsNameAlone) {
  for (const char* text : {"tcp", "ports", "port;", "report", "Tcp_Port", ""}) {
    OpenOn({Line(1, "tcp port"), Line(2, "system", text, "N")});
    EXPECT_EQ(Replay().RelatedRow[3], 0) << text;
  }
}

TEST_F(SessionReplayTest, NotableRowThatNamesItsOwnMonitorIsItsOwnRelatedRow) {
  OpenOn({Line(1, "system"), Line(2, "system", "system time", "N")});
  EXPECT_EQ(Replay().RelatedRow[0], 1);
  EXPECT_EQ(Replay().RelatedRowColor[0], kMarked);
  Press(Replay().TbarBack);
  EXPECT_THAT(ColouredRows(), ElementsAre(1, 2)) << "it is given back the colour that it had";
}

// Colours.

TEST_F(SessionReplayTest, RowIsGivenBackTheColourOfTheCellUnderThePointer) {
  OpenRows(5);
  Grid().SetCellColor(5, kColHostname, 0x123456);
  PointAt(5);
  for (widgets::MenuItem* key : {&Replay().TbarBack, &Replay().TbarStep}) {
    Press(*key);
    EXPECT_EQ(Replay().CurrentRowColor, 0x123456) << key->name();
  }
  PointAt(0);
  Press(Replay().TbarBack);
  EXPECT_EQ(Grid().CellColor(1, kColHostname), 0x123456u);
  EXPECT_EQ(Replay().CurrentRowColor, 0);
  PointAt(6);
  Click(3);
  EXPECT_EQ(Replay().CurrentRowColor, 0) << "no cell is there";
}

TEST_F(SessionReplayTest, EveryWayToARowButNextReadsTheColourUnderThePointer) {
  OpenOn({Line(1, "system"), Line(2, "system", "x", "N"), Line(3, "system", kSession), Line(4, "system")});
  Grid().SetRowColor(4, 0x77);
  PointAt(4);
  Press(Replay().TbarPrev);
  EXPECT_EQ(Replay().CurrentRowColor, 0x77);
  Grid().SetRowColor(4, 0x78);
  Press(Replay().TbarNxt);
  EXPECT_EQ(Replay().CurrentRowColor, 0x77);
  EXPECT_EQ(Grid().CellColor(2, 0), 0x77u);
  Press(Replay().TbarNotable);
  EXPECT_EQ(Replay().CurrentRowColor, 0x78);
  Grid().SetRowColor(4, 0x79);
  Click(1);
  EXPECT_EQ(Replay().CurrentRowColor, 0x79);
  Replay().CurrentRow = 0;
  Grid().SetRowColor(4, 0x7A);
  Replay().InitSessionCursor();
  EXPECT_EQ(Replay().CurrentRowColor, 0x7A);
}

TEST_F(SessionReplayTest, RowWhoseColourWasNeverReadHasNoneToBeGivenBack) {
  OpenOn({});
  AppendLine(Line(1, "system"));
  AppendLine(Line(2, "system"));
  Tick();
  Press(Replay().TbarNxt);
  EXPECT_EQ(Replay().CurrentRowColor, -1);
  Press(Replay().TbarBack);
  EXPECT_THAT(ColouredRows(), ElementsAre(2));
}

TEST_F(SessionReplayTest, GridThatIsLoadedAnewAndEmptyHasNoColourToGiveBack) {
  OpenRows(2);
  PointAt(2);
  Grid().SetRowColor(2, 0x77);
  Press(Replay().TbarBack);
  ASSERT_EQ(Replay().CurrentRowColor, 0x77);
  Put({});
  form_->ResetClick();
  EXPECT_EQ(Replay().CurrentRowColor, -1);
  EXPECT_EQ(Replay().CurrentRow, 0);
}

TEST_F(SessionReplayTest, NewColourReachesTheCursorAndTheRelatedRows) {
  OpenOn({Line(1, "system"), Line(2, "tcp port"), Line(3, "monitoring agent", "port", "N")});
  world_.state.settings.SSColor = 0x00FF00;
  Replay().SelectedColorChange();
  EXPECT_EQ(Grid().CellColor(1, 0), 0x00FF00u);
  EXPECT_EQ(Grid().CellColor(2, 0), 0x00FF00u);
  EXPECT_EQ(Grid().CellColor(3, 0), 0u);
}

// Clicks.

TEST_F(SessionReplayTest, ClickMovesTheCursor) {
  OpenOn({Line(1, "tcp port", "x"), Line(2, "monitoring agent", "port", "N"), Line(3, "system")});
  Click(2);
  EXPECT_EQ(Replay().CurrentRow, 2);
  EXPECT_THAT(ColouredRows(), ElementsAre(2, 3));
  EXPECT_THAT(Tree(), HasSubstr(Root(2)));
}

TEST_F(SessionReplayTest, ClickWhileSortedByAnotherColumnShowsTheBareRoot) {
  OpenRows(3);
  Press(Replay().TbarBack);
  Grid().SetRowColor(2, 0x55);
  Grid().header_clicked.Raise(kColHostname);
  Replay().CurrentRowColor = 0x66;
  Click(3);
  EXPECT_EQ(Tree(), "  System State\n");
  EXPECT_EQ(Replay().CurrentRow, 3);
  EXPECT_THAT(ColouredRows(), ElementsAre(3)) << "the old row has no colour, whatever it had";
  EXPECT_EQ(Replay().CurrentRowColor, 0x66);
}

TEST_F(SessionReplayTest, ClickWhileTheTimeAscendsShowsTheBareRootToo) {
  OpenRows(3);
  SortByTime(true);
  Click(2);
  EXPECT_EQ(Tree(), "  System State\n");
}

TEST_F(SessionReplayTest, ClickBesideTheRowsOnlyEndsTheReplay) {
  OpenRows(3);
  Press(Replay().TbarPlay);
  Click(0);
  EXPECT_FALSE(Replay().Playing);
  Click(4);
  EXPECT_EQ(Replay().CurrentRow, 1);
}

TEST_F(SessionReplayTest, ClickDuringALoadOnlyEndsTheReplay) {
  OpenRows(3);
  for (bool frmMain::*busy : {&frmMain::UpdateBusy, &frmMain::RefreshBusy}) {
    Press(Replay().TbarPlay);
    form_.get()->*busy = true;
    Click(2);
    form_.get()->*busy = false;
    EXPECT_EQ(Replay().CurrentRow, 1);
    EXPECT_FALSE(Replay().Playing);
  }
}

TEST_F(SessionReplayTest, ClickTakesTheMarkOfASearchOff) {
  OpenRows(3);
  int taken = 0;
  SessionReplay replay(*form_, {[&] { ++taken; }});
  replay.EventList_Click(0);
  EXPECT_EQ(taken, 1);
  form_->UpdateBusy = true;
  replay.EventList_Click(2);
  EXPECT_EQ(taken, 1);
  form_->UpdateBusy = false;
}

// Replay.

TEST_F(SessionReplayTest, PlayStepsAtOnceAndThenEveryFourSeconds) {
  OpenRows(10);
  Click(8);
  EXPECT_FALSE(Replay().TbarStp.enabled);
  Press(Replay().TbarPlay);
  EXPECT_TRUE(Replay().Playing);
  EXPECT_EQ(Replay().TbarPlay.picture.Get(), "Playing");
  EXPECT_EQ(Replay().TbarPlay.caption.Get(), "Playing");
  EXPECT_TRUE(Replay().TbarStp.enabled);
  EXPECT_EQ(Replay().CurrentRow, 7);
  world_.platform.timers.Advance(3999);
  EXPECT_EQ(Replay().CurrentRow, 7);
  world_.platform.timers.Advance(1);
  EXPECT_EQ(Replay().CurrentRow, 6);
  world_.platform.timers.Advance(8000);
  EXPECT_EQ(Replay().CurrentRow, 4);
  Press(Replay().TbarStp);
  EXPECT_FALSE(Replay().Playing);
  EXPECT_EQ(Replay().TbarPlay.picture.Get(), "");
  EXPECT_EQ(Replay().TbarPlay.caption.Get(), "Play");
  EXPECT_FALSE(Replay().TbarStp.enabled);
  world_.platform.timers.Advance(8000);
  EXPECT_EQ(Replay().CurrentRow, 4);
}

TEST_F(SessionReplayTest, ReplayGoesOnAtRowOneAndFollowsWhatComes) {
  OpenRows(2);
  Press(Replay().TbarPlay);
  world_.platform.timers.Advance(12'000);
  EXPECT_TRUE(Replay().Playing);
  EXPECT_EQ(Replay().CurrentRow, 1);
  AppendLine(Line(20, "system"));
  Tick();
  world_.platform.timers.Advance(4000);
  EXPECT_EQ(Replay().CurrentRow, 1);
  EXPECT_THAT(Tree(), HasSubstr(Root(20)));
}

TEST_F(SessionReplayTest, ClickOnAHeaderEndsTheReplay) {
  OpenRows(3);
  Press(Replay().TbarPlay);
  Grid().header_clicked.Raise(kColMonitor);
  EXPECT_FALSE(Replay().Playing);
}

// When nothing works.

TEST_F(SessionReplayTest, GridThatIsNotSortedByTimeEmptiesTheTreeAndMovesNothing) {
  OpenOn({Line(1, "system", kSession), Line(2, "system", "x", "N"), Line(3, "system")});
  Grid().header_clicked.Raise(kColHostname);
  for (widgets::MenuItem* key :
       {&Replay().TbarPlay, &Replay().TbarPrev, &Replay().TbarBack, &Replay().TbarStep, &Replay().TbarNxt}) {
    Replay().tvVCR.Fill("something");
    Press(*key);
    EXPECT_TRUE(Replay().tvVCR.empty()) << key->name();
    EXPECT_EQ(Replay().CurrentRow, 1) << key->name();
  }
  EXPECT_FALSE(Replay().Playing);
  Replay().tvVCR.Fill("something");
  Press(Replay().TbarNotable);
  EXPECT_EQ(Tree(), "  something\n");
  EXPECT_EQ(Replay().CurrentRow, 1);
}

TEST_F(SessionReplayTest, NothingMovesWhileALoadRuns) {
  OpenOn({Line(1, "system"), Line(2, "system", "x", "N"), Line(3, "system"), Line(4, "system")});
  Click(3);
  const std::string before = Tree();
  for (bool frmMain::*busy : {&frmMain::UpdateBusy, &frmMain::RefreshBusy}) {
    form_.get()->*busy = true;
    for (auto step :
         {&SessionReplay::StartReplay, &SessionReplay::PreviousSession, &SessionReplay::NextSession,
          &SessionReplay::StepBack, &SessionReplay::StepForward, &SessionReplay::GoToNotable})
      (Replay().*step)();
    Press(Replay().TbarStep);
    form_.get()->*busy = false;
  }
  EXPECT_EQ(Replay().CurrentRow, 3);
  EXPECT_EQ(Tree(), before);
  EXPECT_FALSE(Replay().Playing);
}

TEST_F(SessionReplayTest, KeysRestUnderAModalWindow) {
  OpenRows(3);
  form_->enabled = false;
  Press(Replay().TbarBack);
  EXPECT_EQ(Replay().CurrentRow, 1);
  form_->enabled = true;
}

TEST_F(SessionReplayTest, EverythingIsOffWhileAFilterIsShown) {
  OpenOn({Line(1, "system"), Line(2, "system", "x", "N"), Line(3, "system"), Line(4, "system")});
  Press(Replay().TbarPlay);
  Replay().SetUsable(false);
  for (widgets::MenuItem* key : {&Replay().TbarPlay, &Replay().TbarStp, &Replay().TbarPrev,
                                 &Replay().TbarBack, &Replay().TbarStep, &Replay().TbarNxt})
    EXPECT_FALSE(key->enabled) << key->name();
  EXPECT_FALSE(Replay().tvVCR.enabled);
  Click(3);
  Replay().StartReplay();
  Replay().GoToNotable();
  world_.platform.timers.Advance(8000);
  EXPECT_EQ(Replay().CurrentRow, 3);
  Replay().SetUsable(true);
  for (widgets::MenuItem* key :
       {&Replay().TbarPlay, &Replay().TbarPrev, &Replay().TbarBack, &Replay().TbarStep, &Replay().TbarNxt})
    EXPECT_TRUE(key->enabled) << key->name();
  EXPECT_FALSE(Replay().TbarStp.enabled);
  EXPECT_TRUE(Replay().tvVCR.enabled);
}

// With the rest of the window.

TEST_F(SessionReplayTest, CursorAndRelatedRowsStayOnTheirEventsWhenLinesCome) {
  OpenOn({Line(1, "system"), Line(2, "tcp port"), Line(3, "monitoring agent", "port", "N")});
  AppendLine(Line(4, "system"));
  AppendLine("no row");
  Tick();
  EXPECT_EQ(Replay().CurrentRow, 3) << "a line that gives no row counts as well";
  EXPECT_EQ(Replay().RelatedRow[3], 4);
  EXPECT_EQ(Replay().RelatedRow[0], 0);
  EXPECT_THAT(ColouredRows(), ElementsAre(2, 3));
}

TEST_F(SessionReplayTest, NotableEventThatCameToAHiddenWindowIsGoneToWhenItIsShown) {
  OpenOn({Line(1, "system"), Line(2, "system")});
  form_->visible = false;
  AppendLine(Line(3, "monitoring agent", "x", "N"));
  AppendLine(Line(4, "monitoring agent", "y"));
  Tick();
  form_->visible = true;
  Tick();
  EXPECT_EQ(Replay().CurrentRow, 2);
  EXPECT_THAT(Tree(), HasSubstr(Root(3)));
}

TEST_F(SessionReplayTest, RowsThatWentWithAnEarlierLoadAreLeftWithoutATrace) {
  OpenRows(9);
  Click(8);
  Put({Line(1, "system"), Line(2, "system")});
  Tick();
  ASSERT_EQ(Grid().DataRows(), 2);
  Press(Replay().TbarStep);
  EXPECT_THAT(ColouredRows(), IsEmpty());
  Click(2);
  EXPECT_EQ(Replay().CurrentRow, 2);
  EXPECT_THAT(ColouredRows(), ElementsAre(2));
}

// The cursor stood beyond the rows, and a replay logged an error at each of its steps.
TEST_F(SessionReplayTest, RowsThatAShrunkFileTookAwayHaveNoCursor) {
  OpenRows(20);
  Click(15);
  Press(Replay().TbarPlay);
  ASSERT_EQ(Replay().CurrentRow, 14);
  Put({Line(1, "tcp port"), Line(2, "tcp port"), Line(3, "tcp port"), Line(4, "tcp port")});
  Replay().RelatedRow[2] = 18;
  Replay().RelatedRow[3] = 4;
  Tick();
  ASSERT_EQ(Grid().DataRows(), 4);
  EXPECT_EQ(Replay().CurrentRow, 0);
  EXPECT_EQ(Replay().RelatedRow[2], 0);
  EXPECT_EQ(Replay().RelatedRow[3], 4);
  world_.platform.timers.Advance(3 * kTimer3Ms);
  EXPECT_TRUE(Replay().Playing);
  EXPECT_EQ(Replay().CurrentRow, 0);
  Press(Replay().TbarBack);
  EXPECT_EQ(Replay().CurrentRow, 1);
  EXPECT_THAT(ColouredRows(), ElementsAre(1));
}

TEST_F(SessionReplayTest, CursorThatIsStillAmongTheRowsOfAShrunkFileStaysOnItsRow) {
  OpenRows(20);
  Click(4);
  Put({Line(1, "tcp port"), Line(2, "tcp port"), Line(3, "tcp port"), Line(4, "tcp port")});
  Tick();
  ASSERT_EQ(Grid().DataRows(), 4);
  EXPECT_EQ(Replay().CurrentRow, 4);
  Press(Replay().TbarStep);
  EXPECT_EQ(Replay().CurrentRow, 3);
  EXPECT_THAT(ColouredRows(), ElementsAre(3));
}

class ManyMonitorsTest : public SessionReplayTest {
 protected:
  // System, Running Processes, Monitoring Agent and Tcp Port are four of them.
  void OpenWith(int monitors, int hidden = 0) {
    for (int i = 5; i <= monitors; ++i) reg_ini_.SaveSetwChk("Monitors", "Sensor " + std::to_string(i), "1");
    for (int i = 0; i < hidden; ++i) reg_ini_.SaveSetwChk("Monitors", "Hidden " + std::to_string(i), "0");
    reg_ini_.ReadRegInfo();
    OpenOn({Line(1, "system"), Line(2, "tcp port", "80"),
            Line(3, "sensor " + std::to_string(monitors), "its item")});
  }
};

TEST_F(ManyMonitorsTest, ThirtyOneHaveRoom) {
  OpenWith(31);
  EXPECT_EQ(Replay().CurrentRow, 1);
  EXPECT_EQ(Tree(), "- " + Root(3) + "\n  + Tcp Port[11]\n  + Sensor 31[30]\n");
}

TEST_F(ManyMonitorsTest, OneMoreIsOutOfBoundsWhichIsLoggedAndEndsTheCommand) {
  world_.quiet.Expect(Error("InitSessionCursor"));
  OpenWith(32);
  EXPECT_EQ(Replay().CurrentRow, 0);
  world_.quiet.Expect(Error("tvVCR1"));
  Click(2);
  EXPECT_EQ(Replay().CurrentRow, 2);
  EXPECT_EQ(Tree(), "- " + Root(2) + "\n  + Tcp Port[11]\n");
  world_.quiet.Expect(Error("tvVCR1"));
  Press(Replay().TbarStep);
  EXPECT_EQ(Tree(), "- " + Root(3) + "\n  + Tcp Port[11]\n  + Sensor 32[30]\n");
  world_.quiet.Expect(Error("StepBack"));
  Press(Replay().TbarBack);
  EXPECT_EQ(Replay().CurrentRow, 2);
}

TEST_F(ManyMonitorsTest, RelatedRowOfOneTooManyIsMarkedNowhere) {
  world_.quiet.Expect(Error("InitSessionCursor"));
  OpenWith(32);
  AppendLine(Line(4, "system", "saw 32", "N"));
  Tick();
  world_.quiet.Expect(Error("EventList_Click"));
  Click(1);
  EXPECT_THAT(Replay().RelatedRow, Each(0));
}

TEST_F(ManyMonitorsTest, MonitorThatIsNotShownNeedsNoRoomInTheTree) {
  world_.quiet.Expect(Error("InitSessionCursor"));
  OpenWith(31, 2);
  Click(1);
  EXPECT_EQ(Tree(), "- " + Root(3) + "\n  + Tcp Port[11]\n  + Sensor 31[30]\n");
}

}  // namespace
}  // namespace zendrix::admin
