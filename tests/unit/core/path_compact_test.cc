#include "core/path_compact.h"

#include <gtest/gtest.h>

#include <random>

#include "core/text_rules.h"
#include "core/utils.h"
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

TEST(PathGolden, FitsPathsIntoCharacters) {
  GoldenReport report;
  for (const GoldenRow& row : LoadGolden(ZENDRIX_TEST_DATA, "path_compactex.tsv")) {
    const std::string path = row.Text("path");
    const int size = row.Int("cchmax");
    report.Compare(row, path + " " + row.Raw("cchmax"), row.Text("text"),
                   PathCompactEx(path, size > 0 ? static_cast<std::size_t>(size) - 1 : 0));
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
  EXPECT_EQ(PathCompactEx("/usr/share/doc/readme.txt", 17), "/us.../readme.txt");
}

TEST(CompactPath, TakesAWholeTextThatFitsAsItIs) {
  EXPECT_EQ(CompactPath("", 0, FixedPitch(10)), "");
  EXPECT_EQ(CompactPath("x", 10, FixedPitch(10)), "x");
}

TEST(SeparatorBeforeName, PassesOverSeparatorsAtTheEnd) {
  EXPECT_EQ(SeparatorBeforeName("C:\\x\\y\\"), 4u);
  EXPECT_EQ(SeparatorBeforeName("plain"), std::string_view::npos);
  EXPECT_EQ(SeparatorBeforeName("\\\\"), std::string_view::npos);
  EXPECT_EQ(SeparatorBeforeName("C:file"), 1u);
}

TEST(PathProperties, ShortenedTextsFitAndCompactingAgainChangesNothing) {
  std::mt19937 random(7);
  constexpr std::string_view kAlphabet = "ab.\\/: ";
  for (int i = 0; i < 20000; ++i) {
    std::string path(random() % 30, ' ');
    for (char& character : path) character = kAlphabet[random() % kAlphabet.size()];
    const std::size_t limit = random() % 32;
    const std::string once = PathCompactEx(path, limit);
    EXPECT_LE(once.size(), limit) << path;
    EXPECT_EQ(PathCompactEx(once, limit), once) << path;
    const int width = static_cast<int>(random() % 320);
    const std::string text = CompactPath(path, width, FixedPitch(10));
    EXPECT_TRUE(static_cast<int>(text.size()) * 10 <= width || text.substr(0, 3) == "...") << path;
  }
}

}  // namespace
}  // namespace zendrix::core
