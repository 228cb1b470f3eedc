#include "platform/run_time_options.h"

#include <gtest/gtest.h>

namespace zendrix::platform {
namespace {

TEST(RunTimeOptions, TakesWholeSecondsWithinTheirBounds) {
  RunTime time{5, {}};
  EXPECT_EQ(TakeRunTime("--interval", "1", time), "");
  EXPECT_EQ(time.interval_seconds, 1);
  EXPECT_EQ(TakeRunTime("--interval", "3600", time), "");
  EXPECT_EQ(time.interval_seconds, 3600);
  EXPECT_EQ(TakeRunTime("--for", "315360000", time), "");
  EXPECT_EQ(time.for_seconds, 315360000);
}

TEST(RunTimeOptions, RefusesEverythingElseAndKeepsWhatItHad) {
  RunTime time{5, {}};
  for (const char* text : {"", "0", "-1", "3601", "1s", " 1", "1.5", "99999999999999999999"})
    EXPECT_EQ(TakeRunTime("--interval", text, time), "--interval needs a number of seconds from 1 to 3600")
        << text;
  for (const char* text : {"", "0", "315360001", "soon"})
    EXPECT_EQ(TakeRunTime("--for", text, time), "--for needs a number of seconds, at least 1") << text;
  EXPECT_EQ(time.interval_seconds, 5);
  EXPECT_FALSE(time.for_seconds);
}

TEST(RunTimeOptions, OtherOptionsAreNotItsOwn) {
  RunTime time{5, {}};
  EXPECT_FALSE(TakeRunTime("--folder", "1", time));
}

}  // namespace
}  // namespace zendrix::platform
