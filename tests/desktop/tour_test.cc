// The tour, on a computer that reaches no portal.
#include <gmock/gmock.h>

#include "desktop/console_program.h"
#include "desktop/eventually.h"

namespace zendrix::desktop {
namespace {

TEST(TourTest, OpensFromTheStripAndClosesByEscapeWithItsChoiceKept) {
  ConsoleProgram console;
  console.StartAndWait();
  console.Press("push button", "Getting Started");
  const Accessible choice = console.Await("check box", "Do not show this at start");
  const bool before = choice.Is(ATSPI_STATE_CHECKED);
  choice.Act();
  ASSERT_TRUE(Eventually([&] { return choice.Is(ATSPI_STATE_CHECKED) != before; }));
  const std::string kept = before ? "N" : "Y";
  EXPECT_TRUE(Eventually([&] { return console.Saved("TTour") == kept; }))
      << console.folder().Read("zendrix.ini");
  console.screen().Key("Escape");
  console.AwaitGone("check box", "Do not show this at start");
  EXPECT_TRUE(Eventually([&] { return console.IsActive(); }));
}

}  // namespace
}  // namespace zendrix::desktop
