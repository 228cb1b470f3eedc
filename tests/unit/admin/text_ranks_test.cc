#include "admin/text_ranks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

#include "core/letter_case.h"

namespace zendrix::admin {
namespace {

using ::testing::ElementsAre;

std::vector<std::uint32_t> Ranks(const std::vector<std::string>& texts) {
  store::TextPool pool;
  std::vector<store::TextId> ids;
  for (const std::string& text : texts) ids.push_back(pool.Intern(text));
  return RanksNoCase(pool, ids);
}

// Ranks made the plain way.
std::vector<std::uint32_t> PlainRanks(const std::vector<std::string>& texts) {
  std::vector<std::string> upper;
  for (const std::string& text : texts) upper.push_back(core::UpperCase(text));
  std::vector<std::string> sorted = upper;
  std::ranges::sort(sorted);
  sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
  std::vector<std::uint32_t> ranks;
  for (const std::string& text : upper)
    ranks.push_back(static_cast<std::uint32_t>(std::ranges::lower_bound(sorted, text) - sorted.begin()));
  return ranks;
}

TEST(TextRanksTest, CaseMakesNoDifference) {
  EXPECT_THAT(Ranks({"beta", "Alpha", "BETA", "alpha", "caf\xE9", "CAF\xC9"}), ElementsAre(1, 0, 1, 0, 2, 2));
}

TEST(TextRanksTest, NoTextsHaveNoRanks) {
  EXPECT_THAT(Ranks({}), ElementsAre());
}

TEST(TextRanksTest, ShorterTextStandsBeforeALongerOneThatBeginsWithIt) {
  EXPECT_THAT(Ranks({"abcdefgh", "abcdefg", "", "abcdefghi", "abcdefgh\x01", std::string("abcdefg\0", 8)}),
              ElementsAre(3, 1, 0, 5, 4, 2));
}

TEST(TextRanksTest, BytesAboveTheLettersStandBehindThem) {
  EXPECT_THAT(Ranks({"z", "\xDF", "A"}), ElementsAre(1, 2, 0));
}

TEST(TextRanksTest, RandomTextsHaveTheRanksOfAPlainSort) {
  std::mt19937 random(5);
  for (int round = 0; round < 30; ++round) {
    std::vector<std::string> texts;
    const std::size_t count = 1 + random() % 200;
    for (std::size_t i = 0; i < count; ++i) {
      // Few different characters and long common beginnings.
      std::string text(random() % 40, 'p');
      for (std::size_t n = random() % 12; n > 0; --n) text += "aAbB \xE9"[random() % 6];
      texts.push_back(text);
    }
    EXPECT_EQ(Ranks(texts), PlainRanks(texts));
  }
}

// Characters are taken many at a time; none may change because of its neighbours.
TEST(TextRanksTest, EveryByteAmongAnyOthersHasItsPlace) {
  std::mt19937 random(6);
  for (int round = 0; round < 20; ++round) {
    std::vector<std::string> texts;
    for (int i = 0; i < 300; ++i) {
      std::string text(random() % 20, 'p');
      for (std::size_t n = random() % 4; n > 0; --n)
        text += round % 2 == 0 ? static_cast<char>(random() % 0x80) : static_cast<char>(random());
      text.append(random() % 20, 'q');
      texts.push_back(text);
    }
    EXPECT_EQ(Ranks(texts), PlainRanks(texts));
  }
}

TEST(TextRanksTest, TextsThatAreAlikeForAMillionCharactersAreToldApart) {
  const std::string common(1'000'000, 'x');
  EXPECT_THAT(Ranks({common + "b", common + "A", common + "B", common}), ElementsAre(2, 1, 2, 0));
}

TEST(TextRanksTest, ComparisonGoesByTheSameOrder) {
  EXPECT_EQ(CompareNoCase("abc", "ABC"), 0);
  EXPECT_LT(CompareNoCase("ab", "ABC"), 0);
  EXPECT_GT(CompareNoCase("abc", "AB"), 0);
  EXPECT_LT(CompareNoCase("Z", "\xDF"), 0);
  EXPECT_GT(CompareNoCase("\xE9", "z"), 0);
}

}  // namespace
}  // namespace zendrix::admin
