
#include <gtest/gtest.h>

#include <random>

#include "core/fit_text.h"
#include "support/golden_table.h"

namespace zendrix::core {
namespace {

using test::GoldenReport;
using test::GoldenRow;
using test::LoadGolden;

MeasureText FixedPitch(int width) {
  return [width](std::string_view text) { return static_cast<int>(text.size()) * width; };
}

TEST(PathGolden, FitsPathsIntoPixels) {
  GoldenReport report;
  for (const GoldenRow& row : LoadGolden(ZENDRIX_TEST_DATA, "path_compact.tsv")) {
    const std::string path = row.Text("path");
    report.Compare(row, path + " " + row.Raw("width_px"), row.Text("text"),
                   CompactPath(path, row.Int("width_px"), FixedPitch(row.Int("px_per_char"))));
  }
}

TEST(CompactPath, ReturnsTheTextUpToTheFirstNul) {
  EXPECT_EQ(CompactPath(std::string_view("C:\\a\0b", 6), 1000, FixedPitch(10)), "C:\\a");
}

TEST(CompactPath, CutsANameWithoutFoldersAtItsEnd) {
  EXPECT_EQ(CompactPath("a long file name.txt", 100, FixedPitch(10)), "a long ...");
  EXPECT_EQ(CompactPath("a long file name.txt", 0, FixedPitch(10)), "...");
}

TEST(CompactPath, KeepsTheSeparatorOfThePath) {
  EXPECT_EQ(CompactPath("/usr/share/doc/readme.txt", 170, FixedPitch(10)), "/us.../readme.txt");
}

TEST(CompactPath, TakesAWholeTextThatFitsAsItIs) {
  EXPECT_EQ(CompactPath("", 0, FixedPitch(10)), "");
  EXPECT_EQ(CompactPath("x", 10, FixedPitch(10)), "x");
}

TEST(PathProperties, ShortenedTextsFitOrKeepOnlyTheName) {
  std::mt19937 random(7);
  constexpr std::string_view kAlphabet = "ab.\\/: ";
  for (int i = 0; i < 20000; ++i) {
    std::string path(random() % 30, ' ');
    for (char& character : path) character = kAlphabet[random() % kAlphabet.size()];
    const int width = static_cast<int>(random() % 320);
    const std::string text = CompactPath(path, width, FixedPitch(10));
    EXPECT_TRUE(static_cast<int>(text.size()) * 10 <= width || text.substr(0, 3) == "...") << path;
  }
}

std::string Fit(std::string_view text, int limit) {
  return FitTextToWidth(text, limit, FixedPitch(100), FixedPitch(7), 15);
}

TEST(FitTextToWidth, NarrowTextStaysAsItIs) {
  EXPECT_EQ(Fit("abcdefghij", 1001), "abcdefghij");
}

TEST(FitTextToWidth, ATextAsWideAsTheControlIsShortened) {
  // 10 characters: 3 from the left, "...", from position 8 on 3 from the right; 9 x 100 is below 1000 - 57.
  EXPECT_EQ(Fit("abcdefghij", 1000), "abc...hij");
}

TEST(FitTextToWidth, FewerThanFiveCharactersAreNeverShortened) {
  EXPECT_EQ(Fit("abcd", 10), "abcd");
}

TEST(FitTextToWidth, DropsFromBothSidesUntilItFits) {
  EXPECT_EQ(Fit("abcdefghijklmnop", 858), "ab...nop");
  EXPECT_EQ(Fit("abcdefghijklmnop", 1000), "abc...nop");
  EXPECT_EQ(Fit("abcdefghijklmnop", 1158), "abcd...mnop");
}

TEST(FitTextToWidth, ATextThatJustReachesTheLimitIsShortenedFurther) {
  // "abcd...mnop" is 1,100 wide: below 1158 - 57, but not below 1157 - 57.
  EXPECT_EQ(Fit("abcdefghijklmnop", 1158), "abcd...mnop");
  EXPECT_EQ(Fit("abcdefghijklmnop", 1157), "abc...nop");
}

TEST(FitTextToWidth, FiveCharactersAreTheFewestThatAreShortened) {
  EXPECT_EQ(Fit("abcde", 500), "...e");
  EXPECT_EQ(Fit("abcde", 501), "abcde");
}

TEST(FitTextToWidth, StopsWhenTheLeftHasTwoOrTheRightThreeCharacters) {
  // Left is down to two characters, the right keeps three.
  EXPECT_EQ(Fit("abcdefghijklmnop", 1), "ab...nop");
  // Five characters: nothing on the left, the last one on the right.
  EXPECT_EQ(Fit("abcde", 1), "...e");
  EXPECT_EQ(Fit("abcdefg", 1), "a...fg");
}

TEST(FitTextToWidth, PathsAreCompactedInPixels) {
  const std::string path = "C:\\Program Files\\Korvessa\\KorvessaMonitoring.kvl";
  const int limit = 2200;
  EXPECT_EQ(Fit(path, limit), CompactPath(path, (limit - 100) / 15, FixedPitch(7)));
  EXPECT_LT(Fit(path, limit).size(), path.size());
}

// The steps one after the other, from the whole text on.
std::string FitStepByStep(std::string_view text, int limit) {
  const auto twips = FixedPitch(100);
  if (twips(text) < limit || text.size() < 5) return std::string(text);
  const std::size_t half = text.size() / 2;
  std::string left(text.substr(0, half - 2)), right(text.substr(half + 2));
  while (twips(left + "..." + right) >= limit - 57) {
    if (left.size() < 3) break;
    left.pop_back();
    if (right.size() < 4) break;
    right.erase(0, 1);
  }
  return left + "..." + right;
}

TEST(FitTextToWidth, EveryTextAndWidthGivesWhatTheStepsGive) {
  std::string text;
  for (int size = 0; size < 60; ++size, text += static_cast<char>('a' + size % 26))
    for (int limit = 0; limit < 7000; limit += 50) ASSERT_EQ(Fit(text, limit), FitStepByStep(text, limit));
}

// A text of a line of ten million characters took as many measurements of millions of characters.
TEST(FitTextToWidth, LongTextIsMeasuredAFewTimesOnly) {
  const std::string text(1'000'000, 'x');
  std::size_t measured = 0;
  const MeasureText twips = [&](std::string_view part) {
    measured += part.size();
    return static_cast<int>(part.size()) * 100;
  };
  EXPECT_EQ(FitTextToWidth(text, 3945, twips, twips, 15).size(), 37u);
  EXPECT_LT(measured, text.size() + 10'000);
}

}  // namespace
}  // namespace zendrix::core
