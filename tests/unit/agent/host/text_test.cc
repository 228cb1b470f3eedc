#include "agent/host/text.h"

namespace zendrix::agent {
namespace {

TEST(CleanName, KeepsAnOrdinaryPath) {
  EXPECT_EQ(CleanName("/usr/bin/python3.11"), "/usr/bin/python3.11");
}

TEST(CleanName, ReplacesEachSeparatorOfALine) {
  EXPECT_EQ(CleanName("a|b,c;d=e:f\"h\\i"), "a_b_c_d_e_f_h_i");
}

// The console looks for rows by filters in apostrophes, and one inside of a name would end the filter there.
TEST(CleanName, ApostropheBecomesTheTypographicOne) {
  EXPECT_EQ(CleanName("it's"), "it\x92s");
}

TEST(CleanText, SeparatorsOfALineBecomeDashes) {
  EXPECT_EQ(CleanText("no BPF: Operation not permitted; x=1, |y*"),
            "no BPF - Operation not permitted - x -1 -y");
  EXPECT_EQ(CleanText("it's a\nline:"), "it\x92s a_line");
  EXPECT_EQ(CleanText(""), "_");
}

TEST(CleanName, ReplacesTheAsteriskThatWouldSplitADescription) {
  EXPECT_EQ(CleanName("a * b"), "a _ b");
}

TEST(CleanName, ReplacesControlCharactersSoThatNoLineEndGetsThrough) {
  EXPECT_EQ(CleanName(std::string_view("a\r\nb\tc\0d\x7f", 9)), "a__b_c_d_");
}

TEST(CleanName, TurnsUtf8IntoWindows1252) {
  EXPECT_EQ(CleanName("caf\xC3\xA9 \xE2\x82\xAC"), "caf\xE9 \x80");
}

TEST(CleanName, ReplacesWhatWindows1252CannotHold) {
  EXPECT_EQ(CleanName("\xE6\x97\xA5x\xF0\x9F\x98\x80"), "_x_");
}

TEST(CleanName, ReplacesEachByteThatIsNoUtf8) {
  EXPECT_EQ(CleanName("a\xFF\xC3(\x80"), "a__(_");
}

TEST(CleanName, FirstAndLastCharacterOfEachUtf8LengthAreOne) {
  for (const char* whole : {"\x7F", "\xC2\x80", "\xDF\xBF", "\xE0\xA0\x80", "\xEF\xBF\xBD",
                            "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF"})
    EXPECT_EQ(CleanName(whole), "_") << whole;
  EXPECT_EQ(CleanName("\xF5\x80\x80\x80"), "____");
  EXPECT_EQ(CleanName("~\xC2\xA0\xC3\xBF"), "~\xA0\xFF");
}

TEST(CleanName, OverlongSeparatorDoesNotGetThrough) {
  EXPECT_EQ(CleanName("a\xC1\xBC"
                      "b\xE0\x81\xBC"),
            "a__b_");
}

TEST(CleanName, TruncatedSequenceAtTheEndIsReplaced) {
  EXPECT_EQ(CleanName("a\xE2\x82"), "a__");
}

TEST(CleanName, BlanksAtTheEndsStayVisible) {
  EXPECT_EQ(CleanName(" x "), "_x_");
}

TEST(CleanName, EmptyNameIsNotEmptyInALine) {
  EXPECT_EQ(CleanName(""), "_");
}

TEST(CleanName, LongNameKeepsItsBeginningAndItsEnd) {
  const std::string path = "/tmp/" + std::string(300, 'x') + "/evil";
  const std::string name = CleanName(path);
  EXPECT_EQ(name.size(), kNameLimit);
  EXPECT_TRUE(name.starts_with("/tmp/xxx"));
  EXPECT_TRUE(name.ends_with("x/evil"));
  EXPECT_NE(name.find("x...x"), std::string::npos);
}

TEST(CleanName, CannotReadLikeASessionMarker) {
  EXPECT_EQ(CleanName("Begin Session Refresh."), "_Begin Session Refresh.");
  EXPECT_EQ(CleanName("** Start baseline **"), "__ Start baseline __");
}

TEST(ReadNumber, TakesOnlyWholeTextsOfDigits) {
  std::uint64_t value = 7;
  EXPECT_FALSE(ReadNumber("", value));
  EXPECT_FALSE(ReadNumber("-1", value));
  EXPECT_FALSE(ReadNumber("1 ", value));
  EXPECT_FALSE(ReadNumber("99999999999999999999999", value));
  EXPECT_EQ(value, 7U);
  EXPECT_TRUE(ReadNumber("42", value));
  EXPECT_EQ(value, 42U);
}

TEST(SplitLines, LastLineNeedsNoEnd) {
  EXPECT_THAT(SplitLines("a\r\n\nb"), ::testing::ElementsAre("a", "", "b"));
  EXPECT_TRUE(SplitLines("").empty());
}

TEST(SplitWords, RunsOfBlanksSeparate) {
  EXPECT_THAT(SplitWords("  a \t b"), ::testing::ElementsAre("a", "b"));
}

TEST(Decimal, HasAPointAndThatManyDecimals) {
  EXPECT_EQ(Decimal(0.5, 4), "0.5000");
  EXPECT_EQ(Decimal(-3, 0), "-3");
  EXPECT_EQ(Decimal(1e300, 2).size(), 304U);
}

}  // namespace
}  // namespace zendrix::agent
