#include "admin/grid_find.h"

#include "frm_main_fixture.h"

namespace zendrix::admin {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr widgets::Colour kGrey = 0xC0C0C0;

class GridFindTest : public FrmMainFixture {
 protected:
  using Script = widgets::ScriptedFormHost::Script;
  GridFindTest() {
    screen_.beep.ConnectForever([this] { ++beeps_; });
  }
  // Opens the dialog, does this in it, and closes it.
  void InDialog(const std::function<void(frmFind&)>& act) {
    world_.host.WhileOpen("frmFind", [&](widgets::Form& form) { act(dynamic_cast<frmFind&>(form)); });
    form_->find.MnEFind.clicked.Raise();
  }
  // Opens the window on these lines, without the mark of the replay, and the dialog for this text.
  void OpenFor(const std::string& text, const std::vector<std::string>& lines) {
    OpenOn(lines);
    if (!lines.empty()) form_->EventList.SetRowColor(1, 0);
    InDialog([&](frmFind& dialog) { dialog.txtFind.Edit(text); });
  }
  frmFind& Dialog() { return *form_->find.Dialog(); }
  // Where the cursor is after the next search.
  std::pair<int, int> Next() {
    form_->find.MnEFindN.clicked.Raise();
    return {form_->EventList.Row, form_->EventList.Col};
  }
  widgets::Colour ColourAt(int row, int col) const { return form_->EventList.CellColor(row, col); }

