// Quit: asked, and answered either way.
#include <gmock/gmock.h>

#include "desktop/console_program.h"
#include "desktop/eventually.h"

namespace zendrix::desktop {
namespace {

using ::testing::HasSubstr;

TEST(QuitTest, NoReturnsToThePaneThatWasOpen) {
  ConsoleProgram console;
  console.StartAndWait();
  console.OpenPane("Help");
  console.Press("push button", "Quit");
  console.AwaitText("Are you sure you want to exit?");
  console.Press("push button", "No");
  console.AwaitGone("push button", "No");
  console.Await("label", "Help");
  EXPECT_TRUE(console.process().Running());
}

TEST(QuitTest, EscapeIsNoAndEnterToo) {
  ConsoleProgram console;
  console.StartAndWait();
  for (const char* key : {"Escape", "Return"}) {
    console.Press("push button", "Quit");
    ASSERT_TRUE(Eventually([&] { return console.Await("push button", "No").Is(ATSPI_STATE_FOCUSED); }));
    console.screen().Key(key);
    console.AwaitGone("push button", "No");
    EXPECT_TRUE(console.process().Running()) << key;
  }
}

TEST(QuitTest, YesEndsTheProgramWithItsGoodbyeInTheLog) {
  ConsoleProgram console;
  console.StartAndWait();
  console.Quit();
  EXPECT_EQ(console.process().status(), 0) << console.process().Output();
  EXPECT_THAT(console.Log(), HasSubstr("'QueryUnload': Stop UI."));
  EXPECT_THAT(console.Log(), HasSubstr("'Unload': Ending version"));
}

}  // namespace
}  // namespace zendrix::desktop
