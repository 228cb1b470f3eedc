#include <optional>

#include "support/alert_fixture.h"

namespace zendrix::test {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

constexpr char kPortal[] = "http://portal.example.com/redir.asp?PostType=UserGetDescription&Mon=";

std::string Anchor(const std::string& monitor_word, const std::string& value, const std::string& text) {
  return "<A HREF='" + (kPortal + monitor_word) + "&Desc=" + value + "'>" + text + "</A>";
}

class SummaryTableTest : public AlertFixture {
 protected:
  SummaryTableTest() {
    Have(AnAlert());
    alerts_.context().FirstEventDateTime = "01/02/2026 03:04:05 AM";
  }
  // A template for the monitor's positive changes.
  void Template(const std::string& monitor, const std::string& text) {
    state_.Desc[2].push_back(monitor + ",1," + text);
  }
  // What the template became for one blocked event.
  std::string Filled(const std::string& monitor, const std::string& row_template,
                     const std::string& description) {
    state_.Desc[2] = {};
    Template(monitor, "[" + row_template + "]");
    Have(AnAlert());
    HaveEvent(monitor, description, "success");
    const std::string table = Table("success");
    const auto start = table.find('[');
    const auto end = table.rfind(']');
    return start == std::string::npos ? table : table.substr(start + 1, end - start - 1);
  }
};

TEST_F(SummaryTableTest, AlertAloneHasNoTables) {
  Template("System", "x");
  EXPECT_EQ(Table("success"), "");
  EXPECT_EQ(Table("failed"), "");
}

TEST_F(SummaryTableTest, ShortRowIsExact) {
  Template("System", "Seen: <description>.");
  HaveEvent("System", "rebooted", "success", "1.0", 3);
  EXPECT_EQ(Table("success"),
            "<br>The following suspicious activity was blocked:<br>"
            "<table cellspacing=0 cellpadding=5 border='0' width='100%'>"
            "<tr ALIGN='left' VALIGN='top'><td width=18>"
            "<p><p><IMG SRC='/opt/zendrix\\Images\\workplace.png' ALT='At the time of this alert, this event "
            "had been "
            "observed 3 times since 01/02/2026 03:04:05 AM' ALIGN=bottom HSPACE=4>"
            "</td><td><font size=1 color='#00009D' face='Tahoma'>Seen: rebooted.</font></td></tr></table>");
}

TEST_F(SummaryTableTest, LongRowIsExact) {
  Template("System", "Seen.");
  HaveEvent("System", "rebooted", "", "1.0", 1);
  EXPECT_EQ(Table("failed", false),
            "<br>The following suspicious activity could not be blocked:<br>"
            "<table cellspacing=0 cellpadding=5 border='0' width='100%'>"
            "<tr ALIGN='left' VALIGN='top'><td width=18>"
            "<p><p><IMG SRC='/opt/zendrix\\Images\\workplace.png' ALT='At the time of this alert, this event "
            "had been "
            "observed 1 time since 01/02/2026 03:04:05 AM' ALIGN=bottom HSPACE=4>"
            "</td><td>Seen.</td><td align='center'>1</td></tr></table>");
}

TEST_F(SummaryTableTest, NeverObservedGivesThePlural) {
  Template("System", "x");
  HaveEvent("System", "a", "success", "1", 0);
  EXPECT_THAT(Table("success"), HasSubstr("observed 0 times since"));
}

TEST_F(SummaryTableTest, EventThatWasNotCountedSaysNothingOfEarlierOnes) {
  Template("System", "x");
  HaveEvent("System", "a", "success");
  for (const std::optional<std::int32_t> times :
       {std::optional<std::int32_t>(), std::optional<std::int32_t>(-1)}) {
    Found(1).TimesObserved = times;
    EXPECT_THAT(Table("success"), HasSubstr("\\workplace.png' ALT='' ALIGN"));
    EXPECT_THAT(Table("success", false), HasSubstr(times ? ">-1</td>" : ">0</td>"));
  }
}

TEST_F(SummaryTableTest, FailedWithACapitalQualifiesForFailedOnly) {
  Template("System", "x");
  HaveEvent("System", "a", "Failed");
  EXPECT_NE(Table("failed"), "");
  EXPECT_EQ(Table("success"), "");
}

TEST_F(SummaryTableTest, EmptyReactionQualifiesForFailedOnly) {
  Template("System", "x");
  HaveEvent("System", "a", "");
  EXPECT_NE(Table("failed"), "");
  EXPECT_EQ(Table("success"), "");
}

TEST_F(SummaryTableTest, ReactionWithBothWordsQualifiesForBoth) {
  Template("System", "x");
  HaveEvent("System", "a", "success, later failed");
  EXPECT_NE(Table("failed"), "");
  EXPECT_NE(Table("success"), "");
}

TEST_F(SummaryTableTest, SignOfTheChangeSelectsTheSentence) {
  state_.Desc[2] = {"System,-1,less", "System,0,same", "System,1,more", "System,N/A,other"};
  HaveEvent("System", "a", "success", "-2.5");
  HaveEvent("System", "a", "success", "0.0000000000000000");
  HaveEvent("System", "a", "success", "1,234.5");
  HaveEvent("System", "a", "success", "N/A");
  const std::string table = Table("success");
  const auto at = [&](const char* word) { return table.find(word); };
  EXPECT_LT(at(">less<"), at(">same<"));
  EXPECT_LT(at(">same<"), at(">more<"));
  EXPECT_LT(at(">more<"), at(">other<"));
  EXPECT_NE(at(">other<"), std::string::npos);
}

TEST_F(SummaryTableTest, EntryWithoutTemplateIsSkippedAndAnEmptyTableIsEmpty) {
  Template("System Users", "x");
  HaveEvent("Logged-On Users", "a", "success", "A");
  EXPECT_EQ(Table("success"), "");
}

TEST_F(SummaryTableTest, WithoutDictionaryTheEntriesAreListed) {
  HaveEvent("System", "a", "success");
  EXPECT_EQ(Table("success"), "* Error with Description file * Aggregation \r\n\r\nSystem a\r\n\r\n");
}

TEST_F(SummaryTableTest, UnknownMonitorGivesItsTemplateUnwrapped) {
  Template("Strange", "as it stands <description>");
  HaveEvent("Strange", "a", "success");
  EXPECT_THAT(Table("success"), HasSubstr("width='100%'>as it stands <description></table>"));
}

TEST_F(SummaryTableTest, MemoryIsShownWithTwoDecimals) {
  EXPECT_EQ(Filled("Memory Utilization", "Use <description> MB", "12.5"), "Use 12.50 MB");
}

// "42.10" from the Agent was read as 4210 where a "." parts thousands, and shown as 4210,00.
TEST_F(SummaryTableTest, AmountIsReadAsTheAgentWritesItAndShownAsTheUserDoes) {
  platform::LocaleInfo& locale = world_.platform.locale.info;
  for (const char* monitor : {"Memory Utilization", "Network Transmission Rate"}) {
    locale = {};
    EXPECT_EQ(Filled(monitor, "<description>", "42.10"), "42.10");
    locale.decimal = ",";
    locale.thousands = ".";
    EXPECT_EQ(Filled(monitor, "<description>", "42.10"), "42,10");
    EXPECT_EQ(Filled(monitor, "<description>", "0.5:word"), "0,50");
    EXPECT_EQ(Filled(monitor, "<description>", "-1,234.567"), "-1234,57");
    EXPECT_EQ(Filled(monitor, "<description>", "many"), "many");
  }
}

TEST_F(SummaryTableTest, CuttingARateTemplateLeavesTheRowAroundItWhole) {
  state_.Desc[2] = {"Memory Utilization,1,Use <description> MB<: by <%1>:>"};
  HaveEvent("Memory Utilization", "12.5", "success");
  EXPECT_THAT(Table("success"), HasSubstr("Use 12.50 MB</font></td></tr></table>"));
}

TEST_F(SummaryTableTest, MemoryWithAWordBringsInTheClause) {
  EXPECT_EQ(Filled("Memory Utilization", "Use <description> MB<: by <%1><%2>:>", "12.5:editor"),
            "Use 12.50 MB by editor.");
}

TEST_F(SummaryTableTest, RateWithThreeFieldsJoinsTheThird) {
  EXPECT_EQ(Filled("Network Transmission Rate", "<description><: by <%1>.<%2>:>", "7:one:two"),
            "7.00 by one., two.");
}

TEST_F(SummaryTableTest, AmountAloneLeavesNoPlaceholderOfTheClause) {
  EXPECT_EQ(Filled("Memory Utilization", "(<%1>)(<%2>) <description>", "12.5"), "()() 12.50");
}

TEST_F(SummaryTableTest, RateWithFourFieldsNamesTheSecondOnly) {
  EXPECT_EQ(Filled("Network Transmission Rate", "<description><: by <%1>.<%2>:>", "7:one:two:three"),
            "7.00 by one..");
}

TEST_F(SummaryTableTest, EmptyRateLeavesItsTemplate) {
  EXPECT_EQ(Filled("Network Transmission Rate", "<description><: by <%1>:>", ""),
            "<description><: by <%1>:>");
}

TEST_F(SummaryTableTest, LoggedOnUserIsLinkedInTheShortFormOnly) {
  // Its spelling has no page on the portal, so the anchor is there and its target empty.
  EXPECT_EQ(Filled("Logged-On Users", "<description>", "eve"), "<A HREF=''>eve</A>");
  state_.Desc[2] = {"Logged-On Users,1,<description>"};
  EXPECT_THAT(Table("success", false), HasSubstr("</td><td>eve</td>"));
}

TEST_F(SummaryTableTest, SystemUsersAndWindowsFolderAreLinkedInBothForms) {
  EXPECT_EQ(Filled("System Users", "<description>", "eve"), Anchor("SystemUsers", "eve", "eve"));
  state_.Desc[2] = {"Windows Folder,1,<description>"};
  Have(AnAlert());
  HaveEvent("Windows Folder", "new.dll", "success");
  EXPECT_THAT(Table("success", false), HasSubstr(Anchor("WindowsFolder", "new.dll", "new.dll")));
}

TEST_F(SummaryTableTest, ListeningPortNamesPortAndProgram) {
  EXPECT_EQ(
      Filled("Listening Ports", "<description, right of :> on <description, left of :>",
             "8080:C:\\T\\srv.exe"),
      Anchor("RunningProcesses", "srv.exe", "srv.exe") + " on " + Anchor("ListeningPorts", "8080", "8080"));
}

TEST_F(SummaryTableTest, ListeningPortWithoutColonHasAnUnknownProgram) {
  EXPECT_EQ(Filled("Listening Ports", "<description, right of :> on <description, left of :>", "8080"),
            "An unknown program on <description, left of :>");
}

TEST_F(SummaryTableTest, RunningProcessIsItsFileNameAndItsNumber) {
  EXPECT_EQ(Filled("Running Processes", "<description, right of last \\> (<description, right of :>)",
                   "C:\\Tools\\run.exe:471"),
            Anchor("RunningProcesses", "run.exe", "run.exe") + " (471)");
}

TEST_F(SummaryTableTest, RunningProcessWithoutFolderOrNumberIsItself) {
  EXPECT_EQ(
      Filled("Running Processes", "<description, right of last \\> (<description, right of :>)", "daemon"),
      Anchor("RunningProcesses", "daemon", "daemon") + " ('?')");
}

TEST_F(SummaryTableTest, AutorunLinkCarriesTheWholeDescription) {
  EXPECT_EQ(Filled("Autorun Registry", "<description right of =>", "Run=up.exe"),
            Anchor("AutorunRegistry", "Run=up.exe", "up.exe"));
}

TEST_F(SummaryTableTest, TcpConnectionNamesAddressPortAndProgram) {
  EXPECT_EQ(Filled("TCP Connections",
                   "<description, left of :>|<description, right of :>|<description, right of last :>",
                   "www.evil.example:443:C:\\T\\cli.exe"),
            Anchor("TCPConnections", "evil.example", "www.evil.example") + "|" +
                Anchor("ListeningPorts", "443", "443") + "|" +
                Anchor("RunningProcesses", "cli.exe", "cli.exe"));
}

TEST_F(SummaryTableTest, TcpConnectionWithoutSecondColonHasAnUnknownProgram) {
  EXPECT_EQ(Filled("TCP Connections",
                   "<description, left of :>|<description, right of :>|<description, right of last :>",
                   "10.0.0.7:443"),
            Anchor("TCPConnections", "10.0.0.7", "10.0.0.7") + "|" + Anchor("ListeningPorts", "443", "443") +
                "|An unknown program");
}

TEST_F(SummaryTableTest, PortIsLinkedAtItsLastPlaceOnly) {
  EXPECT_EQ(Filled("TCP Connections", "port 80 is <description, right of :>", "10.0.0.7:80"),
            "port 80 is " + Anchor("ListeningPorts", "80", "80"));
}

TEST_F(SummaryTableTest, LinkedValueAlsoHitsOtherTextOfTheRow) {
  EXPECT_EQ(Filled("Listening Ports", "srv <description, right of :>", "1:srv"),
            Anchor("RunningProcesses", "srv", "srv") + " " + Anchor("RunningProcesses", "srv", "srv"));
}

TEST_F(SummaryTableTest, EventTextIsEscapedWhenShownAndKeptWhenExact) {
  state_.Desc[2] = {"System,1,[<description>]"};
  HaveEvent("System", "<script>alert('x')</script>", "success");
  EXPECT_THAT(Table("success"), HasSubstr("[<script>alert('x')</script>]"));
  const std::string shown = Table("success", true, alerts::Purpose::kShown);
  EXPECT_THAT(shown, HasSubstr("[&lt;script&gt;alert(&#39;x&#39;)&lt;/script&gt;]"));
  EXPECT_THAT(shown, Not(HasSubstr("<script")));
}

TEST_F(SummaryTableTest, EventTextIsPercentEncodedInsideAShownLink) {
  state_.Desc[2] = {"System Users,1,<description>"};
  HaveEvent("System Users", "a' onclick='b", "success");
  EXPECT_THAT(Table("success", true, alerts::Purpose::kShown),
              HasSubstr("&Desc=a%27%20onclick%3D%27b'>a&#39; onclick=&#39;b</A>"));
}

TEST_F(SummaryTableTest, PlaceholderSpelledByAnEventIsOnlyTextWhenShown) {
  state_.Desc[2] = {"Listening Ports,1,<description, right of :>/<description, left of :>"};
  HaveEvent("Listening Ports", "80:<description, left of :>", "success");
  EXPECT_THAT(Table("success", true, alerts::Purpose::kShown),
              HasSubstr("&lt;description, left of :&gt;</A>/"));
}

}  // namespace
}  // namespace zendrix::test