  int beeps_ = 0;
};

TEST_F(GridFindTest, DialogIsModalOverTheWindowAndStaysLoadedWhenClosed) {
  using Shown = widgets::ScriptedFormHost::Shown;
  OpenOn({Line(1, "system")});
  InDialog([&](frmFind& dialog) {
    EXPECT_FALSE(form_->enabled);
    EXPECT_EQ(dialog.title.Get(), "Find");
    EXPECT_EQ(dialog.FindRow, 1);
    EXPECT_EQ(dialog.FindCol, 1);
    EXPECT_EQ(dialog.FindPos, 1u);
    dialog.txtFind.Edit("kept");
    dialog.MatchC.checked = true;
    screen_.MousePointer = widgets::kPointerHourglass;
    EXPECT_FALSE(dialog.Unload(widgets::UnloadCause::kCloseBox));
    EXPECT_EQ(screen_.MousePointer, widgets::kPointerDefault);
  });
  EXPECT_TRUE(form_->enabled);
  EXPECT_THAT(world_.host.shown, ElementsAre(Shown{"frmFind", "frmMain", false, true, true}));
  frmFind* const first = form_->find.Dialog();
  ASSERT_NE(first, nullptr);
  EXPECT_FALSE(first->visible);
  world_.host.WhileOpen("frmFind", [&](widgets::Form& form) {
    EXPECT_EQ(&form, first);
    EXPECT_EQ(first->txtFind.text.Get(), "kept");
    EXPECT_TRUE(first->MatchC.checked);
  });
  form_->find.TbarFind.clicked.Raise();
}

TEST_F(GridFindTest, EmptyTextBeeps) {
  OpenOn({Line(1, "system")});
  InDialog([](frmFind& dialog) { dialog.Find.clicked.Raise(); });
  EXPECT_EQ(beeps_, 1);
  EXPECT_THAT(Boxes().shown, IsEmpty());
}

TEST_F(GridFindTest, HitTakesTheCursorAndIsGreyUntilTheNextSearch) {
  OpenFor("needle", {"1,needle,system,A,x", "2,h,system,A,x", "3,h,needle,A,x"});
  form_->EventList.SetCellColor(1, kColMonitor, 0x123456);
  EXPECT_EQ(Next(), (std::pair{1, int{kColMonitor}}));
  EXPECT_EQ(ColourAt(1, kColMonitor), kGrey);
  EXPECT_EQ(ColourAt(1, kColHostname), 0u);
  EXPECT_EQ(form_->EventList.TopRow.Get(), 1);
  EXPECT_EQ(Dialog().FindCellColor, 0x123456u);
  EXPECT_EQ(Dialog().FindPos, 12u);
  EXPECT_EQ(Next(), (std::pair{3, int{kColHostname}}));
  EXPECT_EQ(ColourAt(1, kColMonitor), 0x123456u);
  EXPECT_EQ(ColourAt(3, kColHostname), kGrey);
  EXPECT_EQ(form_->EventList.TopRow.Get(), 1) << "two rows above the hit";
}

TEST_F(GridFindTest, HitInTheHiddenDescriptionShowsTheCursorInTheDescriptionColumn) {
  OpenFor("needle", {Line(1, "system", "a needle")});
  EXPECT_EQ(Next(), (std::pair{1, int{kColDescription}}));
  EXPECT_EQ(Dialog().FindCol, kColDescription);
  EXPECT_EQ(ColourAt(1, kColDescription), kGrey);
  EXPECT_EQ(ColourAt(1, kColWhole), 0u);
}

TEST_F(GridFindTest, TextFoundTwiceInOneCellIsFoundTwice) {
  OpenFor("ab", {"1,abcab,system,A,x"});
  EXPECT_EQ(Next(), (std::pair{1, int{kColHostname}}));
  EXPECT_EQ(Dialog().FindPos, 3u);
  EXPECT_EQ(Next(), (std::pair{1, int{kColHostname}}));
  EXPECT_EQ(Dialog().FindPos, 6u);
  EXPECT_THAT(Boxes().shown, IsEmpty());
  Next();
  EXPECT_THAT(Boxes().Texts(), ElementsAre("\"ab\"  Not Found."));
}

TEST_F(GridFindTest, TextThatStandsTwiceInOneDescriptionIsFoundTwice) {
  OpenFor("ab", {Line(1, "system", "ab"), Line(2, "system", "xab ab")});
  EXPECT_EQ(Next(), (std::pair{1, int{kColDescription}}));
  EXPECT_EQ(Dialog().FindPos, 4u);
  EXPECT_EQ(Next(), (std::pair{1, int{kColDescription}}));
  EXPECT_EQ(Dialog().FindPos, 7u);
  EXPECT_EQ(ColourAt(1, kColDescription), kGrey);
  EXPECT_EQ(Next(), (std::pair{2, int{kColDescription}}));
  EXPECT_EQ(ColourAt(1, kColDescription), 0u);
}

TEST_F(GridFindTest, MissIsToldAndTheNextSearchBeginsAnew) {
  OpenFor("needle", {Line(1, "system", "needle")});
  Next();
  form_->EventList.Row = 0;
  Next();
  ASSERT_EQ(Boxes().shown.size(), 1u);
  EXPECT_EQ(Boxes().shown[0].text, "\"needle\"  Not Found.");
  EXPECT_EQ(Boxes().shown[0].icon, platform::BoxIcon::kExclamation);
  EXPECT_EQ(Boxes().shown[0].title, "Korvessa Zendrix Administrator");
  EXPECT_EQ(ColourAt(1, kColDescription), 0u);
  EXPECT_EQ(Dialog().FindRow, 1);
  EXPECT_EQ(Dialog().FindCol, 1);
  EXPECT_EQ(Dialog().FindPos, 1u);
  EXPECT_EQ(screen_.MousePointer, widgets::kPointerDefault);
  EXPECT_EQ(Next(), (std::pair{1, int{kColDescription}}));
}

TEST_F(GridFindTest, CaseCountsWhenItIsTicked) {
  OpenFor("Needle", {Line(1, "system", "Needle"), Line(2, "system", "NEEDLE")});
  Dialog().MatchC.checked = true;
  EXPECT_EQ(Next(), (std::pair{2, int{kColDescription}}));
  Dialog().MatchC.checked = false;
  Dialog().StartFB.checked = true;
  EXPECT_EQ(Next(), (std::pair{1, int{kColDescription}}));
}

TEST_F(GridFindTest, StartFromBeginningHoldsForOneSearch) {
  OpenFor("x", {Line(1, "system", "x"), Line(2, "system", "x"), Line(3, "system", "x")});
  Next();
  EXPECT_EQ(Next().first, 2);
  Dialog().StartFB.checked = true;
  EXPECT_EQ(Next().first, 1);
  EXPECT_FALSE(Dialog().StartFB.checked);
  EXPECT_EQ(Next().first, 2);
}

TEST_F(GridFindTest, EventNumbersAreNotSearched) {
  OpenFor("7", {"a,h,system,A,x", "a,h,system,A,x", "a,h,system,A,x", "a,h,system,A,x", "a,h,system,A,x",
                "a,h,system,A,x", "a,h,system,A,x"});
  Next();
  EXPECT_THAT(Boxes().Texts(), ElementsAre("\"7\"  Not Found."));
}

TEST_F(GridFindTest, FindNextBeepsBeforeTheDialogWasEverOpened) {
  OpenOn({Line(1, "system")});
  form_->find.MnEFindN.clicked.Raise();
  EXPECT_EQ(beeps_, 1);
  EXPECT_EQ(form_->find.Dialog(), nullptr);
}

TEST_F(GridFindTest, FindCannotBeOpenedWhileTheFilteredGridIsShown) {
  OpenFor("x", {Line(1, "system", "x")});
  form_->filter.MnTQuery.clicked.Raise();
  form_->filter.OpenDialog()->Desc.Edit("x");
  form_->filter.OpenDialog()->Apply.clicked.Raise();
  world_.host.shown.clear();
  form_->find.MnEFind.clicked.Raise();
  form_->find.TbarFind.clicked.Raise();
  Next();
  EXPECT_THAT(world_.host.shown, IsEmpty());
  EXPECT_EQ(Dialog().FindPos, 1u);
  EXPECT_EQ(beeps_, 0);
}

TEST_F(GridFindTest, NothingIsSearchedWhileALoadRunsOrABoxIsOpen) {
  OpenFor("x", {Line(1, "system", "x")});
  world_.host.shown.clear();
  for (bool* busy : {&form_->UpdateBusy, &form_->RefreshBusy}) {
    *busy = true;
    form_->find.MnEFind.clicked.Raise();
    Next();
    *busy = false;
  }
  form_->enabled = false;
  form_->find.MnEFind.clicked.Raise();
  Next();
  EXPECT_THAT(world_.host.shown, IsEmpty());
  EXPECT_EQ(Dialog().FindPos, 1u);
}

TEST_F(GridFindTest, LinesThatComeMoveTheNextSearchAlong) {
  OpenFor("x", {Line(1, "system", "x"), Line(2, "system", "x"), Line(3, "system", "x")});
  Next();
  EXPECT_EQ(Next().first, 2);
  AppendLine(Line(4, "system", "x"));
  AppendLine("no row");
  Tick();
  EXPECT_EQ(Dialog().FindRow, 4) << "every line counts, also one without a row";
  EXPECT_EQ(Next().first, 4);
}

TEST_F(GridFindTest, LineThatComesLeavesASearchInTheFirstRowThere) {
  OpenFor("x", {Line(1, "system", "x")});
  Next();
  AppendLine(Line(2, "system", "x"));
  Tick();
  EXPECT_EQ(Dialog().FindRow, 1);
}

TEST_F(GridFindTest, RowsThatHaveGoneAreNoMatter) {
  OpenFor("x", {Line(1, "system", "x"), Line(2, "system", "x"), Line(3, "system", "x")});
  for (int hits = 0; hits < 3; ++hits) Next();
  EXPECT_EQ(Dialog().FindRow, 3);
  Put({Line(1, "system", "x")});
  Tick();
  Next();
  EXPECT_THAT(Boxes().Texts(), ElementsAre("\"x\"  Not Found."));
  EXPECT_EQ(Next(), (std::pair{1, int{kColDescription}}));
}

TEST_F(GridFindTest, EmptyGridHasNoHit) {
  OpenFor("x", {});
  Next();
  EXPECT_THAT(Boxes().Texts(), ElementsAre("\"x\"  Not Found."));
}

TEST_F(GridFindTest, TopOfTheViewIsTwoRowsAboveTheHit) {
  std::vector<std::string> lines;
  for (int i = 0; i < 9; ++i) lines.push_back(Line(i, "system", i < 4 ? "x" : "q"));
  OpenFor("x", lines);
  EXPECT_EQ(Next().first, 6);
  EXPECT_EQ(form_->EventList.TopRow.Get(), 4);
  Dialog().txtFind.Edit("q");
  Dialog().StartFB.checked = true;
  Next();
  EXPECT_EQ(form_->EventList.TopRow.Get(), 1);
  Next();
  EXPECT_EQ(form_->EventList.TopRow.Get(), 2);
  Next();
  EXPECT_EQ(form_->EventList.TopRow.Get(), 1);
}

// Only a place of 2 or more, in either direction, counts as one of a hit.
TEST_F(GridFindTest, HitInTheFirstCellOfAllStaysGrey) {
  OpenFor("needle", {"x,needle,system,A,x", "needle,h,system,A,x", "needle,needle,system,A,x"});
  EXPECT_EQ(Next(), (std::pair{1, int{kColDateTime}}));
  EXPECT_EQ(Next(), (std::pair{1, int{kColHostname}}));
  EXPECT_EQ(ColourAt(1, kColDateTime), kGrey);
  EXPECT_EQ(Next(), (std::pair{2, int{kColDateTime}}));
  EXPECT_EQ(ColourAt(1, kColHostname), 0u);
  EXPECT_EQ(Next(), (std::pair{3, int{kColHostname}}));
  EXPECT_EQ(ColourAt(2, kColDateTime), 0u);
}

TEST_F(GridFindTest, MarkOfTheLastHitGoesOnDemand) {
  OpenFor("x", {Line(1, "system", "x"), Line(2, "system", "x")});
  form_->find.ResetCellColor();
  EXPECT_EQ(form_->EventList.Row.Get(), 0) << "there was no search yet";
  Next();
  Next();
  form_->EventList.Row = 1;
  form_->find.ResetCellColor();
  EXPECT_EQ(ColourAt(2, kColDescription), 0u);
  EXPECT_EQ(form_->EventList.Row.Get(), 2);
  EXPECT_EQ(form_->EventList.Col.Get(), kColDescription);
}

TEST_F(GridFindTest, EndOfTheProgramUnloadsIt) {
  OpenFor("x", {Line(1, "system", "x")});
  EXPECT_EQ(world_.EndOf([&] { form_->Unload(widgets::UnloadCause::kCode); }), 0);
  EXPECT_EQ(form_->find.Dialog(), nullptr);
}

// Taking the mark off leads the cursor to the cell that was found, and every click jumped back there.
TEST_F(GridFindTest, ClickBehindASearchLeavesTheCursorWhereItWasClicked) {
  OpenFor("found", {Line(1, "system", "found"), Line(2, "system"), Line(3, "system")});
  EXPECT_EQ(Next(), std::make_pair(3, static_cast<int>(kColDescription)));
  form_->EventList.Select(2, 3, 2, 3);
  form_->EventList.row_clicked.Raise(2);
  EXPECT_EQ(form_->EventList.Row.Get(), 2);
  EXPECT_EQ(form_->EventList.Col.Get(), 3);
  EXPECT_EQ(ColourAt(3, kColDescription), 0U);
}

TEST_F(GridFindTest, NothingIsSearchedWhileALoadRuns) {
  OpenFor("found", {Line(1, "system", "found"), Line(2, "system")});
  form_->EventList.Select(1, 3, 1, 3);
  form_->UpdateBusy = true;
  Dialog().Find.clicked.Raise();
  EXPECT_EQ(form_->EventList.Row.Get(), 1);
  EXPECT_EQ(Dialog().FindRow, 1);
}

TEST_F(GridFindTest, TextHasAThousandCharactersAtMost) {
  OpenFor(std::string(1001, 'x'), {Line(1, "system")});
  EXPECT_EQ(Dialog().txtFind.text.Get(), std::string(1000, 'x'));
}

}  // namespace
}  // namespace zendrix::admin
