#include "core/text_rules.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zendrix::core {
namespace {

TEST(CleanLine, ControlCharactersBecomeBlanksAndTheLengthStays) {
  EXPECT_EQ(CleanLine("a\tb\r\nc"), "a b  c");
  EXPECT_EQ(CleanLine(std::string("\0x\x1f", 3)), " x ");
  EXPECT_EQ(CleanLine("\x7f\x80\xff "), "\x7f\x80\xff ");
  EXPECT_EQ(CleanLine(""), "");
}

TEST(FileNamePart, IsBehindTheLastBackslash) {
  EXPECT_EQ(FileNamePart("C:\\Program Files\\a.kvl"), "a.kvl");
  EXPECT_EQ(FileNamePart("folder\\"), "");
  EXPECT_EQ(FileNamePart("a.kvl"), "a.kvl");
  EXPECT_EQ(FileNamePart(""), "");
}

TEST(Trim, TakesOnlyBlanksOffBothEnds) {
  EXPECT_EQ(Trim("  a b  "), "a b");
  EXPECT_EQ(Trim("\t a \t"), "\t a \t");
  EXPECT_EQ(Trim("    "), "");
  EXPECT_EQ(Trim(""), "");
}

TEST(Split, GivesNoPiecesOfAnEmptyText) {
  EXPECT_TRUE(Split("", ",").empty());
}

TEST(Split, KeepsEmptyPieces) {
  using Pieces = std::vector<std::string_view>;
  EXPECT_EQ(Split(",a,,b,", ","), (Pieces{"", "a", "", "b", ""}));
  EXPECT_EQ(Split("a * b * c", " * "), (Pieces{"a", "b", "c"}));
  EXPECT_EQ(Split("abc", ""), (Pieces{"abc"}));
  EXPECT_EQ(Split("aaa", "aa"), (Pieces{"", "a"}));
}

TEST(Split, PiecesAndSeparatorsAreAllOfTheText) {
  for (const std::string text : {"a,b", ",", "a", ",,a,,", "no separator"}) {
    std::string joined;
    for (const std::string_view piece : Split(text, ",")) joined.append(piece) += ',';
    EXPECT_EQ(joined, text + ",");
  }
}

TEST(Replace, DoesNotLookAgainAtWhatWasPutIn) {
  EXPECT_EQ(Replace("aaa", "a", "aa"), "aaaaaa");
  EXPECT_EQ(Replace("<X><x>", "<x>", "1"), "<X>1");
  EXPECT_EQ(Replace("abc", "", "x"), "abc");
  EXPECT_EQ(Replace("", "a", "x"), "");
  EXPECT_EQ(Replace("aXbX", "X", ""), "ab");
}

TEST(Contains, TakesAnEmptyPart) {
  EXPECT_TRUE(Contains("abc", ""));
}

TEST(TextRules, LinesEndWithLfAndWithCrLf) {
  EXPECT_THAT(Lines("a\r\nb\n\r\nc"), ::testing::ElementsAre("a", "b", "", "c"));
  EXPECT_THAT(Lines("a\r\n"), ::testing::ElementsAre("a"));
  EXPECT_THAT(Lines("a\rb\r"), ::testing::ElementsAre("a\rb\r"));  // a CR by itself ends nothing
  EXPECT_THAT(Lines(""), ::testing::IsEmpty());
}

}  // namespace
}  // namespace zendrix::core
