#include "mail/alert_line.h"

#include "alert_text.h"

namespace zendrix::mail {
namespace {

using test::AlertText;
using ::testing::ElementsAre;
using ::testing::Pair;

TEST(ParseAlert, TakesTheAgentsLineApart) {
  const auto alert = ParseAlert(
      AlertText(1795225505, "AG,EB,3", "Running Processes=/tmp/a:1 * /tmp/b:2;Listening Ports=4444:/tmp/a"));
  ASSERT_TRUE(alert);
  EXPECT_EQ(alert->second, 1795225505);
  EXPECT_EQ(alert->host, "desk");
  EXPECT_DOUBLE_EQ(alert->risk, 0.98120000000001);
  EXPECT_EQ(alert->code, "AG,EB,3");
  EXPECT_EQ(alert->facts, "runs from /tmp; first seen in 41 days");
  EXPECT_THAT(alert->pairs,
              ElementsAre(Pair("Running Processes", "/tmp/a:1"), Pair("Running Processes", "/tmp/b:2"),
                          Pair("Listening Ports", "4444:/tmp/a")));
  EXPECT_EQ(alert->Key(), "1795225505 AG,EB,3");
}

TEST(ParseAlert, WhatItKeepsReadsAsTheSameAlert) {
  const auto alert = ParseAlert(AlertText(1795225505, "AG,EB,3", "Autorun Registry=a.desktop=/tmp/a;"));
  ASSERT_TRUE(alert);
  const auto again = ParseAlert(alert->line);
  ASSERT_TRUE(again);
  EXPECT_EQ(again->line, alert->line);
  EXPECT_EQ(again->Key(), alert->Key());
  EXPECT_EQ(again->host, "desk");
  EXPECT_EQ(again->facts, alert->facts);
  EXPECT_EQ(again->pairs, alert->pairs);
  EXPECT_DOUBLE_EQ(again->risk, alert->risk);
  EXPECT_THAT(alert->pairs, ElementsAre(Pair("Autorun Registry", "a.desktop=/tmp/a")));
}

TEST(ParseAlert, OtherLinesAreNone) {
  EXPECT_FALSE(ParseAlert(""));
  EXPECT_FALSE(ParseAlert("1795225505,desk,812,Running Processes|1|1|/usr/bin/a:1|observed|RP,1,1|0"));
  EXPECT_FALSE(ParseAlert("1795225505,desk,812,Community|0|0|a|b|CM,1|0"));
  EXPECT_FALSE(ParseAlert("1795225505,desk,Analysis,N,Risk 0.98"));
  EXPECT_FALSE(ParseAlert("1795225505,desk,812,Aggregation|0.9|0.9|a=b;|c|d"));     // six fields
  EXPECT_FALSE(ParseAlert("1795225505,desk,Aggregation|0.9|0.9|a=b;|c|d|0"));       // three items
  EXPECT_FALSE(ParseAlert("1795225505,desk,812,Aggregation,|0.9|0.9|a=b;|c|d|0"));  // five
  EXPECT_FALSE(ParseAlert("yesterday,desk,812,Aggregation|0.9|0.9|a=b;|c|d|0"));    // no second
  EXPECT_FALSE(ParseAlert("4000000000,desk,812,Aggregation|0.9|0.9|a=b;|c|d|0"));
  EXPECT_FALSE(ParseAlert("-5,desk,812,Aggregation|0.9|0.9|a=b;|c|d|0"));
}

TEST(ParseAlert, NegativeChangeIsStoredAndNoAlert) {
  EXPECT_FALSE(ParseAlert(AlertText(1795225505, "AG,1,1", "a=b;", "-0.98")));
  EXPECT_TRUE(ParseAlert(AlertText(1795225505, "AG,1,1", "a=b;", "0")));
}

TEST(ParseAlert, ControlCharactersBecomeBlanksAndWidthsAreTheConsoles) {
  const auto alert = ParseAlert("1795225505,desk,812,Aggregation|0|0.9|a=" + std::string(2000, 'x') +
                                ";|f\x01g\ri" + std::string(2000, 'z') + "|" + std::string(200, 'c') + "|0");
  ASSERT_TRUE(alert);
  ASSERT_EQ(alert->pairs.size(), 1U);
  EXPECT_EQ(alert->pairs[0].second.size(), 1534U);
  EXPECT_EQ(alert->facts, "f g i" + std::string(1531, 'z'));
  EXPECT_EQ(alert->code.size(), 100U);
}

TEST(RiskPercent, IsTheConsoles) {
  EXPECT_EQ(RiskPercent(*ParseAlert(AlertText(1, "c", "a=b;", "0.99"))), 100);
  EXPECT_EQ(RiskPercent(*ParseAlert(AlertText(1, "c", "a=b;", "0.9"))), 91);
  EXPECT_EQ(RiskPercent(*ParseAlert(AlertText(1, "c", "a=b;", "1e300"))), 100);
}

}  // namespace
}  // namespace zendrix::mail
