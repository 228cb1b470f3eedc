#include "widgets/grid.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zendrix::widgets {
namespace {

using ::testing::ElementsAre;

class RowsOnly : public Grid {
 public:
  RowsOnly() : Grid("grid") {}
  int DataRows() const override { return rows; }
  std::string Text(int, int) const override { return {}; }
  int Picture(int, int) const override { return 0; }
  void Add(int place = 1, int count = 1) {
    rows += count;
    TellRowsInserted(place, count);
  }
  void Clear() {
    rows = 0;
    TellCleared();
  }
  void Sort() { TellRowsSorted(); }
  int rows = 0;
};

class GridTest : public ::testing::Test {
 protected:
  GridTest() {
    grid_.rows_inserted.ConnectForever([this](int place, int count) {
      told_.push_back("rows " + std::to_string(place) + " " + std::to_string(count));
    });
    grid_.rows_changed.ConnectForever([this] { told_.push_back("changed"); });
    grid_.looks_changed.ConnectForever([this] { told_.push_back("looks"); });
    grid_.cleared.ConnectForever([this] { told_.push_back("cleared"); });
    grid_.rows_sorted.ConnectForever([this] { told_.push_back("sorted"); });
    grid_.columns_changed.ConnectForever([this] { told_.push_back("columns"); });
  }
  RowsOnly grid_;
  std::vector<std::string> told_;
};

TEST_F(GridTest, FormatStringGivesHeadingsAndAlignments) {
  grid_.SetFormatString(">EventID |<Date/Time | |<Description");
  ASSERT_EQ(grid_.Cols(), 4);
  EXPECT_EQ(grid_.column(0).heading, "EventID");
  EXPECT_EQ(grid_.column(0).align, Align::kRight);
  EXPECT_EQ(grid_.column(1).heading, "Date/Time");
  EXPECT_EQ(grid_.column(1).align, Align::kLeft);
  EXPECT_EQ(grid_.column(2).heading, "");
  EXPECT_EQ(grid_.column(3).heading, "Description");
}

TEST_F(GridTest, EveryHeadingHasItsOwnAlignmentAndLosesItsBlanks) {
  grid_.SetFormatString("<  a b |>c|> d");
  for (const int col : {0, 1, 2}) {
    EXPECT_EQ(grid_.column(col).align, col == 0 ? Align::kLeft : Align::kRight) << col;
    EXPECT_EQ(grid_.column(col).heading,
              (std::vector<std::string>{"a b", "c", "d"})[static_cast<std::size_t>(col)]);
  }
}

TEST_F(GridTest, NewFormatStringKeepsWidths) {
  grid_.SetFormatString("a|b");
  grid_.SetColWidth(1, 77);
  grid_.SetFormatString("c|d|e");
  EXPECT_THAT(grid_.ColWidths(), ElementsAre(960, 77, 960));
}

TEST_F(GridTest, RowsCountTheHeader) {
  EXPECT_EQ(grid_.Rows(), 1);
  grid_.Add();
  EXPECT_EQ(grid_.Rows(), 2);
}

TEST_F(GridTest, NothingIsToldWhileRedrawIsOff) {
  grid_.SetRedraw(false);
  grid_.SetFormatString("a");
  grid_.Add();
  grid_.Add();
  grid_.Sort();
  EXPECT_THAT(told_, ElementsAre());
  grid_.SetRedraw(true);
  EXPECT_THAT(told_, ElementsAre("columns", "rows 1 2", "sorted"));
  grid_.SetRedraw(true);
  EXPECT_EQ(told_.size(), 3u);
}

TEST_F(GridTest, WidthThatStaysIsNotTold) {
  grid_.SetFormatString("a");
  told_.clear();
  grid_.SetColWidth(0, 960);
  EXPECT_THAT(told_, ElementsAre());
}

TEST_F(GridTest, ChangedWidthIsTold) {
  grid_.SetFormatString("a|b");
  told_.clear();
  grid_.SetColWidth(1, 0);
  EXPECT_THAT(told_, ElementsAre("columns"));
  EXPECT_THAT(grid_.ColWidths(), ElementsAre(960, 0));
}

TEST_F(GridTest, FormatStringThatIsThereAlreadyIsNotTold) {
  grid_.SetFormatString(">a|<b");
  told_.clear();
  grid_.SetFormatString(">a|<b");
  EXPECT_THAT(told_, ElementsAre());
}

TEST_F(GridTest, HeadingIsToldWhenItsTextOrItsAlignmentChanges) {
  grid_.SetFormatString("a|b");
  told_.clear();
  grid_.SetHeading(1, "c", Align::kLeft);
  EXPECT_EQ(told_.size(), 1u);
  grid_.SetHeading(1, "c", Align::kRight);
  EXPECT_EQ(told_.size(), 2u);
  grid_.SetHeading(1, "c", Align::kRight);
  EXPECT_EQ(told_.size(), 2u);
  EXPECT_EQ(grid_.column(1).heading, "c");
  EXPECT_EQ(grid_.column(1).align, Align::kRight);
  EXPECT_EQ(grid_.column(0).heading, "a");
}

TEST_F(GridTest, ArrowIsToldWhenItChanges) {
  grid_.SetFormatString("a|b");
  told_.clear();
  grid_.SetArrow(0, SortArrow::kNone);
  EXPECT_THAT(told_, ElementsAre());
  grid_.SetArrow(0, SortArrow::kUp);
  EXPECT_THAT(told_, ElementsAre("columns"));
  EXPECT_EQ(grid_.column(0).arrow, SortArrow::kUp);
  EXPECT_EQ(grid_.column(1).arrow, SortArrow::kNone);
}

TEST_F(GridTest, RowsInsertedAnywhereAreToldWithPlaceAndCount) {
  grid_.Add(1, 4);
  grid_.Add(3);
  EXPECT_THAT(told_, ElementsAre("rows 1 4", "rows 3 1"));
}

TEST_F(GridTest, PauseInsideAPauseEndsWithTheOuterOne) {
  grid_.SetRedraw(false);
  {
    const PaintingPause inner(grid_);
    grid_.Add();
  }
  EXPECT_FALSE(grid_.redraw());
  EXPECT_THAT(told_, ElementsAre());
  grid_.SetRedraw(true);
  EXPECT_TRUE(grid_.redraw());
  EXPECT_THAT(told_, ElementsAre("rows 1 1"));
  grid_.SetRedraw(true);  // one too many
  grid_.SetRedraw(false);
  EXPECT_FALSE(grid_.redraw());
}

TEST_F(GridTest, OneRunOfInsertedRowsIsToldAsOne) {
  grid_.Add(1, 2);
  told_.clear();
  grid_.SetRedraw(false);
  for (const int place : {2, 3, 2, 5}) grid_.Add(place);
  grid_.SetRedraw(true);
  EXPECT_THAT(told_, ElementsAre("rows 2 4"));
}

TEST_F(GridTest, RunsInSeveralPlacesAreToldAsAChangeOfAll) {
  for (const int second : {1, 4}) {
    grid_.Add(1, 2);
    told_.clear();
    grid_.SetRedraw(false);
    grid_.Add(2);
    grid_.Add(second);
    grid_.SetRedraw(true);
    EXPECT_THAT(told_, ElementsAre("changed"));
    grid_.Clear();
  }
}

TEST_F(GridTest, ViewFindsTheRowsItKnowsWhilePaintingIsPaused) {
  grid_.Add(1, 3);
  grid_.SetRedraw(false);
  EXPECT_EQ(grid_.RowOfKnown(2), 2);
  grid_.Add(2, 5);
  EXPECT_EQ(grid_.RowOfKnown(1), 1);
  EXPECT_EQ(grid_.RowOfKnown(2), 7);
  EXPECT_EQ(grid_.RowOfKnown(3), 8);
  grid_.SetRedraw(true);
  EXPECT_EQ(grid_.RowOfKnown(2), 2);
}

TEST_F(GridTest, ClearedGridHasNothingElseToTell) {
  grid_.SetRedraw(false);
  grid_.Add();
  grid_.Sort();
  grid_.SetRowColor(1, 5);
  grid_.Clear();
  EXPECT_THAT(told_, ElementsAre("cleared"));
  grid_.SetRedraw(true);
  EXPECT_THAT(told_, ElementsAre("cleared"));
  EXPECT_EQ(grid_.CellColor(1, 0), 0u);
}

TEST_F(GridTest, ColourOfARowIsThatOfAllItsCells) {
  grid_.Add(1, 2);
  told_.clear();
  grid_.SetCellColor(1, 3, 7);
  EXPECT_EQ(grid_.CellColor(1, 3), 7u);
  EXPECT_EQ(grid_.CellColor(1, 2), 0u);
  grid_.SetRowColor(1, 9);
  EXPECT_EQ(grid_.CellColor(1, 3), 9u);
  EXPECT_EQ(grid_.CellColor(2, 3), 0u);
  grid_.SetCellColor(1, 3, 0);
  EXPECT_EQ(grid_.CellColor(1, 3), 0u);
  EXPECT_EQ(grid_.CellColor(1, 2), 9u);
  grid_.SetCellColor(1, 3, 9);
  grid_.SetRowColor(1, 0);
  EXPECT_EQ(grid_.CellColor(1, 2), 0u);
  EXPECT_EQ(told_.size(), 5u);
}

TEST_F(GridTest, LookThatStaysIsNotTold) {
  grid_.Add();
  grid_.SetRowColor(1, 9);
  grid_.SetRowHeight(1, 300);
  told_.clear();
  grid_.SetRowColor(1, 9);
  grid_.SetCellColor(1, 0, 9);
  grid_.SetRowHeight(1, 300);
  EXPECT_THAT(told_, ElementsAre());
  grid_.SetRowColor(1, 0);
  grid_.SetRowColor(1, 0);
  grid_.SetCellColor(1, 0, 0);
  EXPECT_THAT(told_, ElementsAre("looks"));
}

TEST_F(GridTest, HeightsOfTheirOwnAreCountedUntilTheLastIsGone) {
  grid_.Add(1, 2);
  EXPECT_EQ(grid_.RowHeight(1), kDefaultHeight);
  grid_.SetRowHeight(2, 0);
  EXPECT_TRUE(grid_.has_heights());
  EXPECT_EQ(grid_.RowHeight(2), 0);
  EXPECT_EQ(grid_.RowHeight(1), kDefaultHeight);
  grid_.SetRowHeight(2, kDefaultHeight);
  EXPECT_FALSE(grid_.has_heights());
}

TEST_F(GridTest, LooksAreToldAtTheEndOfAPause) {
  grid_.Add();
  told_.clear();
  grid_.SetRedraw(false);
  grid_.SetRowColor(1, 9);
  EXPECT_THAT(told_, ElementsAre());
  grid_.SetRedraw(true);
  EXPECT_THAT(told_, ElementsAre("looks"));
}

TEST_F(GridTest, CursorThatMovesEndsTheSelectionAtItsCell) {
  grid_.Select(5, 1, 7, 8);
  EXPECT_FALSE(grid_.OneCellSelected());
  EXPECT_EQ(grid_.RowSel.Get(), 7);
  EXPECT_EQ(grid_.ColSel.Get(), 8);
  grid_.Row = 6;
  EXPECT_TRUE(grid_.OneCellSelected());
  EXPECT_EQ(grid_.RowSel.Get(), 6);
  EXPECT_EQ(grid_.ColSel.Get(), 1);
  grid_.Select(6, 1, 2, 1);
  EXPECT_FALSE(grid_.OneCellSelected());
  grid_.Col = 3;
  EXPECT_TRUE(grid_.OneCellSelected());
}

// A view takes the cursor along with the rows that come above it; a sort put it on row 1.
TEST_F(GridTest, SortInAPauseKeepsTheCursorWhereItPutItThoughRowsHaveCome) {
  grid_.rows = 5;
  grid_.Select(4, 1, 5, 2);
  grid_.rows_inserted.ConnectForever([this](int, int count) { grid_.Row = 1 + count; });
  {
    const PaintingPause pause(grid_);
    grid_.Add(1, 3);
    grid_.Sort();
    grid_.Select(1, 1, 1, 1);
  }
  EXPECT_EQ(grid_.Row.Get(), 1);
  EXPECT_TRUE(grid_.OneCellSelected());
  const PaintingPause pause(grid_);
}

}  // namespace
}  // namespace zendrix::widgets
