#include "widgets/grid.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zendrix::widgets {
namespace {

using ::testing::ElementsAre;

class RowsOnly : public Grid {
 public:
  RowsOnly() : Grid("grid") {}
  int DataRows() const override { return rows; }
  std::string Text(int, int) const override { return {}; }
  int Picture(int, int) const override { return 0; }
  void Add() {
    ++rows;
    TellRowsAdded();
  }
  void Sort() { TellRowsSorted(); }
  int rows = 0;
};

class GridTest : public ::testing::Test {
 protected:
  GridTest() {
    grid_.rows_added.ConnectForever([this] { told_.push_back("rows"); });
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
  EXPECT_THAT(told_, ElementsAre("columns", "rows", "sorted"));
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

}  // namespace
}  // namespace zendrix::widgets
