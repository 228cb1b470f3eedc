// risk, alerts, alert, decide, act, checked, link, portal.
#include <sys/stat.h>

#include "cli/inspector.h"

namespace zendrix::test {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

class AlertsTest : public InspectorTest {
 protected:
  void SetUp() override { WriteSettings(); }

  std::vector<std::string> Levels(const Arguments& values) {
    Arguments arguments{"risk", "--"};
    arguments.insert(arguments.end(), values.begin(), values.end());
    std::vector<std::string> levels;
    const Json document = Document(arguments);
    for (const auto& risk : document["risks"]) {
      EXPECT_THAT(KeysOf(risk), ElementsAre("value", "level"));
      levels.push_back(risk["level"]);
    }
    return levels;
  }
  static std::vector<std::string> Column(const Json& list, const std::string& key) {
    std::vector<std::string> texts;
    for (const auto& item : list) texts.push_back(item.at(key));
    return texts;
  }
};

TEST_F(AlertsTest, RiskLevelsAtTheDefaultSensitivity) {
  EXPECT_THAT(Levels({"0", "0.9", "0.91", "0.94", "0.95", "0.99", "-1", "N/A", ""}),
              ElementsAre("Normal", "Normal", "Suspicious", "Suspicious", "Intrusion", "Intrusion",
                          "Intrusion", "Unknown", "Unknown"));
}

TEST_F(AlertsTest, RiskLevelsAtTheFoldersSensitivity) {
  WriteSettings("[Misc]\r\nSe=2\r\n");
  EXPECT_THAT(Levels({"0.49", "0.6", "0.9"}), ElementsAre("Normal", "Suspicious", "Intrusion"));
  WriteSettings("[Misc]\r\nSe=1\r\n");
  EXPECT_THAT(Levels({"0.95", "0.97", "0.99"}), ElementsAre("Normal", "Suspicious", "Intrusion"));
}

TEST_F(AlertsTest, RiskTellsTheValueAsItWasGiven) {
  EXPECT_EQ(Document({"risk", "zwölf"})["risks"][0]["value"], "zwölf");
}

TEST_F(AlertsTest, ListFromTopToBottom) {
  WriteAlertHistory();
  WriteDescriptions();
  const Json document = Document({"alerts"});
  EXPECT_THAT(KeysOf(document),
              ElementsAre("items", "AlertLevel", "AttentionPending", "LastIntrusionTime", "messages", "log"));
  EXPECT_EQ(document["items"], Json::parse(R"([
      {"Key": "K6", "Tag": "1795225505", "Time": "11/21/2026 01:45:05 AM", "EventType": "Intrusion",
       "Status": "", "Details": true, "images": [28, 18, 0, 30]},
      {"Key": "K1", "Tag": "1795225500", "Time": "11/21/2026 01:45:00 AM", "EventType": "Intrusion",
       "Status": "", "Details": false, "images": [28, 18, 0, 0]}])"));
  EXPECT_EQ(document["AlertLevel"], 3);
  EXPECT_EQ(document["AttentionPending"], true);
  EXPECT_EQ(document["LastIntrusionTime"], "11/21/2026 01:45:05 AM");
  EXPECT_EQ(document["messages"], Json::array());
}

TEST_F(AlertsTest, LevelsHaveTheirPictures) {
  WriteSettings("[Misc]\r\nTTour=Y\r\nShRskLvl=0\r\n");
  WriteHistory(Event(0, "Aggregation", "a", "0.5") + Event(1, "Aggregation", "b", "0.92") +
               Event(2, "Aggregation", "c", "0.99") + Event(3, "Aggregation", "d", "-1"));
  const Json items = Document({"alerts"})["items"];
  EXPECT_THAT(Column(items, "Key"), ElementsAre("K3", "K2", "K1"));
  EXPECT_THAT(Column(items, "EventType"), ElementsAre("Intrusion", "Suspicious", "Normal"));
  EXPECT_EQ(items[0]["images"], Json::parse("[28, 18, 0, 0]"));
  EXPECT_EQ(items[1]["images"], Json::parse("[28, 22, 0, 0]"));
  EXPECT_EQ(items[2]["images"], Json::parse("[28, 23, 0, 0]"));
}

TEST_F(AlertsTest, EarlierDecisionsAreShown) {
  WriteHistory(Event(0, "Aggregation", "a", "0.99") + Event(1, "Aggregation", "b", "0.99") +
               Event(2, "Aggregation", "c", "0.99"));
  folder_.Write("KorvessaAlr.kvl", "1795225501\r\n1795225502A\r\n");
  const Json document = Document({"alerts"});
  EXPECT_THAT(Column(document["items"], "Key"), ElementsAre("K3", "K2", "K1"));
  EXPECT_THAT(Column(document["items"], "Status"), ElementsAre("Blocked", "Allowed", ""));
  EXPECT_EQ(document["items"][0]["images"], Json::parse("[28, 18, 19, 0]"));
  EXPECT_EQ(document["items"][1]["images"], Json::parse("[28, 18, 21, 0]"));
  EXPECT_EQ(document["LastIntrusionTime"], "11/21/2026 01:45:00 AM");
}

TEST_F(AlertsTest, ShownRiskFloorHidesLowerRows) {
  WriteSettings("[Misc]\r\nTTour=Y\r\nShRskLvl=60\r\n");
  WriteHistory(Event(0, "Aggregation", "a", "0.5") + Event(1, "Aggregation", "b", "0.7"));
  EXPECT_THAT(Column(Document({"alerts"})["items"], "Key"), ElementsAre("K2"));
}

TEST_F(AlertsTest, EmptyListHasNoIntrusionTime) {
  const Json document = Document({"alerts"});
  EXPECT_EQ(document["items"], Json::array());
  EXPECT_EQ(document["AlertLevel"], 1);
  EXPECT_EQ(document["LastIntrusionTime"], "");
}

TEST_F(AlertsTest, AlertsOrAnAgentAtRestNeedAttention) {
  WriteSettings("[Misc]\r\nTTour=Y\r\nenblAlr=1\r\n");
  DocumentWriting({"smtp", "save", "a@b.c", "mail.b.c", "25"});
  const auto attention = [&](const std::string& agent) {
    return Document({"--agent", agent, "alerts"})["AttentionPending"].get<bool>();
  };
  EXPECT_FALSE(attention("running"));
  EXPECT_TRUE(attention("stopped"));
  EXPECT_TRUE(attention("missing"));
  WriteHistory(Event(0, "Aggregation", "a", "0.99"));
  EXPECT_TRUE(attention("running"));
  folder_.Write("KorvessaAlr.kvl", "1795225500\r\n");
  EXPECT_FALSE(attention("running"));
}

TEST_F(AlertsTest, NoPopUpIsRaisedByTheFirstList) {
  WriteAlertHistory();
  EXPECT_EQ(Document({"alerts"})["messages"], Json::array());
}

class AlertTest : public AlertsTest {
 protected:
  void SetUp() override {
    AlertsTest::SetUp();
    WriteAlertHistory();
  }
};

TEST_F(AlertTest, DocumentHasTheseKeysInThisOrder) {
  const Json document = Document({"alert", "6"});
  EXPECT_THAT(KeysOf(document),
              ElementsAre("NotableInfo", "FirstEventDateTime", "FirstEventDateUTC", "GetCurrDesc",
                          "GetSummaryTable", "GetMonitorDesc", "shown", "messages", "log"));
  EXPECT_THAT(KeysOf(document["shown"]), ElementsAre("GetCurrDesc", "GetSummaryTable", "GetMonitorDesc"));
  EXPECT_THAT(KeysOf(document["GetCurrDesc"]), ElementsAre("short", "long"));
  EXPECT_THAT(KeysOf(document["GetSummaryTable"]), ElementsAre("success", "failed"));
  EXPECT_THAT(KeysOf(document["GetSummaryTable"]["success"]), ElementsAre("short", "long"));
  EXPECT_THAT(KeysOf(document["GetSummaryTable"]["failed"]), ElementsAre("short", "long"));
  EXPECT_THAT(KeysOf(document["NotableInfo"][0]),
              ElementsAre("ID", "DateUTC", "DateTime", "Original", "Change", "Monitor", "Description",
                          "Reaction", "TimesObserved"));
}

TEST_F(AlertTest, RecordsOfTheAlertAndItsEvents) {
  const Json document = Document({"alert", "6"});
  EXPECT_EQ(document["NotableInfo"], Json::parse(R"([
    {"ID": 6, "DateUTC": "1795225505", "DateTime": "11/21/2026 01:45:05 AM", "Original": "0.9900000000000000",
     "Change": "0.9900000000000000", "Monitor": "Aggregation",
     "Description": "Memory Utilization=10:high;Listening Ports=80:c:\\w\\web.exe;System Users=J€rg",
     "Reaction": "", "TimesObserved": null},
    {"ID": 4, "DateUTC": "1795225503", "DateTime": "11/21/2026 01:45:03 AM", "Original": "1.0000000000000000",
     "Change": "1.0000000000000000", "Monitor": "Memory Utilization", "Description": "10:high",
     "Reaction": "success", "TimesObserved": 1},
    {"ID": 3, "DateUTC": "1795225502", "DateTime": "11/21/2026 01:45:02 AM", "Original": "1.0000000000000000",
     "Change": "1.0000000000000000", "Monitor": "Listening Ports", "Description": "80:c:\\w\\web.exe",
     "Reaction": "Failed", "TimesObserved": 0},
    {"ID": 5, "DateUTC": "1795225504", "DateTime": "11/21/2026 01:45:04 AM", "Original": "1.0000000000000000",
     "Change": "1.0000000000000000", "Monitor": "System Users", "Description": "J€rg", "Reaction": "",
     "TimesObserved": 0}])"));
  EXPECT_EQ(document["FirstEventDateTime"], "11/21/2026 01:45:00 AM");
  EXPECT_EQ(document["FirstEventDateUTC"], "1795225500");
}

TEST_F(AlertTest, ShownTextsAreTheExactOnesWithTheEventsCharactersEscaped) {
  WriteDescriptions();
  const Json plain = Document({"alert", "6"});
  EXPECT_EQ(plain["shown"]["GetSummaryTable"]["success"], plain["GetSummaryTable"]["success"]);
  WriteHistory(Event(0, "System", "start") + Event(1, "System Users", "<b>x") +
               Event(2, "Aggregation", "System Users=<b>x;", "0.99") +
               Event(3, "Community", "observed", "0", "System Users=failed"));
  const Json hostile = Document({"alert", "3"});
  const auto exact = hostile["GetSummaryTable"]["failed"]["short"].get<std::string>();
  const auto shown = hostile["shown"]["GetSummaryTable"]["failed"]["short"].get<std::string>();
  EXPECT_THAT(exact, ::testing::HasSubstr("<b>x"));
  EXPECT_THAT(shown, ::testing::Not(::testing::HasSubstr("<b>x")));
  EXPECT_THAT(shown, ::testing::HasSubstr("&lt;b&gt;x"));
}

// The time of the alert that the list shows first stood in the explanation of a row that is no alert.
TEST_F(AlertTest, RowThatIsNoAlertTakesNoTimeFromTheList) {
  WriteDescriptions();
  folder_.Write("KorvessaDesc5.kvl", "System Users,at &lt;time of alert&gt;.\r\n");
  DocumentWriting({"hash", folder_.Path("KorvessaDesc5.kvl"), "store"});
  EXPECT_EQ(Document({"alert", "5"})["GetMonitorDesc"][0], "at .");
  EXPECT_EQ(Document({"alert", "6"})["GetMonitorDesc"][3], "at 01:45:05 AM.");
}

TEST_F(AlertTest, SummaryTablesToTheCharacter) {
  WriteDescriptions();
  const Json tables = Document({"alert", "6"})["GetSummaryTable"];
  const std::string icon =
      "<p><p><IMG SRC='" + folder_.path() +
      "\\Images\\data_refresh.png' ALT='At the time of "
      "this alert, this event had been observed 1 time since 11/21/2026 01:45:00 AM' ALIGN=bottom HSPACE=4>";
  const std::string heading =
      "<br>The following suspicious activity was blocked:<br><table cellspacing=0 cellpadding=5 border='0' "
      "width='100%'><tr ALIGN='left' VALIGN='top'><td width=18>";
  EXPECT_EQ(tables["success"]["short"],
            heading + icon +
                "</td><td><font size=1 color='#00009D' face='Tahoma'>Memory rose to 10.00 by high."
                "</font></td></tr></table>");
  EXPECT_EQ(
      tables["success"]["long"],
      heading + icon + "</td><td>Memory rose to 10.00 by high.</td><td align='center'>1</td></tr></table>");
  EXPECT_THAT(tables["failed"]["short"],
              StartsWith("<br>The following suspicious activity could not be blocked:<br><table "));
  EXPECT_THAT(
      tables["failed"]["short"],
      HasSubstr("<A HREF='http://central.test/x.asp?PostType=UserGetDescription&Mon=RunningProcesses&Desc="
                "web.exe'>web.exe</A> listens on <A HREF='http://central.test/x.asp?PostType="
                "UserGetDescription&Mon=ListeningPorts&Desc=80'>80</A>"));
  EXPECT_THAT(tables["failed"]["short"], HasSubstr("&Mon=SystemUsers&Desc=J€rg'>J€rg</A>"));
}

TEST_F(AlertTest, PagesHoldTheTables) {
  WriteDescriptions();
  const Json document = Document({"alert", "6"});
  const std::string page = document["GetCurrDesc"]["short"];
  const std::string icon =
      "<p><p><IMG SRC='" + folder_.path() + "\\Images\\bug_red.png' ALIGN=bottom HSPACE=4>";
  EXPECT_THAT(page, StartsWith(icon + "On 11/21/2026 at 01:45:05 AM.<br> a Intrusion alert:"));
  EXPECT_THAT(page, HasSubstr(document["GetSummaryTable"]["success"]["short"]));
  EXPECT_THAT(page, HasSubstr(document["GetSummaryTable"]["failed"]["short"]));
  EXPECT_THAT(page,
              EndsWith("<A HREF='undo'><IMG SRC='" + folder_.path() +
                       "\\Images\\undo.png' ALIGN=bottom HSPACE=4>[Allow]</A><A HREF='do'><dotext></A>"));
  const std::string long_page = document["GetCurrDesc"]["long"];
  EXPECT_THAT(long_page, StartsWith("<tr ALIGN='left' VALIGN='top'><td width=18></td><td>" + icon));
  EXPECT_THAT(long_page, HasSubstr(document["GetSummaryTable"]["failed"]["long"]));
  EXPECT_THAT(long_page,
              EndsWith("<font size=1>* Since 11/21/2026 01:45:00 AM, which is the earliest date for "
                       "which Zendrix has historical information</font>"));
}

TEST_F(AlertTest, MonitorTextsByIndex) {
  WriteDescriptions();
  EXPECT_EQ(Document({"alert", "6"})["GetMonitorDesc"],
            Json::parse(R"(["", "", "", "User J€rg at 01:45:05 AM"])"));
}

TEST_F(AlertTest, WithoutDescriptionFilesTheFixedTexts) {
  const Json document = Document({"alert", "4"});
  const std::string text = "* Error with Description file * Memory Utilization 10:high\r\n\r\n";
  EXPECT_EQ(document["GetCurrDesc"]["short"], text);
  EXPECT_EQ(document["GetCurrDesc"]["long"], text);
  EXPECT_EQ(document["GetMonitorDesc"], Json::parse(R"(["* Error with Description file * "])"));
  EXPECT_EQ(document["NotableInfo"].size(), 1U);
}

TEST_F(AlertTest, RowThatDoesNotExistIsStatusThree) {
  for (const char* id : {"8", "0", "x", "6x", "", "99999999999"}) {
    const Json document = DocumentOf(3, {"alert", id});
    EXPECT_THAT(KeysOf(document), ElementsAre("error", "messages", "log")) << id;
  }
  DocumentOf(3, {"alert", "--", "-1"});
  DocumentOf(3, {"decide", "8", "block"});
  DocumentOf(3, {"act", "8", "do"});
}

TEST_F(AlertTest, RowBeyondSixteenBitsFailsInTheLookupAndIsLogged) {
  WriteHistory(std::string(32767 * 2, '\n') + Event(0, "System Users", "a") +
               Event(1, "Aggregation", "A=1;B=2", "0.99"));
  const Json rows = Document({"events"})["rows"];
  ASSERT_EQ(rows.size(), 2U);
  ASSERT_GT(rows[1][0], 32767);
  const Json document = Document({"alert", rows[1][0].dump()});
  EXPECT_EQ(document["NotableInfo"].size(), 1U);
  EXPECT_EQ(document["NotableInfo"][0]["ID"], 0);
  EXPECT_THAT(LogLines(document),
              ::testing::Contains("'EventUtils:GetNotableInfo': Error retrieving Alert details. '' "));
}

TEST_F(AlertTest, ApostropheEndsTheLookupWithWhatWasFound) {
  WriteHistory(Event(0, "System Users", "a") +
               Event(1, "Aggregation", "System Users=a;System Users=b'c", "0.99"));
  const Json document = Document({"alert", "2"});
  EXPECT_EQ(document["NotableInfo"].size(), 2U);
  EXPECT_THAT(LogLines(document),
              ::testing::Contains("'EventUtils:GetNotableInfo': Error retrieving Alert details. 'a' "));
}

class DecideTest : public AlertTest {
 protected:
  static constexpr char kActivations[] = "KorvessaActivations.kvl";
};

TEST_F(DecideTest, BlockFilesTheDecisionAndMarksTheAlert) {
  const Json document = Document({"decide", "6", "block"});
  EXPECT_THAT(KeysOf(document), ElementsAre("activations", "decision", "messages", "log"));
  EXPECT_EQ(document["activations"], Json::parse(R"(["AG,5,1"])"));
  EXPECT_EQ(document["decision"], "1795225505A");
  EXPECT_EQ(
      document["messages"],
      Json::parse(
          R"([{"title": "", "text": "Item 11/21/2026 01:45:05 AM\r\nwill be set as a blocked Alert. This event occurred in the \r\npast and can only be blocked from re-occurrence in the future.\r\nAre you sure?", "icon": "question", "buttons": "yesno"}])"));
}

TEST_F(DecideTest, AllowFilesAZeroAndTheTagAlone) {
  const Json document = Document({"decide", "6", "allow"});
  EXPECT_EQ(document["activations"], Json::parse(R"(["AG,5,0"])"));
  EXPECT_EQ(document["decision"], "1795225505");
  EXPECT_THAT(
      BoxTexts(document),
      ElementsAre("Item 11/21/2026 01:45:05 AM\r\nwill be set as an Allowed Alert.  This event occurred "
                  "\r\nin the past and can only be allowed to occur in the future.\r\nAre you sure?"));
}

TEST_F(DecideTest, AnswerNoLeavesEverythingAsItWas) {
  folder_.Write("KorvessaAlr.kvl", "1795225505A\r\n");
  folder_.Write(kActivations, "other,1\r\n");
  const Json document = Document({"--answer", "no", "--write", "decide", "6", "allow"});
  EXPECT_EQ(document["activations"], Json::parse(R"(["other,1"])"));
  EXPECT_EQ(document["decision"], "1795225505A");
  EXPECT_EQ(document["messages"].size(), 1U);
  EXPECT_EQ(folder_.Read(kActivations), "other,1\r\n");
  EXPECT_TRUE(Document({"--answer", "no", "decide", "1", "allow"})["decision"].is_null());
}

TEST_F(DecideTest, FirstAlertWithItsChangeHasNoCodeButIsMarked) {
  const Json document = Document({"decide", "1", "block"});
  EXPECT_EQ(document["activations"], Json::array());
  EXPECT_EQ(document["decision"], "1795225500A");
}

TEST_F(DecideTest, EarlierDecisionIsReplaced) {
  folder_.Write("KorvessaAlr.kvl", "1795225505A\r\n");
  EXPECT_EQ(Document({"decide", "6", "allow"})["decision"], "1795225505");
}

TEST_F(DecideTest, WritingChangesTheActivationsFileAndTheSettingsOfTheStart) {
  DocumentWriting({"decide", "6", "block"});
  EXPECT_EQ(folder_.Read(kActivations), "AG,5,1\r\n");
  DocumentWriting({"decide", "6", "allow"});
  EXPECT_EQ(folder_.Read(kActivations), "AG,5,0\r\n");
  folder_.Write(kActivations, "x,1\r\nAG,51,1\r\ny,0\r\n");
  EXPECT_EQ(DocumentWriting({"decide", "6", "block"})["activations"],
            Json::parse(R"(["x,1", "AG,5,1", "y,0"])"));
  EXPECT_EQ(folder_.Read(kActivations), "x,1\r\nAG,5,1\r\ny,0\r\n");
  EXPECT_THAT(FilesIn(folder_.path()), ElementsAre(kActivations, "KorvessaAdministratorEventLog.kvl",
                                                   kMonitoring, "zendrix.ini", "zendrix.kvh"));
}

TEST_F(DecideTest, RowsThatAreNoAlertsCanBeDecidedToo) {
  const Json document = Document({"decide", "4", "block"});
  EXPECT_EQ(document["decision"], "1795225503A");
  EXPECT_EQ(document["activations"], Json::array());
}

class ActTest : public DecideTest {};

TEST_F(ActTest, DoActsOnWhatFailedAndTellsOfEach) {
  const Json document = Document({"act", "6", "do"});
  EXPECT_THAT(KeysOf(document), ElementsAre("activations", "messages", "log"));
  EXPECT_EQ(document["activations"], Json::parse(R"(["AG,5,1"])"));
  ASSERT_EQ(document["messages"].size(), 1U);
  EXPECT_EQ(document["messages"][0]["icon"], "information");
  EXPECT_EQ(document["messages"][0]["buttons"], "ok");
  const std::string text = document["messages"][0]["text"];
  EXPECT_THAT(text, EndsWith("\r\n"));
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1);
}

