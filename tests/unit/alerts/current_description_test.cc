#include "support/alert_fixture.h"

namespace zendrix::test {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

constexpr char kEmptyDetails[] =
    "<A ID='H1' href='showhide'>[Show details]</A><br><div ID='H2' style='display:none'>  </div>";
constexpr char kDetails[] =
    "<A ID='H1' href='showhide'>[Show details]</A><br><div ID='H2' "
    "style='display:none'><Corrected><NotCorrected></div>";
constexpr char kIcon[] = "<p><p><IMG SRC='/opt/zendrix\\Images\\bug_red.png' ALIGN=bottom HSPACE=4>";
constexpr char kUndoFace[] = "<IMG SRC='/opt/zendrix\\Images\\undo.png' ALIGN=bottom HSPACE=4>[Allow]";
constexpr char kDoFace[] = "<IMG SRC='/opt/zendrix\\Images\\redo.png' ALIGN=bottom HSPACE=4>[Block]";
constexpr char kFootnote[] =
    "<font size=1>* Since 01/02/2026 03:04:05 AM, which is the earliest date for which Zendrix has "
    "historical "
    "information</font>";

class CurrentDescriptionTest : public AlertFixture {
 protected:
  CurrentDescriptionTest() {
    Have(AnAlert());
    alerts_.context().FirstEventDateTime = "01/02/2026 03:04:05 AM";
  }
  void Template(const std::string& text) {
    state_.Desc[2] = {"Aggregation,N," + text, "System,1,row <description>"};
  }
};

TEST_F(CurrentDescriptionTest, DateTimeAndRiskFillTheTemplate) {
  Template("On <date> at <time>. Risk: <risklevel>");
  EXPECT_EQ(Page(), std::string(kIcon) + "On 11/21/2026 at 01:45:30 AM. Risk: Intrusion");
}

TEST_F(CurrentDescriptionTest, AlertTimeIsLeftForTheWizard) {
  Template("x");
  Page();
  EXPECT_EQ(alerts_.context().AlertDate, "11/21/2026");
  EXPECT_EQ(alerts_.context().AlertTime, "01:45:30 AM");
}

TEST_F(CurrentDescriptionTest, ShortFormKeepsTheBreakBehindTheTime) {
  Template("at <time>.<br>End");
  EXPECT_EQ(Page(), std::string(kIcon) + "at 01:45:30 AM.<br>End");
}

TEST_F(CurrentDescriptionTest, LongFormHasTheEventTableHeadAndTheFootnote) {
  Template("at <time>.<br>End");
  EXPECT_EQ(Page(false), "<tr ALIGN='left' VALIGN='top'><td width=18></td><td>" + std::string(kIcon) +
                             "at 01:45:30 AM."
                             "<tr ALIGN='left' VALIGN='top'><td width=18>"
                             "<tr ALIGN='left' VALIGN='center'><th width=18 bgcolor='#0052A5'>"
                             "</th><th bgcolor='#0052A5'><font size=1 color='#FFFFFF'> Event"
                             "</font></th><th bgcolor='#0052A5'><font size=2 color='#FFFFFF'>"
                             "# times observed*</font></th></tr></table>"
                             "End<br><br></td></tr>" +
                             kFootnote);
}

TEST_F(CurrentDescriptionTest, TemplateWithoutTablesLosesThemSilently) {
  Template("nothing here");
  HaveEvent("System", "a", "success");
  EXPECT_EQ(Page(), std::string(kIcon) + "nothing here");
}

TEST_F(CurrentDescriptionTest, BlockedItemsOfferAllowOnlyAndDotextStays) {
  Template("<A href='undo'><undotext></A><A href='do'><dotext></A>");
  HaveEvent("System", "a", "success");
  HaveEvent("System", "b", "failed");
  EXPECT_EQ(Page(), std::string(kIcon) + "<A href='undo'>" + kUndoFace + "</A><A href='do'><dotext></A>");
}

TEST_F(CurrentDescriptionTest, UnblockedItemsOfferBlockAndUndotextStays) {
  Template("<A href='undo'><undotext></A><A href='do'><dotext></A>");
  HaveEvent("System", "b", "failed");
  EXPECT_EQ(Page(), std::string(kIcon) + "<A href='undo'><undotext></A><A href='do'>" + kDoFace + "</A>");
}

TEST_F(CurrentDescriptionTest, NothingToActOnReplacesTheEmptyDetailsBlock) {
  Template("<undotext><dotext>" + std::string(kEmptyDetails));
  EXPECT_EQ(Page(), std::string(kIcon) + "<br>No Details Available");
}

TEST_F(CurrentDescriptionTest, DetailsTextComesFromItsDictionary) {
  Template(kEmptyDetails);
  state_.Desc[9] = {"002,other", "030,Nothing more is known."};
  EXPECT_EQ(Page(), std::string(kIcon) + "<br>Nothing more is known.");
}

TEST_F(CurrentDescriptionTest, OpenDetailsAreShownOpen) {
  Template(kDetails);
  state_.settings.ShowDetailsOpen = true;
  HaveEvent("System", "a", "success");
  EXPECT_THAT(
      Page(),
      HasSubstr("<A ID='H1' href='showhide'>[Hide details]</A><br><div ID='H2' style='display:'><br>The"));
}

TEST_F(CurrentDescriptionTest, OpenDetailsFlagHasNoEffectWithoutDetails) {
  Template(kEmptyDetails);
  state_.settings.ShowDetailsOpen = true;
  EXPECT_EQ(Page(), std::string(kIcon) + "<br>No Details Available");
}

TEST_F(CurrentDescriptionTest, NumericChangeUsesTheKeyN) {
  state_.Desc[2] = {"Aggregation,odd,by text", "Aggregation,N,by number"};
  EXPECT_THAT(Page(), EndsWith("by number"));
  Have(AnAlert("odd"));
  EXPECT_THAT(Page(), EndsWith("by text"));
}

TEST_F(CurrentDescriptionTest, OtherMonitorIsAnError) {
  state_.Desc[2] = {"System,N,x"};
  auto alert = AnAlert();
  alert.Monitor = "System";
  Have(alert);
  EXPECT_EQ(Page(), "* Error with Alert type * ");
  EXPECT_EQ(Page(false), std::string("* Error with Alert type * ") + kFootnote);
}

TEST_F(CurrentDescriptionTest, NoTemplateGivesAnEmptyShortForm) {
  state_.Desc[2] = {"System,N,x"};
  EXPECT_THAT(Page(), IsEmpty());
  EXPECT_EQ(Page(false), kFootnote);
}

TEST_F(CurrentDescriptionTest, WithoutDictionaryTheEntriesAreListed) {
  HaveEvent("System", "a", "");
  EXPECT_EQ(Page(), "* Error with Description file * Aggregation \r\n\r\nSystem a\r\n\r\n");
}

TEST_F(CurrentDescriptionTest, ValueThatSpellsALaterPlaceholderIsReplacedInTheExactTextOnly) {
  Template("<Corrected>|<dotext>");
  HaveEvent("System", "<risklevel><dotext>", "failed");
  HaveEvent("System", "<risklevel>", "success");
  EXPECT_THAT(Page(), HasSubstr("row Intrusion<"));
  const std::string shown = Page(true, alerts::Purpose::kShown);
  EXPECT_THAT(shown, HasSubstr("row &lt;risklevel&gt;<"));
  EXPECT_THAT(shown, Not(HasSubstr("Intrusion")));
}

TEST_F(CurrentDescriptionTest, ShownPageEscapesADateThatIsNoDate) {
  Template("On <date>");
  auto alert = AnAlert();
  alert.DateTime = "<img src=x onerror=y>";
  Have(alert);
  EXPECT_THAT(Page(true, alerts::Purpose::kShown), EndsWith("On &lt;img src=x"));
}

TEST_F(CurrentDescriptionTest, WizardTextFillsItsPlaceholders) {
  state_.Desc[5] = {
      "TCP Connections,&lt;TCP Connections Icon&gt;&lt;important icon&gt;&lt;ip address&gt; port "
      "&lt;port&gt; &lt;time of alert&gt; &lt;click here&gt;"};
  Template("x");
  HaveEvent("TCP Connections", "10.0.0.7:443", "");
  Page();
  EXPECT_EQ(
      MonitorText(1),
      "<p><p><IMG SRC='/opt/zendrix\\Images\\server_client_48.png' ALIGN=bottom HSPACE=4>"
      "<p><p><IMG SRC='/opt/zendrix\\Images\\warning_48.png' ALIGN=bottom HSPACE=4>"
      "10.0.0.7 port 443 01:45:30 AM "
      "<A HREF='http://portal.example.com/redir.asp?PostType=UserGetDescription&Mon=TCPConnections&Desc="
      "10.0.0.7:443'>click here</A>");
}

TEST_F(CurrentDescriptionTest, TcpConnectionWithoutColonHasNoPortAndNoAddress) {
  state_.Desc[5] = {"TCP Connections,[&lt;ip address&gt;][&lt;port&gt;]"};
  HaveEvent("TCP Connections", "somewhere", "");
  EXPECT_EQ(MonitorText(1), "[][]");
}

TEST_F(CurrentDescriptionTest, WizardNamesTheProgramBehindTheLastBackslash) {
  state_.Desc[5] = {"Running Processes,[&lt;program&gt;] &lt;description&gt; &lt;Click here&gt;"};
  HaveEvent("Running Processes", "C:\\a\\b.exe", "");
  EXPECT_THAT(MonitorText(1), StartsWith("[b.exe] C:\\a\\b.exe <A HREF='"));
  EXPECT_THAT(MonitorText(1), EndsWith("'>Click here</A>"));
}

TEST_F(CurrentDescriptionTest, WizardShowsTheWholeAlertInItsFirstStep) {
  state_.Desc[5] = {"Aggregation,&lt;full description from right pane&gt;"};
  Template("told");
  EXPECT_EQ(MonitorText(0), "<br>" + Page(false));
}

TEST_F(CurrentDescriptionTest, WizardTextOfAnUnlistedMonitorStaysAsItIs) {
  state_.Desc[5] = {"System,plain &lt;description&gt;"};
  HaveEvent("System", "a", "");
  EXPECT_EQ(MonitorText(1), "plain &lt;description&gt;");
}

TEST_F(CurrentDescriptionTest, WizardWithoutDictionaryOrLineSaysSo) {
  HaveEvent("System", "a", "");
  EXPECT_EQ(MonitorText(1), "* Error with Description file * ");
  state_.Desc[5] = {"Other,x"};
  EXPECT_EQ(MonitorText(1), "");
  EXPECT_EQ(MonitorText(7), "");
}

}  // namespace
}  // namespace zendrix::test
