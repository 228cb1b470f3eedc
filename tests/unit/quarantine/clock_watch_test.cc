#include "family/intermediate/clock_watch.h"

#include <gtest/gtest.h>

#include "support/temporary_folder.h"

namespace zendrix::family {
namespace {

class ClockWatchTest : public testing::Test {
 protected:
  void Look(const std::string& text) {
    folder_.Write("stat", text);
    watch_.Look(folder_.path());
  }
  std::string Seen() const {
    return std::to_string(watch_.clock_set().forward) + " forward, " +
           std::to_string(watch_.clock_set().back) + " back";
  }

  const test::TemporaryFolder folder_;
  ClockWatch watch_;
};

TEST_F(ClockWatchTest, OneWayDoesNotMakeUpForTheOther) {
  Look("cpu 1 2\nbtime 1000\nprocesses 7\n");
  EXPECT_EQ(Seen(), "0 forward, 0 back");
  Look("btime 1000\n");
  EXPECT_EQ(Seen(), "0 forward, 0 back");
  Look("btime 1007\n");
  EXPECT_EQ(Seen(), "7 forward, 0 back");
  Look("btime 990\n");
  EXPECT_EQ(Seen(), "7 forward, 17 back");
  Look("btime 1000\n");
  EXPECT_EQ(Seen(), "17 forward, 17 back");
}

TEST_F(ClockWatchTest, AListThatDoesNotTellIsPassedOver) {
  Look("btime 1000\n");
  for (const char* text : {"", "btime\n", "btime x\n", "btime 5x\n", "btime 5 6\n", "ctime 5\n"}) {
    folder_.Write("stat", text);
    EXPECT_EQ(StartOfComputer(folder_.path()), std::nullopt) << text;
    Look(text);
  }
  EXPECT_EQ(StartOfComputer(folder_.path() + "/missing"), std::nullopt);
  Look("btime 1005\n");
  EXPECT_EQ(Seen(), "5 forward, 0 back");
}

TEST(ClockWatchHereTest, ThisComputerSaysWhenItWasStarted) {
  const auto start = StartOfComputer("/proc");
  ASSERT_TRUE(start);
  EXPECT_GT(*start, 1'000'000'000);
}

}  // namespace
}  // namespace zendrix::family
