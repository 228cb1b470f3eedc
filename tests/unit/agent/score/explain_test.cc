#include "agent/score/explain.h"

#include "support/temporary_folder.h"
#include "unit/agent/score/scored_host.h"

namespace zendrix::agent {
namespace {

using ::testing::HasSubstr;

class ExplainTest : public testing::Test {
 protected:
  ExplainTest() {
    pc.KeepIn(Path());
    pc.Put("/tmp/x", "evil");
    pc.Start("/tmp/x", "/usr/bin/bash");
    pc.Autostart("x.desktop", "/tmp/x");
    pc.Wait(5);
    pc.Wait(5);
  }
  std::string Path() { return folder_.Path("memory.db"); }
  std::string Explained(const std::string& id, int status = 0) {
    std::string text;
    EXPECT_EQ(Explain(Path(), id, text), status);
    return text;
  }

  test::TemporaryFolder folder_;
  ScoredHost pc;
};

TEST_F(ExplainTest, SaysWhatTheRiskIsMadeOfWhileTheAgentRuns) {
  ASSERT_EQ(pc.alerts.size(), 1U);
  const std::string text = Explained(std::to_string(pc.alerts[0].utc));
  EXPECT_THAT(text, HasSubstr("/tmp/x\n2023-11-15 00:00:0"));
  EXPECT_THAT(text, HasSubstr("risk 0.9900 after 1 day of watching\n"));
  EXPECT_THAT(text, HasSubstr("SHA-256 " + Sha256Of("evil") + "\n"));
  EXPECT_THAT(text, HasSubstr("  0.92  runs from /tmp "));
  EXPECT_THAT(text, HasSubstr("  0.50  first seen today "));
  EXPECT_THAT(text, HasSubstr("hard: raises an alert at any time"));
  EXPECT_THAT(text, HasSubstr("Each takes its share of the doubt: 0.07 x 0.08 x 0.25 x 0.50"));
  EXPECT_THAT(text, HasSubstr("It is an alert because of a hard fact.\n"));
}

TEST_F(ExplainTest, AlertGoesByItsSecondItsCodeOrADigitsOfIt) {
  const std::string code = pc.alerts.at(0).alert.code;
  const std::string text = Explained(code);
  EXPECT_EQ(Explained(code.substr(3, 8)), text);
  EXPECT_EQ(Explained(code.substr(3, 5), 1), "There is no alert " + code.substr(3, 5) + ".\n");
  EXPECT_EQ(Explained("17", 1), "There is no alert 17.\n");
}

TEST_F(ExplainTest, WithoutANameListsTheNewest) {
  EXPECT_THAT(Explained(""), HasSubstr("  alert   0.99  /tmp/x\n"));
}

TEST_F(ExplainTest, StoredFactsOfTheWeekOfLearningAreCalledSo) {
  pc.Start("/home/ann/.x/y", "/usr/bin/bash");
  pc.Wait(5);
  pc.Wait(5);
  ASSERT_EQ(pc.quiet.size(), 1U);
  EXPECT_THAT(Explained(std::to_string(pc.quiet[0].utc)),
              HasSubstr("had watched for 1 day and was learning"));
  EXPECT_THAT(Explained(""), HasSubstr("  stored  0.96  /home/ann/.x/y\n"));
}

TEST_F(ExplainTest, MissingFileIsToldAndNotMade) {
  std::string text;
  EXPECT_EQ(Explain(folder_.Path("none.db"), "", text), 1);
  EXPECT_THAT(text, HasSubstr("cannot be read"));
  EXPECT_FALSE(std::filesystem::exists(folder_.Path("none.db")));
}

TEST(ExplainAlertTest, NamesOfTheHostSteerNoTerminal) {
  AlertRecord record;
  record.subject = "/tmp/\x1B[2J\xE9";
  EXPECT_THAT(ExplainAlert(record), ::testing::StartsWith("/tmp/?[2J?\n"));
}

TEST(ExplainAlertTest, TellsAFadedWeightAndThePackage) {
  AlertRecord record;
  record.package = "tool";
  record.package_factor = 0.3;
  record.state = AlertState::kHeldBack;
  Fact fact;
  fact.weight = 0.3;
  fact.full_weight = 0.6;
  fact.days = 3;
  fact.count = 4;
  fact.text = "runs from a hidden place";
  record.facts = {fact};
  record.doubt = 0.7;
  const std::string text = ExplainAlert(record);
  EXPECT_THAT(text, HasSubstr("full weight 0.60, seen on 3 days before, 4 times\n"));
  EXPECT_THAT(text, HasSubstr("file of the package tool\n"));
  EXPECT_THAT(text, HasSubstr("times 0.3 for an unchanged file of a package being installed"));
  EXPECT_THAT(text, HasSubstr("is no alert: at that time one might leave a doubt of 0.0900 at most"));
}

}  // namespace
}  // namespace zendrix::agent
