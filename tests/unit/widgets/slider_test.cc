#include "widgets/slider.h"

#include <gtest/gtest.h>

#include <limits>

namespace zendrix::widgets {
namespace {

TEST(SliderTest, NumberIsCutToAnInteger) {
  Slider slider("eSbSensitivity", 100, 1000, 5, 50);
  slider.Put(114.9);
  EXPECT_EQ(slider.value.Get(), 114);
  EXPECT_EQ(slider.small_step(), 5);
  EXPECT_EQ(slider.large_step(), 50);
}

// A settings file may hold any number; one beyond the range of integers has no integer to be cut to.
TEST(SliderTest, NumberOutsideStandsAtTheEndThatItLiesBehind) {
  Slider slider("eSbRiskLevel", 0, 100);
  slider.Put(1e30);
  EXPECT_EQ(slider.value.Get(), 100);
  slider.Put(-1e30);
  EXPECT_EQ(slider.value.Get(), 0);
  slider.Put(100.5);
  EXPECT_EQ(slider.value.Get(), 100);
  slider.Put(std::numeric_limits<double>::quiet_NaN());
  EXPECT_EQ(slider.value.Get(), 0);
}

}  // namespace
}  // namespace zendrix::widgets
