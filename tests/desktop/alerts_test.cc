// The list of alerts and the page that explains one.
#include <gmock/gmock.h>

#include "desktop/console_program.h"
#include "desktop/eventually.h"

namespace zendrix::desktop {
namespace {

using ::testing::ElementsAre;

class AlertsTest : public ::testing::Test {
 protected:
  // The texts of the column with the risk, top row first.
  std::vector<std::string> Risks() {
    std::vector<std::string> risks;
    console_.Tree().Walk([&](const Accessible& thing) {
      const std::string name = thing.role() == "table cell" ? thing.name() : "";
      if (name == "Normal" || name == "Suspicious" || name == "Intrusion") risks.push_back(name);
      return false;
    });
    return risks;
  }

  ConsoleProgram console_;
};

TEST_F(AlertsTest, ListOfAQuietComputerSaysThatThereIsNothing) {
  console_.StartAndWait();
  console_.OpenPane("Alerts");
  console_.AwaitText("Nothing suspicious was found");
}

TEST_F(AlertsTest, AlertsThatTheAgentAppendsComeInAtTheTop) {
  console_.Event("Aggregation", "a", "0.5", "", "Q,1");
  console_.StartAndWait();
  console_.OpenPane("Alerts");
  console_.AwaitRow("Normal");
  console_.Event("Aggregation", "b", "0.99", "", "R,1");
  console_.AwaitRow("Intrusion");
  EXPECT_THAT(Risks(), ElementsAre("Intrusion", "Normal"));
  console_.AwaitText("Alerts on the list: 2.");
}

TEST_F(AlertsTest, ClickShowsTheExplanationInThePage) {
  console_.Event("Aggregation", "a", "0.5", "", "Q,1");
  console_.Event("Windows Folder", "/opt/first", "1");
  console_.Event("Aggregation", "Windows Folder=/opt/first;x", "0.99", "", "R,1");
  console_.Event("Community", "observed", "0", "Windows Folder=failed");
  console_.StartAndWait();
  console_.OpenPane("Alerts");
  console_.ClickOn(console_.AwaitRow("Normal"));
  console_.AwaitText("Risk level: Normal");
  console_.ClickOn(console_.AwaitRow("Intrusion"));
  console_.AwaitText("Risk level: Intrusion");
  console_.Await("link", "/opt/first");
}

TEST_F(AlertsTest, ArrowKeysShowTheExplanationOfTheRowTheyReach) {
  console_.Event("Aggregation", "a", "0.5", "", "Q,1");
  console_.Event("Aggregation", "b", "0.99", "", "R,1");
  console_.StartAndWait();
  console_.OpenPane("Alerts");
  console_.AwaitText("Risk level: Intrusion");
  console_.screen().Key("Down");
  console_.AwaitText("Risk level: Normal");
  console_.screen().Key("Up");
  console_.AwaitText("Risk level: Intrusion");
}

TEST_F(AlertsTest, DetailsAreHiddenAndStayHiddenUntilTheyAreAskedFor) {
  console_.Event("Windows Folder", "/opt/first", "1");
  console_.Event("Aggregation", "Windows Folder=/opt/first;x", "0.99", "", "R,1");
  console_.Event("Community", "observed", "0", "Windows Folder=failed");
  console_.StartAndWait();
  console_.OpenPane("Alerts");
  const auto details = [&] { return console_.HasText("/opt/first"); };
  ASSERT_TRUE(Eventually(details));
  console_.MoveFocusTo("link", "[Hide details]");
  console_.screen().Key("Return");
  console_.Await("link", "[Show details]");
  EXPECT_TRUE(Eventually([&] { return !details(); }));
  console_.ClickOn(console_.AwaitRow("Intrusion"));
  console_.Await("link", "[Show details]");
  EXPECT_FALSE(details());
  console_.Quit();
  EXPECT_EQ(console_.Saved("DetSho"), "0");
  console_.StartAndWait();
  console_.OpenPane("Alerts");
  console_.ClickOn(console_.Await("link", "[Show details]"));
  console_.Await("link", "[Hide details]");
  EXPECT_TRUE(Eventually(details));
}

}  // namespace
}  // namespace zendrix::desktop
