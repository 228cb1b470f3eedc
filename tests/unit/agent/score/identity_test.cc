#include "agent/score/identity.h"

#include <set>

namespace zendrix::agent {
namespace {

TEST(AlertCode, NamesItsSubjectInOneWidth) {
  const std::string code = AlertCode("key", "/tmp/x");
  EXPECT_THAT(code, ::testing::MatchesRegex("AG,[0-9A-F]{24}"));
  EXPECT_EQ(code, AlertCode("key", "/tmp/x"));
  EXPECT_NE(code, AlertCode("key", "/tmp/y"));
}

TEST(AlertCode, OfAnotherHostIsAnother) {
  EXPECT_NE(AlertCode("key", "/tmp/x"), AlertCode("other", "/tmp/x"));
  EXPECT_NE(AlertCode("key", "/tmp/x"), AlertCode("key/", "tmp/x"));
}

TEST(Identities, ChangeIsTheRiskWithTheSubjectBehindIt) {
  Identities identities;
  const std::string code = AlertCode("", "/tmp/x");
  const std::string change = identities.ChangeOf(0.98244, true, code);
  EXPECT_THAT(change, ::testing::MatchesRegex("0\\.9824[0-9]{10}"));
  EXPECT_EQ(identities.ChangeOf(0.98244, true, code), change);
  EXPECT_EQ(identities.ChangeOf(0.98244, false, code), "-" + change);
  EXPECT_NE(identities.ChangeOf(0.98244, true, AlertCode("", "/tmp/y")), change);
  EXPECT_NE(identities.ChangeOf(0.95, true, code), change);
}

TEST(Identities, FullRiskIsNotPassed) {
  Identities identities;
  EXPECT_THAT(identities.ChangeOf(0.99, true, "AG,1"), ::testing::StartsWith("0.9899"));
  EXPECT_THAT(identities.ChangeOf(0.00001, true, "AG,1"), ::testing::StartsWith("0.0000"));
  EXPECT_THAT(identities.ChangeOf(0.95, true, "AG,1"), ::testing::StartsWith("0.9500"));
}

}  // namespace
}  // namespace zendrix::agent