TEST_F(ActTest, UndoActsOnWhatSucceeded) {
  const Json document = Document({"act", "6", "undo"});
  EXPECT_EQ(document["activations"], Json::parse(R"(["AG,5,0"])"));
  EXPECT_EQ(document["messages"].size(), 1U);
}

TEST_F(ActTest, NothingToActOnShowsNoBoxButFilesTheDecision) {
  WriteHistory(Event(0, "Aggregation", "a", "0.99", "", "Q,1") + Event(1, "System Users", "u") +
               Event(2, "Aggregation", "System Users=u;x", "0.99", "", "R,1"));
  const Json document = DocumentWriting({"act", "3", "do"});
  EXPECT_EQ(document["messages"], Json::array());
  EXPECT_EQ(document["activations"], Json::parse(R"(["Q,1"])"));
  EXPECT_EQ(folder_.Read(kActivations), "Q,1\r\n");
}

TEST_F(ActTest, ProgramIsQuarantinedOnlyWhenWriting) {
  const TemporaryFolder elsewhere;
  const std::string program = elsewhere.Path("tool.bin");
  elsewhere.Write("tool.bin", "program");
  WriteHistory(Event(0, "Aggregation", "a", "0.99", "", "Q,1") +
               Event(1, "Running Processes", program + ":44") +
               Event(2, "Aggregation", "Running Processes=" + program + ":44;x", "0.99", "", "R,1") +
               Event(3, "Community", "observed", "0", "Running Processes=failed"));
  const Json pretended = Document({"act", "3", "do"});
  EXPECT_EQ(elsewhere.Read("tool.bin"), "program");
  const Json done = DocumentWriting({"act", "3", "do"});
  EXPECT_EQ(pretended["messages"].size(), 1U);
  EXPECT_EQ(done["messages"].size(), 1U);
  EXPECT_EQ(done["activations"], Json::parse(R"(["Q,1"])"));
}

