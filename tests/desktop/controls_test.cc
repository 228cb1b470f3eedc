// Nothing dead: what a person who cannot see the screen finds on each pane.
#include <gmock/gmock.h>

#include <set>
#include <string>
#include <vector>

#include "desktop/console_program.h"

namespace zendrix::desktop {
namespace {

class ControlsTest : public ::testing::TestWithParam<const char*> {};

// Things that only hold or adorn others need no name and do nothing.
const std::set<std::string> kHolders{"application", "filler",    "frame",     "panel",
                                     "split pane",  "image",     "separator", "scroll pane",
                                     "unknown",     "paragraph", "section",   "viewport"};
const std::set<std::string> kTexts{
    "label",   "document web", "table",         "table column header", "link",    "progress bar", "alert",
    "heading", "static",       "page tab list", "table row header",    "tool tip"};

TEST_P(ControlsTest, EachHasARoleANameAndSomethingToDo) {
  ConsoleProgram console;
  console.Event("Windows Folder", "/opt/first", "1");
  console.Event("Aggregation", "Windows Folder=/opt/first;x", "0.99", "", "R,1");
  console.Event("Community", "observed", "0", "Windows Folder=failed");
  console.StartAndWait();
  console.OpenPane(GetParam());
  if (std::string(GetParam()) == "Alerts") console.Await("link", "[Hide details]");
  int buttons = 0;
  console.Tree().Walk([&](const Accessible& thing) {
    const std::string role = thing.role();
    EXPECT_FALSE(role.empty() || role == "invalid") << thing.name();
    if (kHolders.contains(role)) return false;
    // A cell of a list may be blank, as it is to the eye.
    if (role != "table cell") {
      EXPECT_FALSE(thing.text().empty()) << role << " without a name\n" << console.Tree().Tree();
    }
    if (!kTexts.contains(role) && thing.Is(ATSPI_STATE_ENABLED)) {
      EXPECT_FALSE(thing.Actions().empty() && !thing.Value())
          << role << " " << thing.name() << " does nothing";
    }
    buttons += role == "push button";
    return false;
  });
  EXPECT_GE(buttons, 6);
}

INSTANTIATE_TEST_SUITE_P(Panes, ControlsTest,
                         ::testing::Values("Summary", "Alerts", "Advanced", "Options", "Help"),
                         [](const auto& pane) { return std::string(pane.param); });

struct PaneTexts {
  const char* pane;
  std::vector<std::string> texts;
};
void PrintTo(const PaneTexts& pane, std::ostream* out) {
  *out << pane.pane;
}

class PaneTextsTest : public ::testing::TestWithParam<PaneTexts> {};

TEST_P(PaneTextsTest, PaneSaysAllThatItIsFor) {
  ConsoleProgram console;
  console.Event("Aggregation", "Windows Folder=/opt/first;x", "0.99", "", "R,1");
  console.StartAndWait();
  console.OpenPane(GetParam().pane);
  for (const std::string& text : GetParam().texts) console.AwaitText(text);
}

INSTANTIATE_TEST_SUITE_P(
    Panes, PaneTextsTest,
    ::testing::Values(
        PaneTexts{
            "Summary",
            {"Some items require", "Events detected since", "Events recorded: ", "Intrusion alerts: 1"}},
        PaneTexts{"Alerts",
                  {"Alerts on the list: 1", "Display blocked events", "Currently displaying", "Intrusion"}},
        PaneTexts{"Advanced",
                  {"Monitoring Status", "Monitoring is", "Monitoring Status Log", "Home Edition Log",
                   "Select a message"}},
        PaneTexts{"Options",
                  {"Choose where", "Enable e-mail Alerts", "Send Alerts To", "as in name@domain.ext",
                   "SMTP Server", "as in server.maildomain.ext", "Port Number"}},
        PaneTexts{"Help",
                  {"Getting Started", "Korvessa Zendrix Home Edition", "Version 1.0", "explains it",
                   "no warranty"}}),
    [](const auto& pane) { return std::string(pane.param.pane); });

}  // namespace
}  // namespace zendrix::desktop
