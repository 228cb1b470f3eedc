#include "core/like_pattern.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>

namespace zendrix::core {
namespace {

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

}  // namespace
}  // namespace zendrix::core
