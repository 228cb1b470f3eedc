#include "core/tokens.h"

namespace zendrix::core {
namespace {

TEST(FindToken, StandsAtTheStartOrBehindASemicolon) {
  EXPECT_EQ(FindToken("Host=a;Port=25", "Host"), 1);
  EXPECT_EQ(FindToken("Host=a;Port=25", "Port"), 8);
}

TEST(FindToken, MissingTokenAndEmptyTextGiveZero) {
  EXPECT_EQ(FindToken("", "Host"), 0);
  EXPECT_EQ(FindToken("Host=a", "Port"), 0);
  EXPECT_EQ(FindToken("Host", "Host"), 0);
}

TEST(FindToken, ComparesLetterCase) {
  EXPECT_EQ(FindToken("host=a", "Host"), 0);
}

TEST(FindToken, TailOfAnotherNameEndsTheSearchAsMissing) {
  EXPECT_EQ(FindToken("MyHost=a", "Host"), 0);
  // Also when the token itself follows: the search knows only the first occurrence.
  EXPECT_EQ(FindToken("MyHost=a;Host=b", "Host"), 0);
}

TEST(TokenValue, EndsAtTheNextSemicolonOrTheEnd) {
  EXPECT_EQ(TokenValue("Host=a b;Port=25", "Host"), "a b");
  EXPECT_EQ(TokenValue("Host=a b;Port=25", "Port"), "25");
  EXPECT_EQ(TokenValue("Host=;Port=25", "Host"), "");
  EXPECT_EQ(TokenValue("Formula=a=b", "Formula"), "a=b");
}

TEST(TokenValue, IsEmptyForAMissingToken) {
  EXPECT_EQ(TokenValue("Host=a", "Port"), "");
  EXPECT_EQ(TokenValue("", ""), "");
}

}  // namespace
}  // namespace zendrix::core
