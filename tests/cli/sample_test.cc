// The sample history as the console shows it, through the road that run.sh takes.
#include <cstdlib>
#include <ctime>

#include "cli/inspector.h"

namespace zendrix::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

class SampleTest : public InspectorTest {
 protected:
  void Copy(const std::string& form) {
    const std::string command =
        std::string("'" ZENDRIX_SAMPLE "/copy-to' ") + form + " '" + folder_.path() + "'";
    ASSERT_EQ(std::system(command.c_str()), 0);
    WriteSettings();
  }
  // What the alert list shows of the rows, newest first.
  std::vector<std::string> Alerts() {
    std::vector<std::string> shown;
    const Json document = Document({"alerts"});
    for (const auto& item : document["items"]) {
      const std::string status = item.at("Status");
      shown.push_back(item.at("EventType").get<std::string>() + (status.empty() ? "" : " " + status));
    }
    return shown;
  }
};

TEST_F(SampleTest, ListTellsTheThreeIncidents) {
  Copy("home");
  EXPECT_THAT(Alerts(), ElementsAre("Intrusion", "Intrusion", "Intrusion", "Intrusion Blocked", "Suspicious",
                                    "Suspicious Allowed"));
}

TEST_F(SampleTest, LowestLevelShowsTheOrdinaryOnesToo) {
  Copy("home");
  WriteSettings("[Misc]\r\nTTour=Y\r\nShRskLvl=0\r\n");
  EXPECT_EQ(Alerts().size(), 11u);
}

TEST_F(SampleTest, HistoryEndsNow) {
  const std::time_t before = std::time(nullptr);
  Copy("home");
  const std::string last = Document({"events"})["reader"]["LastDateUTC"];
  EXPECT_GE(std::stoll(last), before);
  EXPECT_LE(std::stoll(last), std::time(nullptr));
}

TEST_F(SampleTest, PageOfTheAttachmentNamesEverythingItDid) {
  Copy("home");
  const std::string key = Document({"alerts"})["items"][1]["Key"];
  const Json document = Document({"alert", key.substr(1)});
  std::vector<std::string> monitors;
  for (const auto& entry : document["NotableInfo"]) monitors.push_back(entry["Monitor"]);
  EXPECT_THAT(monitors, ElementsAre("Aggregation", "Autorun Registry", "TCP Connections", "Running Processes",
                                    "Windows Folder"));
}

// The sample speaks of another computer: Block must find nothing of this one.
TEST_F(SampleTest, BlockTouchesNothing) {
  Copy("home");
  const std::string key = Document({"alerts"})["items"][1]["Key"];
  const Json document = Document({"act", key.substr(1), "do"});
  EXPECT_EQ(BoxTexts(document).size(), 1u);
  EXPECT_EQ(Document({"quarantine", "list"})["entries"].size(), 0u);
}

TEST_F(SampleTest, AgentsLogIsReadable) {
  Copy("home");
  EXPECT_GT(Document({"log", "KorvessaEventLog.kvl"})["rows"].size(), 60u);
}

}  // namespace
}  // namespace zendrix::test
