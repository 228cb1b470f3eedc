#include "alerts/monitor_description.h"

#include "support/alert_fixture.h"

namespace zendrix::test {
namespace {

constexpr char kTime[] = "01:45:30 AM";

std::string Icon(const std::string& name) {
  return "<p><p><IMG SRC='/opt/zendrix\\Images\\" + name + ".png' ALIGN=bottom HSPACE=4>";
}

class MonitorDescriptionTest : public AlertFixture {
 protected:
  MonitorDescriptionTest() {
    Have(AnAlert());
    alerts_.context().FirstEventDateTime = "01/02/2026 03:04:05 AM";
    state_.Desc[2] = {"Aggregation,N,On <date>"};
    Page();
  }
  // The explanation of an event of the monitor, from this template.
  std::string Filled(const std::string& monitor, const std::string& text, const std::string& description) {
    state_.Desc[5] = {"some note", monitor + "," + text};
    Have(AnAlert());
    HaveEvent(monitor, description, "");
    return MonitorText(1);
  }
};

TEST_F(MonitorDescriptionTest, MonitoringAgentShowsTheWholeAlert) {
  EXPECT_EQ(Filled("Monitoring Agent",
                   "&lt;Monitor Analysis Agent Icon&gt;A&lt;full description from right pane&gt;Z", "x"),
            Icon("security_agent_48") + "A<br>" + Page(false) + "Z");
}

TEST_F(MonitorDescriptionTest, CommunityShowsTheWholeAlertUnderThePictureOfAnAlert) {
  EXPECT_EQ(Filled("Community",
                   "&lt;Monitor Analysis Agent Icon&gt;A&lt;full description from right pane&gt;Z", "x"),
            Icon("bug_red_48") + "A<br>" + Page(false) + "Z");
}

TEST_F(MonitorDescriptionTest, NetworkTransmissionRateShowsTheDescriptionAsItStands) {
  EXPECT_EQ(
      Filled("Network Transmission Rate",
             "&lt;Network Transmission Icon&gt;&lt;description&gt; KB/s at &lt;time of alert&gt;", "42.10:x"),
      Icon("server_client_exchange_48") + "42.10:x KB/s at &lt;time of alert&gt;");
}

TEST_F(MonitorDescriptionTest, LoggedOnUsersNamesUserAndTime) {
  EXPECT_EQ(
      Filled("Logged-On Users",
             "&lt;Logged on Users Icon&gt;&lt;description&gt; at &lt;time of alert&gt; &lt;Click here&gt;",
             "eve"),
      Icon("businessman_48") + "eve at " + kTime + " &lt;Click here&gt;");
}

TEST_F(MonitorDescriptionTest, MemoryUtilizationShowsTheDescriptionAsItStands) {
  EXPECT_EQ(Filled("Memory Utilization", "&lt;Memory Utilization Icon&gt;&lt;description&gt; percent",
                   "42.10:editor"),
            Icon("data_refresh_48") + "42.10:editor percent");
}

TEST_F(MonitorDescriptionTest, ListeningPortsShowsTheWholeDescriptionAsThePort) {
  EXPECT_EQ(Filled("Listening Ports", "&lt;Listening Port Icon&gt;&lt;port&gt; at &lt;time of alert&gt;",
                   "8080:C:\\T\\srv.exe"),
            Icon("server_connection_48") + "8080:C:\\T\\srv.exe at " + kTime);
}

TEST_F(MonitorDescriptionTest, AutorunRegistryNamesProgramTimeDescriptionAndLink) {
  EXPECT_EQ(
      Filled(
          "Autorun Registry",
          "&lt;Registry Icon&gt;&lt;program&gt;|&lt;time of alert&gt;|&lt;description&gt;|&lt;Click here&gt;",
          "Run\\Up=C:\\up.exe=x"),
      Icon("cubes_48") + "C:\\up.exe=x|" + kTime + "|Run\\Up=C:\\up.exe=x|" +
          "<A HREF='http://portal.example.com/redir.asp?PostType=UserGetDescription&Mon=AutorunRegistry"
          "&Desc=Run\\Up=C:\\up.exe=x'>Click here</A>");
}

TEST_F(MonitorDescriptionTest, AutorunEntryWithoutEqualsHasNoProgram) {
  EXPECT_EQ(Filled("Autorun Registry", "[&lt;program&gt;]", "Run"), "[]");
}

// The order counts: an icon's placeholder that a description spells out is filled when it comes later.
TEST_F(MonitorDescriptionTest, ValueThatSpellsALaterPlaceholderIsReplacedInTheExactTextOnly) {
  EXPECT_EQ(Filled("System Users", "&lt;description&gt;", "&lt;time of alert&gt;"), kTime);
  EXPECT_EQ(MonitorText(1, alerts::Purpose::kShown), "&amp;lt;time of alert&amp;gt;");
}

TEST_F(MonitorDescriptionTest, UnknownIdRendersAnEmptyTextWithTheDictionaryLoaded) {
  Event(0, "System", "start");
  Load();
  LookUp(99);
  ASSERT_EQ(alerts_.context().NotableInfo.size(), 1U);
  state_.Desc[5] = {"Aggregation,x", "System,y"};
  EXPECT_EQ(Page(), "");
  EXPECT_EQ(Page(true, alerts::Purpose::kShown), "");
  EXPECT_EQ(Table("success"), "");
  EXPECT_EQ(Table("failed"), "");
}

}  // namespace
}  // namespace zendrix::test
