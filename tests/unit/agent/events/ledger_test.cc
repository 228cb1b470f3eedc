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
  for (std::size_t i = 0; i < Ledger::kMostItems + 7; ++i)
    Came(monitor::kProcesses, "/tmp/x:" + std::to_string(i));
  EXPECT_EQ(ledger.size(), Ledger::kMostItems);
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

}  // namespace
}  // namespace zendrix::agent
