// The log viewer of the Administrator console, from its toolbar to the last record, by keys and screen
// reader.
#include <gmock/gmock.h>

#include "desktop/console_program.h"
#include "desktop/eventually.h"

namespace zendrix::desktop {
namespace {

class LogViewerTest : public ::testing::Test {
 protected:
  LogViewerTest() {
    std::string bytes;
    for (int i = 1; i <= 40; ++i) bytes += "1700000000,HOST,42,<i>message</i> " + std::to_string(i) + "\r\n";
    console_.folder().Write("KorvessaEventLog.kvl", bytes);
    console_.Start({"-ns", "--edition=Administrator"});
  }
  bool IsActive() {
    const auto window = console_.screen().WithTitle("Error Logs");
    return window && console_.screen().Active() == *window;
  }
  bool HasRecord(int number) {
    return console_.Find("table cell", "<i>message</i> " + std::to_string(number)).has_value();
  }

  ConsoleProgram console_;
};

TEST_F(LogViewerTest, LogIsChosenPagedToItsEndAndClosed) {
  console_.Await("push button", "View Logs");
  console_.Press("push button", "View Logs");
  console_.Await("frame", "Error Logs");
  console_.AwaitText("No log is open.");
  ASSERT_TRUE(Eventually([&] { return IsActive(); }));
  console_.Press("push button", "Open");
  console_.AwaitText("log Files (*.kvl)");
  console_.screen().Type(console_.folder().Path("KorvessaEventLog.kvl"));
  console_.screen().Key("Return");
  ASSERT_TRUE(Eventually([&] { return HasRecord(40); })) << console_.Tree().Tree();
  EXPECT_FALSE(HasRecord(1));
  ASSERT_TRUE(Eventually([&] { return IsActive(); }));
  ASSERT_TRUE(Eventually([&] {
    console_.screen().Key("ctrl+End");
    return ComesSoon([&] { return HasRecord(1) && !HasRecord(2); });
  }));
  const Accessible bar = console_.Await("scroll bar", "Record at the top");
  EXPECT_EQ(bar.Value(), 40);
  EXPECT_TRUE(Eventually([&] {
    console_.screen().Key("Tab");
    return ComesSoon([&] { return bar.Is(ATSPI_STATE_FOCUSED); });
  }));
  console_.screen().Key("Home");
  ASSERT_TRUE(Eventually([&] { return HasRecord(40) && !HasRecord(1); }));
  console_.screen().Key("Escape");
  console_.AwaitGone("frame", "Error Logs");
  EXPECT_TRUE(console_.process().Running());
}

}  // namespace
}  // namespace zendrix::desktop
