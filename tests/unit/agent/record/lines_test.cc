#include "agent/record/lines.h"

#include <set>
#include <sstream>

#include "unit/agent/fake_host.h"

namespace zendrix::agent {
namespace {

const Stamp kStamp{1700000000, "vm", "42"};

std::string Home(const Batch& batch) {
  return RenderBatch(Form::kHome, kStamp, batch).bytes;
}
std::string Admin(const Batch& batch) {
  return RenderBatch(Form::kAdmin, kStamp, batch).bytes;
}

Batch Of(std::vector<Event> events) {
  Batch batch;
  batch.events = std::move(events);
  return batch;
}

Event Measured() {
  Event event;
  event.kind = EventKind::kMeasured;
  event.item = MakeItem(monitor::kMemory, "17.25:firefox");
  event.original = 12;
  event.change = 5.25;
  event.reading = "17.25 percent";
  event.reading_before = "12.00 percent";
  return event;
}

Alert SampleAlert() {
  Alert alert;
  alert.subject = "/tmp/x";
  alert.rules = {Rule::kProgramInTemporaryFolder, Rule::kPortOpenToAll};
  alert.risk = 0.956;
  alert.members = {MakeItem(monitor::kProcesses, "/tmp/x:7"), MakeItem(monitor::kPorts, "4444:/tmp/x")};
  alert.code = "AG,0123456789ABCDEF01234567";
  alert.change = "0.95600000000042";
  alert.facts = {"runs from /tmp", "opened port 4444"};
  alert.has_forerunner = true;
  return alert;
}

TEST(HomeLines, EventIsAFullLineWithSevenFields) {
  EXPECT_EQ(Home(Of(ChangeEvents({{}, {MakeItem(monitor::kProcesses, "/bin/x:7")}}))),
            "1700000000,vm,42,Running Processes|0|1|/bin/x:7|observed|RP,100,1|0\r\n");
}

TEST(HomeLines, WhatWentHasANegativeChange) {
  EXPECT_EQ(Home(Of(ChangeEvents({{MakeItem(monitor::kPorts, "22")}, {}}))),
            "1700000000,vm,42,Listening Ports|1|-1|22|observed|LP,200,1|0\r\n");
}

TEST(HomeLines, EventsOfOneMonitorAndCodeShareALine) {
  const auto text = RenderBatch(
      Form::kHome, kStamp,
      Of(PresentEvents({MakeItem(monitor::kAccounts, "root"),
                        MakeItem(monitor::kAccounts, "pg", {Rule::kServiceAccountWithShell}),
                        MakeItem(monitor::kAccounts, "ann"), MakeItem(monitor::kProcesses, "/bin/x:7")})));
  EXPECT_EQ(text.bytes,
            "1700000000,vm,42,System Users|1|0|root * ann|observed|SU,500,1|0\r\n"
            "1700000000,vm,42,System Users|1|0|pg|observed|SU,503,1|0\r\n"
            "1700000000,vm,42,Running Processes|1|0|/bin/x:7|observed|RP,100,1|0\r\n");
  EXPECT_EQ(text.rows, 5U) << "a line of two rows uses up three numbers";
}

TEST(HomeLines, MeasurementCarriesTheValueBeforeAndTheChange) {
  EXPECT_EQ(Home(Of({Measured()})),
            "1700000000,vm,42,Memory Utilization|12|5.25|17.25:firefox|observed|MU,700,1|0\r\n");
}

TEST(HomeLines, SessionBeginsWithALineOfOneDescription) {
  Batch batch = Of(PresentEvents({MakeItem(monitor::kAccounts, "root")}));
  batch.begins_session = true;
  EXPECT_EQ(Home(batch),
            "1700000000,vm,42,System|0|0|Begin Session Refresh.|observed|SY,900,1|0\r\n"
            "1700000000,vm,42,System Users|1|0|root|observed|SU,500,1|0\r\n");
}

TEST(HomeLines, AlertIsAnAggregationLineAndItsCommunityLine) {
  Batch batch;
  batch.alerts = {SampleAlert()};
  EXPECT_EQ(Home(batch),
            "1700000000,vm,42,Aggregation|0.9560|0.95600000000042|"
            "Running Processes=/tmp/x:7;Listening Ports=4444:/tmp/x|"
            "runs from /tmp; opened port 4444|AG,0123456789ABCDEF01234567,2|0\r\n"
            "1700000000,vm,42,Community|0|0|reaction to AG_0123456789ABCDEF01234567_2|"
            "Running Processes=failed (the Agent only observes);"
            "Listening Ports=failed (the Agent only observes)|CO,0,1|0\r\n");
}

TEST(HomeLines, WhatBecameOfABlockedProgramStandsBehindItsRunningAlone) {
  Batch batch;
  batch.alerts = {SampleAlert()};
  batch.alerts[0].reaction = "success (moved to quarantine again)";
  EXPECT_NE(Home(batch).find("|Running Processes=success (moved to quarantine again);"
                             "Listening Ports=failed (the Agent only observes)|"),
            std::string::npos)
      << Home(batch);
}

TEST(HomeLines, RiskBeforeTheReactionIsThatOfTheAlertWhateverBecameOfIt) {
  Batch batch;
  batch.alerts = {SampleAlert()};
  for (const char* reaction : {"", "success (moved to quarantine again)", "failed (blocked before)"}) {
    batch.alerts[0].reaction = reaction;
    EXPECT_NE(Home(batch).find(",Aggregation|0.9560|0.95600000000042|"), std::string::npos) << Home(batch);
  }
}

TEST(HomeLines, AlertWithoutAForerunnerGoesAheadOfItself) {
  Batch batch;
  batch.alerts = {SampleAlert()};
  const std::string once = Home(batch);
  batch.alerts[0].has_forerunner = false;
  EXPECT_EQ(Home(batch), once.substr(0, once.find('\n') + 1) + once);
}

TEST(HomeLines, QuietAlertIsOneLineAndNoReaction) {
  Batch batch;
  batch.alerts = {SampleAlert()};
  batch.alerts[0].change = "-0.95600000000042";
  batch.alerts[0].has_forerunner = false;
  const std::string text = Home(batch);
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1);
  EXPECT_NE(text.find("|0.9560|-0.95600000000042|"), std::string::npos);
  EXPECT_EQ(Admin(batch), "");
}

TEST(HomeLines, NoTwoAlertsShareASecond) {
  Batch batch = Of(PresentEvents({MakeItem(monitor::kAccounts, "root")}));
  batch.alerts = {SampleAlert(), SampleAlert(), SampleAlert()};
  const auto text = RenderBatch(Form::kHome, kStamp, batch);
  EXPECT_NE(text.bytes.find("1700000000,vm,42,System Users|"), std::string::npos);
  for (const char* second : {"1700000000", "1700000001", "1700000002"}) {
    EXPECT_NE(text.bytes.find(std::string(second) + ",vm,42,Aggregation|"), std::string::npos) << second;
    EXPECT_NE(text.bytes.find(std::string(second) + ",vm,42,Community|"), std::string::npos) << second;
  }
  EXPECT_EQ(text.last_second, 1700000002);
}

TEST(HomeLines, QuietAlertsTakeNoSecondOfTheirOwn) {
  Batch batch;
  batch.alerts = {SampleAlert(), SampleAlert(), SampleAlert(), SampleAlert()};
  batch.alerts[0].change = batch.alerts[1].change = "-0.1";
  EXPECT_EQ(RenderBatch(Form::kHome, kStamp, batch).last_second, 1700000001);
  EXPECT_EQ(SecondOfAlert(batch.alerts, 1, 5), 5);
  EXPECT_EQ(SecondOfAlert(batch.alerts, 2, 5), 5);
  EXPECT_EQ(SecondOfAlert(batch.alerts, 3, 5), 6);
}

TEST(HomeLines, LongListOfItemsTakesMoreThanOneLine) {
  std::vector<Item> items;
  for (int i = 0; i < 100; ++i)
    items.push_back(MakeItem(monitor::kAutorun, std::to_string(i) + std::string(197, 'x')));
  const auto text = RenderBatch(Form::kHome, kStamp, Of(PresentEvents(items)));
  EXPECT_EQ(text.rows, 103U);
  EXPECT_EQ(std::count(text.bytes.begin(), text.bytes.end(), '\n'), 3);
}

TEST(AggregationDescription, DescriptionsOfOneMonitorAreGrouped) {
  EXPECT_EQ(AggregationDescription({MakeItem(monitor::kProcesses, "a:1"), MakeItem(monitor::kPorts, "22:a"),
                                    MakeItem(monitor::kProcesses, "a:2")}),
            "Running Processes=a:1 * a:2;Listening Ports=22:a");
}

TEST(AggregationDescription, SinglePairEndsInASemicolonToBeReadAsAList) {
  EXPECT_EQ(AggregationDescription({MakeItem(monitor::kProcesses, "a:1")}), "Running Processes=a:1;");
}

TEST(AggregationDescription, DescriptionWithAnEqualsSignIsAlwaysAPairOfItsOwn) {
  EXPECT_EQ(AggregationDescription({MakeItem(monitor::kAutorun, "f=a"), MakeItem(monitor::kAutorun, "g=b"),
                                    MakeItem(monitor::kProcesses, "a:1")}),
            "Autorun Registry=f=a;Autorun Registry=g=b;Running Processes=a:1");
}

TEST(AggregationDescription, AlertKeepsOnlyTheMembersThatFit) {
  Alert alert = SampleAlert();
  alert.members.clear();
  for (int i = 10; i < 40; ++i) {
    alert.members.push_back(MakeItem(monitor::kProcesses, std::to_string(i) + std::string(198, 'x')));
  }
  Batch batch;
  batch.alerts = {alert};
  const std::string text = Home(batch);
  // As the console writes the pairs out, each takes "Running Processes=" + 200 + ";": seven fit into 1536.
  EXPECT_NE(text.find(" * 16x"), std::string::npos);
  EXPECT_EQ(text.find(" * 17x"), std::string::npos);
  EXPECT_NE(text.find("|AG,0123456789ABCDEF01234567,7|0\r\n"), std::string::npos);
}

TEST(AdminLines, FiveFieldsWithTheChangeCode) {
  EXPECT_EQ(Admin(Of(ChangeEvents({{MakeItem(monitor::kPorts, "22:/usr/sbin/sshd")},
                                   {MakeItem(monitor::kProcesses, "/bin/x:7")}}))),
            "1700000000,vm,Listening Ports,R,22:/usr/sbin/sshd\r\n"
            "1700000000,vm,Running Processes,A,/bin/x:7\r\n");
}

TEST(AdminLines, MeasurementTakesThePlaceOfTheOneBefore) {
  EXPECT_EQ(Admin(Of({Measured()})),
            "1700000000,vm,Memory Utilization,R,12.00 percent\r\n"
            "1700000000,vm,Memory Utilization,A,17.25 percent\r\n");
}

TEST(AdminLines, SessionMarkerThenABaselineOfEachMonitor) {
  Batch batch = Of(PresentEvents({MakeItem(monitor::kAccounts, "root"), MakeItem(monitor::kPorts, "22")}));
  batch.begins_session = true;
  const std::string text = Admin(batch);
  EXPECT_TRUE(
      text.starts_with("1700000000,vm,System,B,Begin Session Refresh.\r\n"
                       "1700000000,vm,Monitoring Agent,B,** Start baseline **\r\n"
                       "1700000000,vm,Monitoring Agent,B,** End baseline **\r\n"
                       "1700000000,vm,System Users,B,** Start baseline **\r\n"
                       "1700000000,vm,System Users,A,root\r\n"
                       "1700000000,vm,System Users,B,** End baseline **\r\n"
                       "1700000000,vm,Logged-On Users,B,** Start baseline **\r\n"
                       "1700000000,vm,Logged-On Users,B,** End baseline **\r\n"));
  EXPECT_NE(text.find("1700000000,vm,Listening Ports,B,** Start baseline **\r\n"
                      "1700000000,vm,Listening Ports,A,22\r\n"
                      "1700000000,vm,Listening Ports,B,** End baseline **\r\n"),
            std::string::npos);
  EXPECT_TRUE(text.ends_with("1700000000,vm,Network Transmission Rate,B,** End baseline **\r\n"));
}

// What merely happened was left out of a session that could not be written for a while.
TEST(AdminLines, WhatHappenedBeforeASessionIsWrittenStandsBehindItsBaselines) {
  Batch batch = Of({HappenedEvent(MakeItem(monitor::kSystem, "failed logins 7"))});
  batch.begins_session = true;
  EXPECT_TRUE(Admin(batch).ends_with("B,** End baseline **\r\n1700000000,vm,System,N,failed logins 7\r\n"));
}

TEST(AdminLines, AlertIsANotableLineThatNamesItsMonitorsAsWords) {
  Batch batch;
  batch.alerts = {SampleAlert()};
  EXPECT_EQ(
      Admin(batch),
      "1700000000,vm,Monitor Analysis Agent #1,N,Risk 0.9560 from Running Processes and Listening Ports - "
      "/tmp/x - runs from /tmp; opened port 4444\r\n");
}

// The monitors whose rows the console marks for a line: those whose last word stands in it between blanks.
std::set<std::string_view> NamedIn(const std::string& line) {
  const auto upper = [](std::string_view text) {
    std::string result(text);
    for (char& c : result) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return result;
  };
  std::set<std::string> words;
  std::istringstream stream(upper(line.substr(line.find(",N,") + 3)));
  for (std::string word; stream >> word;) words.insert(word);
  std::set<std::string_view> named;
  for (const std::string_view name : AllMonitors()) {
    if (words.contains(upper(name.substr(name.rfind(' ') + 1)))) named.insert(name);
  }
  return named;
}

// "Users" is the last word of two monitors.
std::set<std::string_view> WithOneWord(std::set<std::string_view> names) {
  if (names.contains(monitor::kAccounts) || names.contains(monitor::kLogins))
    names.insert({monitor::kAccounts, monitor::kLogins});
  return names;
}

// "while the Agent ran" marked the Monitoring Agent's newest row, "system folders" one of System.
TEST(AdminLines, NoRuleAndNoNameMarksARowThatTheAlertIsNotAbout) {
  std::vector<std::string> facts = {"ran while the agent ran in the SYSTEM folder",
                                    "processes  users rate #1", "System"};
  for (std::size_t i = 0; i < kRuleCount; ++i) facts.emplace_back(FactsOf(static_cast<Rule>(i)).text);
  for (const std::string_view name : AllMonitors()) facts.emplace_back(name);
  for (const std::string_view name : AllMonitors()) {
    for (const std::string& fact : facts) {
      Batch batch;
      batch.alerts = {SampleAlert()};
      batch.alerts[0].members = {MakeItem(name, "x")};
      batch.alerts[0].subject = "/tmp/my System folder";
      batch.alerts[0].facts = {fact, "between", fact};
      const std::string line = Admin(batch);
      EXPECT_EQ(NamedIn(line), WithOneWord({name})) << line;
    }
  }
}

TEST(AdminLines, WordThatIsNoMonitorStandsInBrackets) {
  Batch batch;
  batch.alerts = {SampleAlert()};
  batch.alerts[0].members = {MakeItem(monitor::kAccounts, "eve")};
  batch.alerts[0].subject = "eve";
  batch.alerts[0].facts = {"account was added while the Agent ran", "Agents are not meant"};
  EXPECT_TRUE(Admin(batch).ends_with(
      "from (System) Users - eve - account was added while the (Agent) ran; Agents are not meant\r\n"))
      << Admin(batch);
}

TEST(AdminLines, FailedLoginsAreNotable) {
  Event event;
  event.kind = EventKind::kHappened;
  event.item = MakeItem(monitor::kSystem, "failed logins 7");
  EXPECT_EQ(Admin(Of({event})), "1700000000,vm,System,N,failed logins 7\r\n");
}

TEST(Lines, RowsAreCountedAsTheConsoleNumbersThem) {
  Batch batch =
      Of(PresentEvents({MakeItem(monitor::kAccounts, "root"), MakeItem(monitor::kAccounts, "ann")}));
  batch.begins_session = true;
  batch.alerts = {SampleAlert()};
  EXPECT_EQ(RenderBatch(Form::kHome, kStamp, batch).rows, 6U);
  const auto markers = 2 * (ItemMonitors().size() + 3);  // of each monitor, memory and traffic among them
  EXPECT_EQ(RenderBatch(Form::kAdmin, kStamp, batch).rows, 1U + markers + 2U + 1U);
}

}  // namespace
}  // namespace zendrix::agent
