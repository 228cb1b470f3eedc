#include "admin/grid_filter.h"

#include <array>

#include "core/date_calendar.h"
#include "frm_main_fixture.h"

namespace zendrix::admin {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using widgets::WindowState;

class GridFilterTest : public FrmMainFixture {
 protected:
  GridFilterTest() {
    screen_.beep.ConnectForever([this] { ++beeps_; });
  }
  // Opens the window on these lines, and the dialog.
  frmFilters& OpenDialog(const std::vector<std::string>& lines) {
    OpenOn(lines);
    form_->filter.TbarFilter.clicked.Raise();
    return Dialog();
  }
  frmFilters& Dialog() {
    frmFilters* const dialog = form_->filter.OpenDialog();
    EXPECT_NE(dialog, nullptr);
    return *dialog;
  }
  // Twelve lines, of which the first, fifth and ninth hold "even".
  static std::vector<std::string> Lines(int count = 12) {
    std::vector<std::string> lines;
    for (int i = 0; i < count; ++i)
      lines.push_back(Line(i, i % 2 == 0 ? "system" : "tcp port", i % 4 == 0 ? "even" : "odd"));
    return lines;
  }
  void FilterBy(const std::string& description) {
    Dialog().Desc.Edit(description);
    Dialog().Apply.clicked.Raise();
  }
  std::vector<std::string> Shown() const {
    std::vector<std::string> ids;
    const EventGrid& grid = form_->filter.FEvnList;
    for (int row = 1; row < grid.Rows(); ++row) ids.push_back(grid.Text(row, kColEventID));
    return ids;
  }
  std::string Count() const { return form_->RecCnt.text; }
  bool OnlyFiltered() const { return form_->filter.FEvnList.visible && !form_->EventList.visible; }
  bool OnlyAll() const { return !form_->filter.FEvnList.visible && form_->EventList.visible; }

  // Whenever messages are served.
  void AtEachTurn(std::function<void()> act) {
    act_ = std::move(act);
    PostAct();
  }
  void PostAct() {
    world_.platform.timers.Post([this] {
      PostAct();
      act_();
    });
  }

