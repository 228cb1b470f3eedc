// From the start of the program to its window, and a second start.
#include <gmock/gmock.h>

#include "desktop/console_program.h"
#include "desktop/eventually.h"

namespace zendrix::desktop {
namespace {

using ::testing::HasSubstr;

TEST(StartTest, SplashStandsThereWhileALongHistoryIsReadAndGoesWhenTheWindowComes) {
  ConsoleProgram console;
  for (int i = 0; i < 30'000; ++i) console.Event("Running Processes", "/usr/bin/tool" + std::to_string(i));
  console.StartOnSlowDisk();
  const Accessible bar = console.Await("progress bar", "Loading");
  EXPECT_TRUE(bar.Value().has_value());
  console.Await("push button", "Summary");
  EXPECT_FALSE(console.Find("progress bar", "Loading"));
  EXPECT_THAT(console.Log(), HasSubstr("'Load': UI started."));
}

TEST(StartTest, WindowOpensOnTheSummaryWithTheKeyboardInIt) {
  ConsoleProgram console;
  console.Event("Aggregation", "a", "0.99", "", "Q,1");
  console.StartAndWait();
  console.Await("label", "Summary");
  console.AwaitText("Intrusion alerts: 1");
  EXPECT_TRUE(console.Await("push button", "Summary").Is(ATSPI_STATE_FOCUSED));
}

TEST(StartTest, SecondStartSaysSoAndBringsTheMinimisedWindowForward) {
  ConsoleProgram console;
  console.StartAndWait();
  console.screen().Minimise(console.MainWindow());
  ASSERT_TRUE(Eventually([&] { return console.screen().IsMinimised(console.MainWindow()); }));
  console.StartSecond();
  const auto ok = [&]() -> std::optional<Accessible> {
    const auto second = Accessible::Program("zendrix", console.second().id());
    if (!second || !second->Find("label", "Another instance of this program is already open."))
      return std::nullopt;
    return second->Find("push button", "OK");
  };
  ASSERT_TRUE(Eventually([&] { return ok().has_value(); })) << console.second().Output();
  ok()->Act();
  ASSERT_TRUE(Eventually([&] { return !console.second().Running(); }));
  EXPECT_EQ(console.second().status(), 0);
  EXPECT_TRUE(
      Eventually([&] { return !console.screen().IsMinimised(console.MainWindow()) && console.IsActive(); }));
  EXPECT_TRUE(console.process().Running());
}

}  // namespace
}  // namespace zendrix::desktop