TEST_F(AlertsTest, CheckedInTheOrderOfTheFile) {
  folder_.Write("KorvessaAlr.kvl", " 1795225502A \r\nA\r\nx1\r\n\t7\r\n1795225500\r\n");
  EXPECT_EQ(Document({"checked"})["checked"],
            Json::parse(R"([{"key": "1795225502", "value": "1795225502A"}, {"key": "7", "value": "7"},
                            {"key": "1795225500", "value": "1795225500"}])"));
}

TEST_F(AlertsTest, CheckedStopsAtASecondLineForAKeyAndLogsIt) {
  folder_.Write("KorvessaAlr.kvl", "5\r\n5A\r\n6\r\n");
  const Json document = Document({"checked"});
  EXPECT_EQ(document["checked"], Json::parse(R"([{"key": "5", "value": "5"}])"));
  EXPECT_THAT(LogLines(document), ElementsAre(HasSubstr("'EventUtils : LoadChkAlrColl'")));
}

TEST_F(AlertsTest, LinksOfEachKind) {
  const auto anchor = [&](const std::string& monitor, const std::string& description) {
    const Json document = Document({"link", "--", monitor, description});
    EXPECT_THAT(KeysOf(document), ElementsAre("anchor", "messages", "log"));
    return document["anchor"].get<std::string>();
  };
  WriteDescriptions();
  const std::string base = "<A HREF='http://central.test/x.asp?PostType=UserGetDescription&Mon=";
  EXPECT_EQ(anchor("TCP Connections", "a.b.c"), base + "TCPConnections&Desc=b.c'>");
  EXPECT_EQ(anchor("TCP Connections", "1.2.3.4"), base + "TCPConnections&Desc=1.2.3.4'>");
  EXPECT_EQ(anchor("Running Processes", "a'b € &"), base + "RunningProcesses&Desc=a'b € &'>");
  EXPECT_EQ(anchor("Logged-on Users", "u"), base + "LoggedonUsers&Desc=u'>");
  EXPECT_EQ(anchor("Logged-On Users", "u"), "<A HREF=''>");
}