  int beeps_ = 0;
  std::function<void()> act_;
};

TEST_F(GridFilterTest, RowsThatPassTakeThePlaceOfTheGridInItsOrder) {
  OpenDialog(Lines());
  EXPECT_TRUE(OnlyAll());
  FilterBy("EVEN");
  EXPECT_TRUE(OnlyFiltered());
  EXPECT_THAT(Shown(), ElementsAre("9", "5", "1"));
  EXPECT_EQ(Count(), "3 records selected (Filtered)");
  EXPECT_EQ(Dialog().state.Get(), WindowState::kMinimised);
  EXPECT_EQ(form_->filter.FilterSelectedCount, 3);
  EXPECT_FALSE(form_->LoadRuns());
}

TEST_F(GridFilterTest, RowsHaveAllTheirCellsAndPictures) {
  OpenDialog(Lines());
  FilterBy("even");
  const EventGrid& all = form_->EventList;
  const EventGrid& shown = form_->filter.FEvnList;
  for (int col = 0; col < kGridColumns; ++col) {
    EXPECT_EQ(shown.Text(3, col), all.Text(12, col));
    EXPECT_EQ(shown.Picture(3, col), all.Picture(12, col));
  }
  EXPECT_EQ(shown.Picture(3, kColMonitor), 5);
  EXPECT_EQ(shown.Picture(3, kColChange), 1);
}

TEST_F(GridFilterTest, ApplyWithNoCriterionBeepsAndTheGridStays) {
  frmFilters& dialog = OpenDialog(Lines());
  dialog.Desc.Edit("x");
  FilterBy("");
  EXPECT_EQ(beeps_, 1);
  EXPECT_TRUE(OnlyAll());
  EXPECT_EQ(Count(), "12 records");
}

TEST_F(GridFilterTest, OnlyAToDateSelectsTheRowsOfExactlyThatMoment) {
  frmFilters& dialog = OpenDialog(Lines());
  dialog.ToDate.Pick(core::WallSeconds({1, 1, 1970, 0, 0, 7}));
  dialog.Apply.clicked.Raise();
  EXPECT_THAT(Shown(), ElementsAre("8"));
  EXPECT_EQ(dialog.FromDate.moment.Get(), 7);
}

TEST_F(GridFilterTest, FilterThatPassesNothingCountsNothing) {
  OpenDialog(Lines());
  FilterBy("nothing like it");
  EXPECT_TRUE(OnlyFiltered());
  EXPECT_THAT(Shown(), IsEmpty());
  EXPECT_EQ(Count(), " (Filtered)");
}

TEST_F(GridFilterTest, BracketInADescriptionIsAPatternAndNoLiteral) {
  OpenDialog({Line(1, "system", "list [ab] end"), Line(2, "system", "just a")});
  FilterBy("list [ab] end");
  EXPECT_THAT(Shown(), IsEmpty());
  FilterBy("t [[]ab]");
  EXPECT_THAT(Shown(), ElementsAre("1"));
  FilterBy("t [a-c]");
  EXPECT_THAT(Shown(), ElementsAre("2")) << "just a";
  FilterBy("[");
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(GridFilterTest, EachCriterionNarrowsTheGrid) {
  OpenOn({"1,alpha,system,A,x", "2,beta,system,R,x", "3,beta,tcp port,N,y"});
  form_->filter.MnTQuery.clicked.Raise();
  frmFilters& dialog = Dialog();
  dialog.HostCombo.OpenAndChoose("beta");
  dialog.Apply.clicked.Raise();
  EXPECT_THAT(Shown(), ElementsAre("3", "2"));
  dialog.MonitorCombo.OpenAndChoose("Tcp Port");
  dialog.Apply.clicked.Raise();
  EXPECT_THAT(Shown(), ElementsAre("3"));
  dialog.ChangeCombo.OpenAndChoose("R");
  dialog.Apply.clicked.Raise();
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(GridFilterTest, GridWithoutRowsKeepsItsCounter) {
  OpenDialog({});
  FilterBy("x");
  EXPECT_TRUE(OnlyFiltered());
  EXPECT_EQ(Count(), "0 records");
}

TEST_F(GridFilterTest, DataWithoutAFilterIsCountedWhole) {
  OpenOn(Lines());
  form_->RecCnt.text = std::string();
  form_->filter.FilterData(false);
  EXPECT_EQ(Count(), "12 records");
  OpenOn({Line(1, "system")});
  form_->filter.FilterData(false);
  EXPECT_EQ(Count(), "1 record");
}

TEST_F(GridFilterTest, HiddenRowsGetTheirHeightBackAndAreFiltered) {
  OpenDialog(Lines());
  form_->EventList.SetRowHeight(12, 0);
  FilterBy("even");
  EXPECT_EQ(form_->EventList.RowHeight(12), widgets::kDefaultHeight);
  EXPECT_THAT(Shown(), ElementsAre("9", "5", "1"));
}

TEST_F(GridFilterTest, ProgressIsShownAtEveryFiftiethRow) {
  OpenDialog(Lines(120));
  std::vector<std::string> texts;
  std::vector<int> progress;
  std::vector<bool> free;
  const auto link = form_->RecCnt.text.changed.Connect([&] { texts.push_back(Count()); });
  AtEachTurn([&] {
    progress.push_back(form_->DynamicPictureBox.value);
    free.push_back(form_->EventList.enabled || form_->filter.FEvnList.enabled || form_->EventList.redraw() ||
                   form_->filter.FEvnList.redraw() || screen_.MousePointer != widgets::kPointerHourglass ||
                   form_->Timer1->Running() || !form_->LoadRuns());
  });
  FilterBy("even");
  EXPECT_THAT(texts, ElementsAre("50 records : 12 selected", "100 records : 25 selected",
                                 "30 records selected (Filtered)"));
  EXPECT_THAT(progress, ElementsAre(41, 82));
  EXPECT_THAT(free, ElementsAre(false, false)) << "both grids are at work";
  EXPECT_EQ(form_->DynamicPictureBox.value.Get(), 0);
  EXPECT_TRUE(form_->EventList.enabled && form_->filter.FEvnList.enabled);
  EXPECT_TRUE(form_->EventList.redraw() && form_->filter.FEvnList.redraw());
  EXPECT_EQ(screen_.MousePointer, widgets::kPointerDefault);
  EXPECT_TRUE(form_->Timer1->Running());
}

TEST_F(GridFilterTest, NothingIsFilteredWhileALoadRuns) {
  OpenDialog(Lines());
  for (bool* busy : {&form_->UpdateBusy, &form_->RefreshBusy}) {
    *busy = true;
    FilterBy("even");
    form_->filter.MnTQuery.clicked.Raise();
    form_->filter.TbarFilter.clicked.Raise();
    EXPECT_TRUE(OnlyAll());
    EXPECT_TRUE(form_->filter.TbarFilter.checked);
    *busy = false;
  }
}

TEST_F(GridFilterTest, WithoutACriterionTheGridIsShownAgain) {
  OpenDialog(Lines());
  FilterBy("even");
  Dialog().ResetFilters();
  form_->filter.ApplyFilter();
  EXPECT_TRUE(OnlyAll());
}

TEST_F(GridFilterTest, CriteriaThatChangeMeanwhileHoldFromThereOn) {
  OpenDialog(Lines(120));
  bool once = true;
  AtEachTurn([&] {
    if (std::exchange(once, false)) Dialog().Desc.Edit("nothing");
  });
  FilterBy("even");
  EXPECT_EQ(form_->filter.FilterSelectedCount, 12);
}

TEST_F(GridFilterTest, DialogClosedMeanwhileEndsTheFilterAtOnce) {
  OpenDialog(Lines(500));
  int served = 0;
  AtEachTurn([&] {
    ++served;
    Dialog().Unload(widgets::UnloadCause::kCloseBox);
  });
  FilterBy("even");
  EXPECT_EQ(served, 1);
  EXPECT_TRUE(OnlyAll());
  EXPECT_EQ(Count(), "");
  EXPECT_FALSE(form_->LoadRuns());
  EXPECT_TRUE(form_->Timer1->Running());
  EXPECT_TRUE(form_->EventList.enabled);
  EXPECT_TRUE(form_->EventList.redraw());
}

TEST_F(GridFilterTest, FilterModeTakesWidthsHeadingsAndArrowAlongAndGivesWidthsBack) {
  OpenDialog(Lines());
  form_->EventList.SetColWidth(kColHostname, 800);
  form_->EventList.header_clicked.Raise(kColHostname);
  FilterBy("even");
  const EventGrid& shown = form_->filter.FEvnList;
  for (int col = 0; col < kGridColumns; ++col)
    EXPECT_EQ(shown.column(col), form_->EventList.column(col)) << col;
  EXPECT_EQ(shown.column(kColHostname).heading, "Host...");
  EXPECT_EQ(shown.column(kColHostname).arrow, widgets::SortArrow::kDown);
  form_->filter.FEvnList.SetColWidth(kColMonitor, 777);
  form_->filter.FEvnList.SetColWidth(kColWhole, 500);
  form_->filter.FEvnList.mouse_used.Raise();
  Dialog().ResetCommand.clicked.Raise();
  EXPECT_EQ(form_->EventList.column(kColMonitor).width, 777);
  EXPECT_EQ(form_->EventList.column(kColWhole).width, 0);
}

TEST_F(GridFilterTest, KeyboardGoesToTheGridThatComesOnShow) {
  OpenDialog(Lines());
  std::string asked;
  for (EventGrid* grid : {&form_->EventList, &form_->filter.FEvnList})
    grid->focus.ConnectForever([&asked, grid] { asked += grid->name() + " "; });
  FilterBy("even");
  Dialog().ResetCommand.clicked.Raise();
  EXPECT_EQ(asked, "FEvnList EventList ");
}

TEST_F(GridFilterTest, ScrolledColumnIsTakenAlong) {
  OpenDialog(Lines());
  form_->SavedLeftCol = 3;
  FilterBy("even");
  EXPECT_EQ(form_->filter.FEvnList.LeftCol.Get(), 3);
}

TEST_F(GridFilterTest, ToolsRestWhileAFilterIsShown) {
  OpenDialog(Lines());
  const auto usable = [this] {
    return std::array{form_->find.TbarFind.enabled.Get(), form_->replay.TbarPlay.enabled.Get(),
                      form_->replay.tvVCR.enabled.Get()};
  };
  EXPECT_THAT(usable(), Each(true));
  FilterBy("even");
  EXPECT_THAT(usable(), Each(false));
  FilterBy("odd");
  EXPECT_THAT(usable(), Each(false));
  Dialog().ResetCommand.clicked.Raise();
  EXPECT_THAT(usable(), Each(true));
}

TEST_F(GridFilterTest, RowsOfTheFilterGoWithIt) {
  OpenDialog(Lines());
  FilterBy("even");
  Dialog().ResetCommand.clicked.Raise();
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(GridFilterTest, ForgottenFilterShowsTheWholeGridAlsoWithoutADialog) {
  OpenOn(Lines());
  form_->filter.ChangeGrids();
  ASSERT_TRUE(OnlyFiltered());
  form_->filter.ResetFilterItems();
  EXPECT_TRUE(OnlyAll());
}

TEST_F(GridFilterTest, ButtonOpensTheDialogAndClosesItAgain) {
  using Shown = widgets::ScriptedFormHost::Shown;
  OpenOn(Lines());
  form_->filter.TbarFilter.clicked.Raise();
  EXPECT_TRUE(form_->filter.TbarFilter.checked);
  EXPECT_THAT(world_.host.shown, ElementsAre(Shown{"frmFilters", "", false, true, false}));
  EXPECT_TRUE(form_->enabled) << "the dialog stands beside the window";
  FilterBy("even");
  form_->filter.TbarFilter.clicked.Raise();
  EXPECT_FALSE(form_->filter.TbarFilter.checked);
  EXPECT_EQ(form_->filter.OpenDialog(), nullptr);
  EXPECT_EQ(Count(), "12 records");
  EXPECT_TRUE(OnlyAll());
}

TEST_F(GridFilterTest, MenuPressesTheButtonAndRestoresAMinimisedDialog) {
  OpenOn(Lines());
  form_->filter.MnTQuery.clicked.Raise();
  EXPECT_TRUE(form_->filter.TbarFilter.checked);
  frmFilters& first = Dialog();
  FilterBy("even");
  EXPECT_EQ(first.state.Get(), WindowState::kMinimised);
  int forward = 0;
  const auto front = first.bring_forward.Connect([&] { ++forward; });
  form_->filter.MnTQuery.clicked.Raise();
  EXPECT_EQ(&Dialog(), &first);
  EXPECT_EQ(first.state.Get(), WindowState::kNormal);
  EXPECT_EQ(forward, 1);
  EXPECT_TRUE(OnlyFiltered());
}

TEST_F(GridFilterTest, DialogClosedByItselfReleasesTheButtonAndEmptiesTheCounter) {
  OpenDialog(Lines());
  form_->EventList.header_clicked.Raise(kColHostname);
  FilterBy("even");
  Dialog().Unload(widgets::UnloadCause::kCloseBox);
  EXPECT_FALSE(form_->filter.TbarFilter.checked);
  EXPECT_EQ(Count(), "");
  EXPECT_EQ(form_->sort.SortColumn, 0);
  EXPECT_TRUE(OnlyAll());
}

TEST_F(GridFilterTest, NothingOpensUnderAnOpenBox) {
  OpenOn(Lines());
  form_->enabled = false;
  form_->filter.MnTQuery.clicked.Raise();
  form_->filter.TbarFilter.clicked.Raise();
  EXPECT_THAT(world_.host.shown, IsEmpty());
  EXPECT_FALSE(form_->filter.TbarFilter.checked);
}

TEST_F(GridFilterTest, NewRowsThatPassGoOnTopInTheirOrder) {
  OpenDialog(Lines());
  FilterBy("even");
  for (const char* text : {"even a", "odd", "even b"}) AppendLine(Line(99, "system", text));
  Tick();
  EXPECT_THAT(Shown(), ElementsAre("15", "13", "9", "5", "1"));
  EXPECT_EQ(Count(), "5 records selected (Filtered)");
  EXPECT_EQ(form_->EventList.DataRows(), 15);
}

TEST_F(GridFilterTest, NewRowsThatDoNotPassLeaveTheCounterWithoutANumber) {
  OpenDialog(Lines());
  FilterBy("nothing");
  AppendLine(Line(99, "system", "odd"));
  Tick();
  EXPECT_EQ(Count(), " (Filtered)");
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(GridFilterTest, NewRowsAreCountedAtEveryFiftieth) {
  OpenDialog(Lines(1));
  FilterBy("even");
  for (int i = 0; i < 110; ++i) AppendLine(Line(i, "system", "even"));
  std::vector<std::string> texts;
  const auto link = form_->RecCnt.text.changed.Connect([&] { texts.push_back(Count()); });
  Tick();
  EXPECT_THAT(texts,
              ElementsAre("51 records selected", "101 records selected", "111 records selected (Filtered)"));
}

TEST_F(GridFilterTest, NewRowsAreCountedAsEverWhereNoFilterIsShown) {
  OpenDialog(Lines());
  Dialog().Desc.Edit("even");
  AppendLine(Line(99, "system", "even"));
  Tick();
  EXPECT_EQ(Count(), "13 records");
  EXPECT_THAT(Shown(), IsEmpty());
}

// The rows that are offered are the first ones of the grid, and a standing sort has put others there.
TEST_F(GridFilterTest, SortedGridOffersTheRowsThatStandOnTop) {
  OpenDialog({"1,b,system,A,even", "2,z,system,A,even"});
  form_->EventList.header_clicked.Raise(kColHostname);
  FilterBy("even");
  EXPECT_THAT(Shown(), ElementsAre("2", "1"));
  AppendLine("3,a,system,A,even");
  Tick();
  EXPECT_THAT(Shown(), ElementsAre("2", "2", "1"));
}

TEST_F(GridFilterTest, SortOfTheFilteredGridIsThatOfTheWholeOneAfterwards) {
  OpenDialog({"1,b,system,A,even", "2,c,system,A,odd", "3,a,system,A,even"});
  FilterBy("even");
  form_->filter.FEvnList.header_clicked.Raise(kColHostname);
  EXPECT_THAT(Shown(), ElementsAre("1", "3"));
  EXPECT_EQ(form_->filter.FEvnList.column(kColHostname).arrow, widgets::SortArrow::kDown);
  EXPECT_THAT(IDs(), ElementsAre("3", "2", "1"));
  Dialog().ResetCommand.clicked.Raise();
  EXPECT_THAT(IDs(), ElementsAre("3", "1", "2")) << "each sort turns the direction";
  EXPECT_EQ(form_->EventList.column(kColHostname).arrow, widgets::SortArrow::kUp);
  EXPECT_EQ(form_->sort.SortColumn, kColHostname);
}

TEST_F(GridFilterTest, SortFromBeforeTheFilterIsNotRepeated) {
  OpenDialog({"1,b,system,A,even", "2,c,system,A,odd"});
  form_->EventList.header_clicked.Raise(kColHostname);
  FilterBy("even");
  Dialog().ResetCommand.clicked.Raise();
  EXPECT_THAT(IDs(), ElementsAre("2", "1"));
  EXPECT_EQ(form_->sort.SortColumn, 0);
}

TEST_F(GridFilterTest, RefreshLeavesFilterMode) {
  OpenDialog(Lines());
  FilterBy("even");
  form_->MnVRefresh.clicked.Raise();
  EXPECT_TRUE(OnlyAll());
  EXPECT_EQ(form_->filter.OpenDialog(), nullptr);
  EXPECT_FALSE(form_->filter.TbarFilter.checked);
  EXPECT_EQ(Count(), "12 records");
}

TEST_F(GridFilterTest, FileThatShrinksIsFilteredAnew) {
  OpenDialog(Lines());
  FilterBy("even");
  Put(Lines(3));
  Tick();
  EXPECT_TRUE(OnlyFiltered());
  EXPECT_THAT(Shown(), ElementsAre("1"));
  EXPECT_EQ(Count(), "1 records selected (Filtered)");
  AppendLine(Line(9, "system", "even"));
  Tick();
  EXPECT_THAT(Shown(), ElementsAre("4", "1"));
}

TEST_F(GridFilterTest, EndOfTheProgramClosesTheDialogAndSavesTheWidthsOfTheFilteredGrid) {
  OpenDialog(Lines());
  FilterBy("even");
  form_->filter.FEvnList.SetColWidth(kColHostname, 777);
  EXPECT_EQ(world_.EndOf([&] { form_->Unload(widgets::UnloadCause::kCode); }), 0);
  EXPECT_EQ(form_->filter.OpenDialog(), nullptr);
  std::vector<int> widths = form_->EventList.ColWidths();
  ASSERT_TRUE(reg_ini_.LoadColWidths("EventList", widths));
  EXPECT_EQ(widths[kColHostname], 777);
}

TEST_F(GridFilterTest, WindowThatGoesInFilterModeTakesTheDialogAlong) {
  OpenDialog(Lines());
  FilterBy("even");
  form_.reset();
  EXPECT_FALSE(world_.state.forms.IsFormLoaded("frmFilters"));
}

}  // namespace
}  // namespace zendrix::admin
