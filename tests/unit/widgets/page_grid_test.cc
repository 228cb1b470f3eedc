#include "widgets/page_grid.h"

#include <gtest/gtest.h>

#include <memory>

namespace zendrix::widgets {
namespace {

std::string Place(int row, int col) {
  return std::to_string(row) + "," + std::to_string(col);
}

TEST(PageGridTest, BlankGridHasItsSizeAndNoTexts) {
  PageGrid grid("ErrLog");
  EXPECT_EQ(grid.Rows(), 1);
  grid.Show(20, 100);
  EXPECT_TRUE(grid.blank());
  EXPECT_EQ(grid.Cols(), 20);
  EXPECT_EQ(grid.Rows(), 100);
  EXPECT_EQ(grid.Text(99, 19), "");
}

TEST(PageGridTest, PageIsReplacedAtOnceAndBeginsAtItsTop) {
  PageGrid grid("ErrLog");
  grid.TopRow = 7;
  int told = 0;
  const auto link = grid.page_changed.Connect([&] {
    ++told;
    EXPECT_EQ(grid.Text(2, 3), "2,3");
    EXPECT_EQ(grid.Cols(), 4);
    EXPECT_EQ(grid.Rows(), 3);
    EXPECT_EQ(grid.TopRow.Get(), 1);
  });
  grid.Show(4, 3, Place);
  EXPECT_EQ(told, 1);
  EXPECT_FALSE(grid.blank());
}

TEST(PageGridTest, WhatThePageWasReadFromIsLetGoWithIt) {
  PageGrid grid("ErrLog");
  auto table = std::make_shared<int>(0);
  grid.Show(1, 2, [table](int, int) { return std::string("x"); });
  EXPECT_EQ(table.use_count(), 2);
  grid.Show(1, 2);
  EXPECT_EQ(table.use_count(), 1);
}

TEST(PageGridTest, WidthsAndHeadingsStayWithTheirPlaces) {
  PageGrid grid("ErrLog");
  int told = 0;
  const auto link = grid.columns_changed.Connect([&] { ++told; });
  grid.SetColWidth(1, 8000);
  grid.SetColWidth(1, 8000);
  EXPECT_EQ(told, 1);
  grid.CentreHeading(0);
  EXPECT_EQ(told, 2);
  grid.Show(2, 2, Place);
  EXPECT_EQ(grid.ColWidth(0), PageGrid::kDefaultColWidth);
  EXPECT_EQ(grid.ColWidth(1), 8000);
  EXPECT_TRUE(grid.HeadingCentred(0));
  EXPECT_FALSE(grid.HeadingCentred(1));
  grid.ResetColWidths();
  EXPECT_EQ(told, 3);
  EXPECT_EQ(grid.ColWidth(1), PageGrid::kDefaultColWidth);
  EXPECT_TRUE(grid.HeadingCentred(0));
}

}  // namespace
}  // namespace zendrix::widgets
