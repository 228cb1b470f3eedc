#include "widgets/scroll_bar.h"

#include <gtest/gtest.h>

namespace zendrix::widgets {
namespace {

TEST(ScrollBarTest, BeginsAtItsLowerEnd) {
  const ScrollBar bar("VScroll1", 1, 9);
  EXPECT_EQ(bar.value.Get(), 1);
  EXPECT_EQ(bar.minimum.Get(), 1);
  EXPECT_EQ(bar.maximum.Get(), 9);
}

TEST(ScrollBarTest, ScrollsNoFurtherThanItsEnds) {
  ScrollBar bar("VScroll1", 1, 9);
  bar.Scroll(5);
  EXPECT_EQ(bar.value.Get(), 5);
  bar.Scroll(10);
  EXPECT_EQ(bar.value.Get(), 9);
  bar.Scroll(0);
  EXPECT_EQ(bar.value.Get(), 1);
}

TEST(ScrollBarTest, EndThatPassesTheValueTakesItAlongAndTellsSo) {
  ScrollBar bar("VScroll1", 1, 9);
  bar.Scroll(7);
  int told = 0;
  const auto link = bar.value.changed.Connect([&] { ++told; });
  bar.maximum = 8;
  EXPECT_EQ(told, 0);
  bar.maximum = 4;
  EXPECT_EQ(bar.value.Get(), 4);
  EXPECT_EQ(told, 1);
  bar.Scroll(1);
  bar.minimum = 3;
  EXPECT_EQ(bar.value.Get(), 3);
}

TEST(ScrollBarTest, MaximumBelowTheMinimumCountsAsTheMinimum) {
  ScrollBar bar("VScroll1", 5, 9);
  bar.maximum = 2;
  EXPECT_EQ(bar.value.Get(), 5);
}

}  // namespace
}  // namespace zendrix::widgets
