#include "core/text_rules.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>

#include "support/golden_table.h"

namespace zendrix::core {
namespace {

using test::GoldenReport;
using test::GoldenRow;
using test::LoadGolden;

std::string Utf8Of(unsigned character) {
  std::string utf8;
  if (character < 0x80) {
    utf8 += static_cast<char>(character);
  } else if (character < 0x800) {
    utf8 += static_cast<char>(0xC0 | character >> 6);
    utf8 += static_cast<char>(0x80 | (character & 0x3F));
  } else {
    utf8 += static_cast<char>(0xE0 | character >> 12);
    utf8 += static_cast<char>(0x80 | (character >> 6 & 0x3F));
    utf8 += static_cast<char>(0x80 | (character & 0x3F));
  }
  return utf8;
}

std::string ByteText(unsigned byte) {
  return std::string(1, static_cast<char>(byte));
}

std::string AllBytes() {
  std::string bytes;
  for (unsigned byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
  return bytes;
}

TEST(TextGolden, ChangesCaseOfEveryByte) {
  GoldenReport report;
  for (const GoldenRow& row : LoadGolden(ZENDRIX_TEST_DATA, "misc_case.tsv")) {
    const char byte = static_cast<char>(row.Hex("byte"));
    report.Compare(row, ByteText(row.Hex("byte")), ByteText(row.Hex("upper")) + ByteText(row.Hex("lower")),
                   std::string{UpperByte(byte), LowerByte(byte)});
  }
}

TEST(TextGolden, CapitalisesWords) {
  GoldenReport report;
  for (const GoldenRow& row : LoadGolden(ZENDRIX_TEST_DATA, "misc_proper.tsv")) {
    report.Compare(row, row.Text("text"), row.Text("proper"), ProperCase(row.Text("text")));
  }
}

TEST(TextGolden, DecodesEveryByte) {
  GoldenReport report;
  for (const GoldenRow& row : LoadGolden(ZENDRIX_TEST_DATA, "misc_mb2wc.tsv")) {
    const std::string byte = ByteText(row.Hex("byte"));
    report.Compare(row, byte, Utf8Of(row.Hex("codepoint")), Utf8FromBytes(byte));
  }
}

// Held to the columns without best fit: a look-alike must not turn into a real quote, slash or separator.
TEST(TextGolden, EncodesCharactersWithoutBestFit) {
  GoldenReport report;
  for (const GoldenRow& row : LoadGolden(ZENDRIX_TEST_DATA, "misc_wc2mb.tsv")) {
    const std::string utf8 = Utf8Of(row.Hex("codepoint"));
    report.Compare(row, utf8, ByteText(row.Hex("byte_no_best_fit")), BytesFromUtf8(utf8));
  }
}

TEST(CodePage, EveryByteSurvivesTheWayOutAndBack) {
  EXPECT_EQ(BytesFromUtf8(Utf8FromBytes(AllBytes())), AllBytes());
}

TEST(CodePage, ReplacesBrokenUtf8ByteByByte) {
  EXPECT_EQ(BytesFromUtf8("a\xFFz"), "a?z");
  EXPECT_EQ(BytesFromUtf8("\xC3"), "?");
  EXPECT_EQ(BytesFromUtf8("\xC0\xAF"), "??");
  EXPECT_EQ(BytesFromUtf8("\xE2\x82"), "??");
  EXPECT_EQ(BytesFromUtf8("\xF0\x9F\x98\x80"), "?");
  EXPECT_EQ(BytesFromUtf8("\xE0\x80\xAF"), "???");
}

TEST(Case, UpperAndLowerAreIdempotentAndAgree) {
  for (char byte : AllBytes()) {
    EXPECT_EQ(UpperByte(UpperByte(byte)), UpperByte(byte));
    EXPECT_EQ(LowerByte(LowerByte(byte)), LowerByte(byte));
    EXPECT_TRUE(EqualNoCase(std::string(1, UpperByte(byte)), std::string(1, LowerByte(byte))));
  }
}

TEST(Case, ComparesWithoutRegardToCase) {
  EXPECT_TRUE(EqualNoCase("M\xC4rz", "m\xE4RZ"));
  EXPECT_FALSE(EqualNoCase("ab", "abc"));
  EXPECT_FALSE(EqualNoCase("a", "b"));
}

TEST(ProperCase, IsIdempotent) {
  const std::string once = ProperCase("thE quick\tBROWN\nfox-trot o'neil");
  EXPECT_EQ(once, "The Quick\tBrown\nFox-trot O'neil");
  EXPECT_EQ(ProperCase(once), once);
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

TEST(Split, JoinIsItsInverse) {
  for (std::string text : {"a,b", ",", "a", ",,a,,", "no separator"}) {
    const auto views = Split(text, ",");
    EXPECT_EQ(Join(std::vector<std::string>(views.begin(), views.end()), ","), text);
  }
}

TEST(Replace, DoesNotLookAgainAtWhatWasPutIn) {
  EXPECT_EQ(Replace("aaa", "a", "aa"), "aaaaaa");
  EXPECT_EQ(Replace("<X><x>", "<x>", "1"), "<X>1");
  EXPECT_EQ(Replace("abc", "", "x"), "abc");
  EXPECT_EQ(Replace("", "a", "x"), "");
  EXPECT_EQ(Replace("aXbX", "X", ""), "ab");
}

TEST(Filter, KeepsTheLinesThatHoldTheKeyInItsCase) {
  EXPECT_EQ(Filter({"Key=1", "key=2", "xKey"}, "Key"), (std::vector<std::string>{"Key=1", "xKey"}));
  EXPECT_TRUE(Filter({}, "a").empty());
  EXPECT_TRUE(Contains("abc", ""));
}

TEST(Like, KnowsThePatternCharacters) {
  EXPECT_TRUE(Like("svchost.exe", "svc*.exe"));
  EXPECT_TRUE(Like("aBBBa", "a*a"));
  EXPECT_TRUE(Like("F", "[A-Z]"));
  EXPECT_FALSE(Like("F", "[!A-Z]"));
  EXPECT_TRUE(Like("a2a", "a#a"));
  EXPECT_TRUE(Like("aM5b", "a[L-P]#[!c-e]"));
  EXPECT_TRUE(Like("BAT123khg", "B?T*"));
  EXPECT_FALSE(Like("CAT123khg", "B?T*"));
  EXPECT_TRUE(Like("", "*"));
  EXPECT_TRUE(Like("", ""));
  EXPECT_FALSE(Like("a", ""));
  EXPECT_FALSE(Like("", "?"));
}

TEST(Like, RegardsCase) {
  EXPECT_FALSE(Like("ABC", "abc"));
}

TEST(Like, TakesPatternCharactersInListsAsThemselves) {
  EXPECT_TRUE(Like("a*b", "a[*]b"));
  EXPECT_FALSE(Like("axb", "a[*]b"));
  EXPECT_TRUE(Like("[", "[[]"));
  EXPECT_TRUE(Like("]", "]"));
  EXPECT_TRUE(Like("!", "[!]"));
  EXPECT_TRUE(Like("-", "[-a]"));
  EXPECT_TRUE(Like("-", "[a-]"));
}

TEST(Like, TakesAnEmptyListAsNothing) {
  EXPECT_TRUE(Like("ab", "a[]b"));
  EXPECT_TRUE(Like("ab", "ab[]"));
  EXPECT_TRUE(Like("ab", "[]*[]"));
  EXPECT_TRUE(Like("", "[]"));
  EXPECT_FALSE(Like("a", "[]"));
}

TEST(Like, MatchesNothingWhenAListIsNotClosed) {
  EXPECT_FALSE(Like("[", "["));
  EXPECT_FALSE(Like("a", "*[a"));
}

TEST(Like, AnswersSoonForManyStars) {
  std::string text(2000, 'a'), pattern;
  text += 'b';
  for (int i = 0; i < 200; ++i) pattern += "*a";
  pattern += 'c';
  EXPECT_FALSE(Like(text, pattern));
}

TEST(Like, AgreesWithThePlainRecursiveRule) {
  // The rule as it reads, without lists: what the fast way must agree with.
  const std::function<bool(std::string_view, std::string_view)> plain = [&](std::string_view text,
                                                                            std::string_view pattern) {
    if (pattern.empty()) return text.empty();
    if (pattern[0] == '*') {
      return plain(text, pattern.substr(1)) || (!text.empty() && plain(text.substr(1), pattern));
    }
    if (text.empty()) return false;
    const bool takes = pattern[0] == '?' || (pattern[0] == '#' ? text[0] == '1' : pattern[0] == text[0]);
    return takes && plain(text.substr(1), pattern.substr(1));
  };
  std::mt19937 random(6);
  std::uniform_int_distribution<std::size_t> length(0, 7);
  const auto any = [&](std::string_view alphabet) {
    std::string text(length(random), ' ');
    for (char& character : text) character = alphabet[random() % alphabet.size()];
    return text;
  };
  for (int i = 0; i < 20000; ++i) {
    const std::string text = any("ab1"), pattern = any("ab1*?#");
    EXPECT_EQ(Like(text, pattern), plain(text, pattern)) << text << " like " << pattern;
  }
}

TEST(TextRules, LinesEndWithLfAndWithCrLf) {
  EXPECT_THAT(Lines("a\r\nb\n\r\nc"), testing::ElementsAre("a", "b", "", "c"));
  EXPECT_THAT(Lines("a\r\n"), testing::ElementsAre("a"));
  EXPECT_THAT(Lines("a\rb\r"), testing::ElementsAre("a\rb\r"));  // a CR by itself ends nothing
  EXPECT_THAT(Lines(""), testing::IsEmpty());
}

}  // namespace
}  // namespace zendrix::core