TEST_F(AlertsTest, LinkWithoutAConfiguredPortalTakesTheBuiltInBase) {
  EXPECT_THAT(std::string(Document({"link", "System Users", "u"})["anchor"]),
              HasSubstr("/redir.asp?PostType=UserGetDescription&Mon=SystemUsers&Desc=u'>"));
}

TEST_F(AlertsTest, PortalRequestsOfEachKind) {
  WriteDescriptions();
  const auto url = [&](const std::string& kind) {
    const Json document = Document({"portal", kind});
    EXPECT_THAT(KeysOf(document), ElementsAre("url", "messages", "log"));
    return document["url"].get<std::string>();
  };
  const std::string base = "http://central.test/x.asp?PostType=";
  const std::string feedback = url("feedback");
  const std::string start = base + "UserFeedback&HostID=";
  ASSERT_THAT(feedback, StartsWith(start));
  const std::string host = feedback.substr(start.size(), feedback.find("&Product") - start.size());
  EXPECT_FALSE(host.empty());
  const std::size_t at = feedback.find("&Ver=") + 5;
  const std::string version = feedback.substr(at, feedback.find("&Reason=") - at);
  EXPECT_THAT(version, ::testing::MatchesRegex("[0-9]+\\.[0-9]+\\.0\\.[0-9]+"));
  const std::string product = host + "&Product=ZendrixHome&Ver=" + version + "&Reason=";
  EXPECT_EQ(feedback, base + "UserFeedback&HostID=" + product);
  EXPECT_EQ(url("support"), base + "UserSupport&HostID=" + product);
  EXPECT_EQ(url("newver"), base + "UserCheckNewVersion&HostID=" + host + "&Ver=" + version);
  EXPECT_EQ(url("survey"), base + "UserSurvey&HostID=" + product + "inUse");
  EXPECT_EQ(url("tour"), base + "UserGettingStarted&HostID=" + product);
}

TEST_F(AlertsTest, PortalUrlIsNullWithoutTheLibraryThatKnowsTheHost) {
  const TemporaryFolder alone;
  RunFrom(alone.path());
  for (const auto& [kind, place] : {std::pair{"feedback", "frmNewUI : Support_Click"},
                                    {"support", "frmNewUI : Support_Click"},
                                    {"newver", "frmNewUI : NewVer_Click"},
                                    {"survey", "frmNewUI : TakeSurvey"},
                                    {"tour", "frmTour : Form_Load"}}) {
    const Json document = Document({"portal", kind});
    EXPECT_THAT(KeysOf(document), ElementsAre("url", "messages", "log"));
    EXPECT_EQ(document["url"], nullptr) << kind;
    EXPECT_THAT(LogLines(document), ElementsAre(StartsWith("'" + std::string(place) + "': 53: "))) << kind;
  }
}

}  // namespace
}  // namespace zendrix::test
