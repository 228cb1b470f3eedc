#include "admin/pane_layout.h"

#include <gmock/gmock.h>

namespace zendrix::admin {
namespace {

constexpr int kTop = 600;
constexpr PaneRoom kWindowRoom{15'000, 10'000, kTop, 9'600};
constexpr int kBar = 6'000;
constexpr int kThickness = 90;

TEST(PaneLayoutTest, GridsFillTheSpaceBetweenToolbarAndSplitterLessAGap) {
  const PanePlaces places = LayOutPanes(kWindowRoom, kBar, kThickness);
  EXPECT_EQ(places.grids.top, kTop);
  EXPECT_EQ(places.grids.top + places.grids.height, kBar - 40);
}

TEST(PaneLayoutTest, TreeStandsOnTheLeftUnderTheSplitterAndTheChartOnTheRight) {
  const PanePlaces places = LayOutPanes(kWindowRoom, kBar, kThickness);
  EXPECT_EQ(places.Pic1.left, places.grids.left);
  EXPECT_EQ(places.Pic1.top, kBar + kThickness);
  EXPECT_EQ(places.Chrt.top, kBar + kThickness);
  EXPECT_GT(places.Chrt.left, places.Pic1.left + places.Pic1.width);
  EXPECT_EQ(places.Chrt.left + places.Chrt.width, places.grids.left + places.grids.width);
  EXPECT_LE(places.Pic1.top + places.Pic1.height, kWindowRoom.bottom);
}

TEST(PaneLayoutTest, ChartsLabelHasItsLeftEdgeAndWidthAndStandsUnderIt) {
  const PanePlaces places = LayOutPanes(kWindowRoom, kBar, kThickness);
  EXPECT_EQ(places.chrtLabel.left, places.Chrt.left);
  EXPECT_EQ(places.chrtLabel.width, places.Chrt.width);
  EXPECT_EQ(places.chrtLabel.top, places.Chrt.top + places.Chrt.height);
  EXPECT_EQ(places.chrtLabel.top + places.chrtLabel.height, places.Pic1.top + places.Pic1.height);
}

TEST(PaneLayoutTest, TreeHasAMarginOfTwentyTwipsOnEachSide) {
  const PanePlaces places = LayOutPanes(kWindowRoom, kBar, kThickness);
  EXPECT_EQ(places.tvVCR.left, places.Pic1.left + 20);
  EXPECT_EQ(places.tvVCR.top, places.Pic1.top + 20);
  EXPECT_EQ(places.tvVCR.width, places.Pic1.width - 40);
  EXPECT_EQ(places.tvVCR.height, places.Pic1.height - 40);
}

TEST(PaneLayoutTest, NoComputedSizeIsBelowSevenHundredTwips) {
  const PanePlaces places = LayOutPanes({100, 100, 50, 60}, 60, kThickness);
  for (const PanePlace& place : {places.grids, places.Pic1, places.tvVCR, places.Chrt}) {
    EXPECT_EQ(place.width, 700);
    EXPECT_EQ(place.height, 700);
  }
  EXPECT_EQ(places.chrtLabel.width, 700);
  EXPECT_EQ(places.lblHDrag.width, 700);
}

TEST(PaneLayoutTest, SplitterStaysWhereItIsWhateverTheRoom) {
  for (const PaneRoom& room : {kWindowRoom, PaneRoom{9'000, 5'000, kTop, 4'600}}) {
    const PanePlaces places = LayOutPanes(room, kBar, kThickness);
    EXPECT_EQ(places.lblHDrag.top, kBar);
    EXPECT_EQ(places.lblHDrag.height, kThickness);
  }
}

TEST(PaneLayoutTest, SplitterFollowsThePointerFromWhereItIsHeld) {
  EXPECT_EQ(DraggedSplitterTop(6'000, 540, 12'000), 6'500);
  EXPECT_EQ(DraggedSplitterTop(6'000, -460, 12'000), 5'500);
}

TEST(PaneLayoutTest, SplitterDoesNotGoAboveThreeThousandTwips) {
  EXPECT_EQ(DraggedSplitterTop(6'000, 40 - 3'000, 12'000), 3'000);
  EXPECT_EQ(DraggedSplitterTop(6'000, 40 - 3'001, 12'000), 6'000);
}

TEST(PaneLayoutTest, SplitterLeavesTwelveHundredTwipsOfTheFormBelowIt) {
  EXPECT_EQ(DraggedSplitterTop(6'000, 40 + 4'800, 12'000), 10'800);
  EXPECT_EQ(DraggedSplitterTop(6'000, 40 + 4'801, 12'000), 6'000);
  EXPECT_EQ(LeastFormHeight(10'800), 12'000);
}

TEST(PaneLayoutTest, MoveOfSixTwipsIsNone) {
  for (const int way : {-1, 1}) {
    EXPECT_EQ(DraggedSplitterTop(6'000, 40 + way * 6, 12'000), 6'000);
    EXPECT_EQ(DraggedSplitterTop(6'000, 40 + way * 7, 12'000), 6'000 + way * 7);
  }
}

}  // namespace
}  // namespace zendrix::admin
