#include "admin/text_search.h"

#include <gtest/gtest.h>

#include <random>

#include "core/letter_case.h"

namespace zendrix::admin {
namespace {

constexpr std::size_t kNowhere = TextSearch::kNowhere;

TEST(TextSearchTest, FindsTheFirstPlaceFromACharacterOn) {
  const TextSearch search("ab", true);
  EXPECT_EQ(search.Find("xxabxxab"), 2u);
  EXPECT_EQ(search.Find("xxabxxab", 2), 2u);
  EXPECT_EQ(search.Find("xxabxxab", 3), 6u);
  EXPECT_EQ(search.Find("xxabxxab", 7), kNowhere);
  EXPECT_EQ(search.Find("xxabxxab", 99), kNowhere);
  EXPECT_EQ(search.Find("a"), kNowhere);
  EXPECT_EQ(search.Find(""), kNowhere);
}

TEST(TextSearchTest, TextThatOnlyBeginsBeforeTheEndIsNotThere) {
  const std::string_view pool = "0123456789abcd";
  for (const std::string_view wanted : {"ab", "abcd"}) {
    for (std::size_t from = 0; from < 11; ++from) {
      const std::string_view in = pool.substr(from, 11 - from);
      EXPECT_EQ(TextSearch(wanted, true).Find(in), kNowhere) << in << " goes on in its neighbour";
    }
  }
}

TEST(TextSearchTest, CaseCountsOnlyWhenItIsAskedFor) {
  EXPECT_EQ(TextSearch("Ab", true).Find("AB ab Ab"), 6u);
  EXPECT_EQ(TextSearch("Ab", false).Find("xx aB"), 3u);
  EXPECT_EQ(TextSearch("\xE4\x9A\xFF", false).Find("0123456789\xC4\x8A\x9F"), 10u);
  EXPECT_EQ(TextSearch("\xD7", false).Find("\xF7"), kNowhere) << "times and divided by are no pair";
}

TEST(TextSearchTest, CharactersThatDifferInTheBitOfCaseOnlyAreNotTheSame) {
  EXPECT_FALSE(TextSearch("@x", false).IsIn("`x`x`x`x`x`x"));
  EXPECT_FALSE(TextSearch("[", false).IsIn("{{{{{{{{{{{{"));
}

TEST(TextSearchTest, TextThatConsistsOfOtherCharactersCannotStandThere) {
  std::bitset<256> digits;
  for (char c = '0'; c <= '9'; ++c) digits[static_cast<unsigned char>(c)] = true;
  digits['a'] = true;
  EXPECT_TRUE(TextSearch("12", true).MayConsistOf(digits));
  EXPECT_FALSE(TextSearch("1x", true).MayConsistOf(digits));
  EXPECT_FALSE(TextSearch("A1", true).MayConsistOf(digits));
  EXPECT_TRUE(TextSearch("A1", false).MayConsistOf(digits));
}

TEST(TextSearchTest, MatchesAPlainSearchOnRandomTexts) {
  std::mt19937 random(5);
  constexpr std::string_view kLetters = "aAbB\x9A\x8A@`";
  const auto text = [&](std::size_t longest) {
    std::string made;
    for (std::size_t left = random() % longest; left > 0; --left) made += kLetters[random() % 8];
    return made;
  };
  for (int round = 0; round < 20'000; ++round) {
    const std::string in = text(60);
    const std::string wanted = text(5) + "b";
    const std::size_t from = random() % 20;
    EXPECT_EQ(TextSearch(wanted, true).Find(in, from), in.find(wanted, from));
    EXPECT_EQ(TextSearch(wanted, false).Find(in, from),
              core::UpperCase(in).find(core::UpperCase(wanted), from));
  }
}

}  // namespace
}  // namespace zendrix::admin
