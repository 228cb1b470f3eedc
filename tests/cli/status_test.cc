// status.
#include "cli/inspector.h"

namespace zendrix::test {
namespace {

using ::testing::ElementsAre;

class StatusTest : public InspectorTest {
 protected:
  void SetUp() override {
    WriteSettings();
    WriteHashed("KorvessaDesc1.kvl",
                "0,1,None of <countofalerts>\r\n0,3,Intrusion, <countofalerts> listed\r\n2,1,Watched\r\n"
                "2,3,Not watched\r\n3,1,Mail fine\r\n3,2,Mail incomplete\r\n6,1,Nothing to do\r\n");
    WriteHashed("KorvessaDesc9.kvl", "010,Events: <NumEvents>\r\n011,Alerts: <NumAlerts>\r\n");
  }
};

TEST_F(StatusTest, IntrusionIsToldWithTheWayToTheList) {
  WriteAlertHistory();
  const Json document = Document({"--agent", "running", "status"});
  EXPECT_THAT(KeysOf(document), ElementsAre("AlertLevel", "AgentLevel", "EmailStatus", "OverallLevel",
                                            "OSRiskLevel", "icStatus", "icMore", "StatusAction",
                                            "icEventCount", "icAlertCount", "icDate", "messages", "log"));
  EXPECT_EQ(document["AlertLevel"], 3);
  EXPECT_EQ(document["AgentLevel"], 1);
  EXPECT_EQ(document["EmailStatus"], 1);
  EXPECT_EQ(document["OverallLevel"], 3);
  EXPECT_EQ(document["OSRiskLevel"], "Some items require your immediate attention");
  EXPECT_EQ(document["icStatus"], "Intrusion, 2 listed");
  EXPECT_EQ(document["icMore"], "[Details...]");
  EXPECT_EQ(document["icAlertCount"], "Alerts: 2");
  EXPECT_EQ(document["StatusAction"], 0);
  EXPECT_EQ(document["icDate"], "Saturday, November 21, 2026");
}

TEST_F(StatusTest, StoppedAgentWinsTheSecondLineOverAnIntrusion) {
  WriteAlertHistory();
  for (const char* agent : {"stopped", "missing"}) {
    const Json document = Document({"--agent", agent, "status"});
    EXPECT_EQ(document["AgentLevel"], 3) << agent;
    EXPECT_EQ(document["OverallLevel"], 3) << agent;
    EXPECT_EQ(document["icStatus"], "Not watched") << agent;
    EXPECT_EQ(document["icMore"], "[Start Agent]") << agent;
    EXPECT_EQ(document["StatusAction"], 2) << agent;
  }
}

TEST_F(StatusTest, QuietFolderNeedsNothing) {
  WriteHistory(Event(0, "System", "a", "0"));
  const Json document = Document({"--agent", "running", "status"});
  EXPECT_EQ(document["AlertLevel"], 1);
  EXPECT_EQ(document["OverallLevel"], 1);
  EXPECT_EQ(document["icStatus"], "Nothing to do");
  EXPECT_EQ(document["icMore"], nullptr);
  EXPECT_EQ(document["StatusAction"], 0);
  EXPECT_EQ(document["icEventCount"], "Events: 1");
}

TEST_F(StatusTest, MailThatIsOnAndIncompleteNeedsAttention) {
  WriteSettings("[Misc]\r\nTTour=Y\r\nenblAlr=1\r\n");
  WriteHistory(Event(0, "System", "a", "0"));
  const Json document = Document({"--agent", "running", "status"});
  EXPECT_EQ(document["EmailStatus"], 2);
  EXPECT_EQ(document["OverallLevel"], 2);
  EXPECT_EQ(document["icMore"], nullptr);
}

}  // namespace
}  // namespace zendrix::test
