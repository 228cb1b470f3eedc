#include "agent/events/ledger.h"

#include "unit/agent/fake_host.h"

namespace zendrix::agent {
namespace {

class LedgerTest : public ::testing::Test {
 protected:
  // Events since the last call, as "+description" and "-description".
  std::vector<std::string> Changes() {
    std::vector<std::string> texts;
    for (const Event& event : events)
      texts.push_back((event.kind == EventKind::kAdded ? "+" : "-") + event.item.description);
    events.clear();
    return texts;
  }
  void Came(std::string_view name, const std::string& description, RuleSet rules = {}) {
    ledger.Came(MakeItem(name, description, rules), events);
  }
  void Went(std::string_view name, const std::string& description) {
    ledger.Went(MakeItem(name, description), events);
  }

  Ledger ledger;
  std::vector<Event> events;
};

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST_F(LedgerTest, TellsWhatCameAndWhatWentOnce) {
  Came(monitor::kPorts, "22:/usr/sbin/sshd");
  Came(monitor::kPorts, "22:/usr/sbin/sshd");
  EXPECT_THAT(Changes(), ElementsAre("+22:/usr/sbin/sshd"));
  Went(monitor::kPorts, "22:/usr/sbin/sshd");
  Went(monitor::kPorts, "22:/usr/sbin/sshd");
  EXPECT_THAT(Changes(), ElementsAre("-22:/usr/sbin/sshd"));
  EXPECT_EQ(ledger.size(), 0U);
}

TEST_F(LedgerTest, WhatComesBearsTheRuleOfNews) {
  Came(monitor::kPorts, "22:/usr/sbin/sshd");
  EXPECT_TRUE(events[0].item.rules.Has(Rule::kPortNew));
  EXPECT_FALSE(ledger.Items()[0].rules.Has(Rule::kPortNew)) << "it is news of its coming only";
}

TEST_F(LedgerTest, ProgramThatTakesTheProcessOverSendsTheOldOneAway) {
  Came(monitor::kProcesses, "/bin/sh:7");
  Came(monitor::kProcesses, "/bin/ls:7");
  EXPECT_THAT(Changes(), ElementsAre("+/bin/sh:7", "-/bin/sh:7", "+/bin/ls:7"));
  Went(monitor::kProcesses, "/bin/ls:7");
  EXPECT_EQ(ledger.size(), 0U);
}

TEST_F(LedgerTest, ProcessGoesByItsNumberUnderTheNameThatItWasToldBy) {
  Came(monitor::kProcesses, "/bin/ls:7");
  Went(monitor::kProcesses, "unknown:7");
  EXPECT_THAT(Changes(), ElementsAre("+/bin/ls:7", "-/bin/ls:7"));
}

TEST_F(LedgerTest, NewFactsAboutWhatIsThereAreToldAsItsComingAgain) {
  Came(monitor::kProcesses, "/bin/x:7");
  Came(monitor::kProcesses, "/bin/x:7", {Rule::kProgramDeleted});
  EXPECT_EQ(events.size(), 3U);
  EXPECT_TRUE(events[2].item.rules.Has(Rule::kProgramDeleted));
  Came(monitor::kProcesses, "/bin/x:7", {Rule::kProgramDeleted});
  EXPECT_EQ(events.size(), 3U);
}

TEST_F(LedgerTest, ItemsStandInTheOrderOfTheirMonitorsAndOfComing) {
  Came(monitor::kPorts, "80:/a");
  Came(monitor::kAccounts, "root");
  Came(monitor::kAccounts, "ann");
  std::vector<std::string> names;
  for (const Item& item : ledger.Items()) names.push_back(item.description);
  EXPECT_THAT(names, ElementsAre("root", "ann", "80:/a"));
}

TEST_F(LedgerTest, EqualDescriptionsOfDifferentThingsAreBothKept) {
  Item first = MakeItem(monitor::kLogins, "ann from vm");
  Item second = first;
  second.identity = "pts/1";
  ledger.Came(first, events);
  ledger.Came(second, events);
  EXPECT_EQ(ledger.size(), 2U);
}

TEST_F(LedgerTest, FloodFindsAnEndAndIsCounted) {
  for (std::size_t i = 0; i < Ledger::MostOf(monitor::kProcesses) + 7; ++i)
    Came(monitor::kProcesses, "/tmp/x:" + std::to_string(i));
  EXPECT_EQ(ledger.size(), Ledger::MostOf(monitor::kProcesses));
  EXPECT_EQ(ledger.TakeLeftOut(), 7U);
  EXPECT_EQ(ledger.TakeLeftOut(), 0U);
}

TEST_F(LedgerTest, LookThatTakesASourcesPlaceTellsOnlyTheDifference) {
  Came(monitor::kProcesses, "/container/sh:7");
  Came(monitor::kProcesses, "/bin/gone:8");
  Came(monitor::kPorts, "80:an unknown program");
  Came(monitor::kAccounts, "root");
  events.clear();
  const std::vector<std::string_view> monitors = {monitor::kProcesses, monitor::kPorts};
  ledger.Reconcile(monitors,
                   {MakeItem(monitor::kProcesses, "/bin/sh:7"), MakeItem(monitor::kProcesses, "/bin/new:9"),
                    MakeItem(monitor::kPorts, "80:/usr/bin/httpd")},
                   events);
  EXPECT_THAT(Changes(), ElementsAre("-/bin/gone:8", "+/bin/new:9"));
}

TEST_F(LedgerTest, ReconciledConnectionsAreComparedByAddressAndPort) {
  Came(monitor::kConnections, "10.0.0.1:443:/bin/a");
  Came(monitor::kConnections, "10.0.0.1:80:/bin/a");
  events.clear();
  const std::vector<std::string_view> monitors = {monitor::kConnections};
  ledger.Reconcile(monitors, {MakeItem(monitor::kConnections, "10.0.0.1:443")}, events);
  EXPECT_THAT(Changes(), ElementsAre("-10.0.0.1:80:/bin/a"));
}

TEST_F(LedgerTest, ManyThingsOfOneMonitorTakeNoPlaceOfAnother) {
  for (std::size_t i = 0; i < Ledger::kMostItems; ++i) Came(monitor::kFolders, "/tmp/" + std::to_string(i));
  EXPECT_EQ(ledger.size(), Ledger::MostOf(monitor::kFolders));
  EXPECT_EQ(ledger.TakeLeftOut(), Ledger::kMostItems - Ledger::MostOf(monitor::kFolders));
  events.clear();
  Came(monitor::kAccounts, "eve");
  EXPECT_THAT(Changes(), ElementsAre("+eve"));
}

TEST_F(LedgerTest, PlacesOfAllMonitorsTogetherFitIntoAFile) {
  std::size_t sum = 0;
  for (const std::string_view name : ItemMonitors()) sum += Ledger::MostOf(name);
  EXPECT_EQ(sum, Ledger::kMostItems);
}

TEST_F(LedgerTest, WhatFoundNoPlaceTakesTheNextThatBecomesFree) {
  const std::size_t most = Ledger::MostOf(monitor::kLogins);
  for (std::size_t i = 0; i < most + 3; ++i) Came(monitor::kLogins, "user" + std::to_string(i));
  Came(monitor::kLogins, "user" + std::to_string(most));
  EXPECT_EQ(ledger.TakeLeftOut(), 3U) << "each once";
  Went(monitor::kLogins, "user" + std::to_string(most + 1));
  events.clear();
  Went(monitor::kLogins, "user0");
  Went(monitor::kLogins, "user1");
  Went(monitor::kLogins, "user2");
  EXPECT_THAT(Changes(), ElementsAre("-user0", "+user" + std::to_string(most), "-user1",
                                     "+user" + std::to_string(most + 2), "-user2"));
  EXPECT_EQ(ledger.size(), most - 1);
}

TEST_F(LedgerTest, ComparisonFreesPlacesAndForgetsWhatWaited) {
  const std::size_t most = Ledger::MostOf(monitor::kLogins);
  for (std::size_t i = 0; i < most + 1; ++i) Came(monitor::kLogins, "user" + std::to_string(i));
  events.clear();
  const std::string_view name = monitor::kLogins;
  ledger.Reconcile({&name, 1}, {MakeItem(monitor::kLogins, "user5"), MakeItem(monitor::kLogins, "new")},
                   events);
  EXPECT_EQ(ledger.size(), 2U);
  events.clear();
  for (std::size_t i = 0; i < most - 2; ++i) Came(monitor::kLogins, "other" + std::to_string(i));
  EXPECT_EQ(ledger.size(), most);
  events.clear();
  Went(monitor::kLogins, "new");
  EXPECT_THAT(Changes(), ElementsAre("-new"));
}

}  // namespace
}  // namespace zendrix::agent
