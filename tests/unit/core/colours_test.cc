#include "core/colours.h"

namespace zendrix::core {
namespace {

using ::testing::ElementsAre;

TEST(GradientColors, BeginsWithFromAndStopsOneStepBeforeTo) {
  EXPECT_THAT(GradientColors(4, 0x000000, 0x0000C8), ElementsAre(0, 50, 100, 150));
}

TEST(GradientColors, StepsEachPartByItself) {
  EXPECT_THAT(GradientColors(2, 0x640000, 0x006400), ElementsAre(0x640000, 0x323200));
}

TEST(GradientColors, RoundsAfterEachStepWithTiesToEven) {
  // 1.5 per step: 3 -> 1.5 -> 2 -> 0.5 -> 0.
  EXPECT_THAT(GradientColors(2, 3, 0), ElementsAre(3, 2));
  EXPECT_THAT(GradientColors(4, 6, 0), ElementsAre(6, 4, 2, 0));
}

TEST(GradientColors, PartThatMovesByLessThanAHalfStaysWhereItIs) {
  EXPECT_THAT(GradientColors(5, 2, 0), ElementsAre(2, 2, 2, 2, 2));
}

TEST(GradientColors, PartNeverLeavesItsByte) {
  EXPECT_THAT(GradientColors(5, 3, 0), ElementsAre(3, 2, 1, 0, 0));
  EXPECT_THAT(GradientColors(5, 0xFC, 0xFF), ElementsAre(0xFC, 0xFD, 0xFE, 0xFF, 0xFF));
}

TEST(GradientColors, NoStepsGiveNoColours) {
  EXPECT_THAT(GradientColors(0, 1, 2), ElementsAre());
}

TEST(PaintGradient, Has256LinesOnAScaleOf1By256) {
  const GradientLines lines = PaintGradient(0xFF, 0xFF00FF);
  EXPECT_EQ(lines.scale_width, 1);
  EXPECT_EQ(lines.scale_height, 256);
  ASSERT_EQ(lines.colours.size(), 256U);
  EXPECT_EQ(lines.colours.front(), 0xFF);
  EXPECT_EQ(lines.colours[100], 0x6400FF);
}

}  // namespace
}  // namespace zendrix::core
