#include "alerts/marked_text.h"

#include <gtest/gtest.h>

#include <random>

namespace zendrix::alerts {
namespace {

TEST(MarkedTextTest, EventCharactersAreEscapedWhenShown) {
  MarkedText text(Purpose::kShown, "<b>");
  text.Append("<&>'\"`\x01", Origin::kEvent).Append("</b>");
  EXPECT_EQ(text.Finish(), "<b>&lt;&amp;&gt;&#39;&quot;&#96; </b>");
}

TEST(MarkedTextTest, ExactTextKeepsEveryByte) {
  MarkedText text(Purpose::kExact);
  text.Append("<&>'\x01", Origin::kEvent);
  EXPECT_EQ(text.Finish(), "<&>'\x01");
}

TEST(MarkedTextTest, PlaceholderOfAnEventIsReplacedInTheExactTextOnly) {
  for (const Purpose purpose : {Purpose::kExact, Purpose::kShown}) {
    MarkedText text(purpose, "<x>");
    text.Append("<x>", Origin::kEvent);
    text.Replace("<x>", "1");
    EXPECT_EQ(text.Finish(), purpose == Purpose::kExact ? "11" : "1&lt;x&gt;");
  }
}

TEST(MarkedTextTest, PlaceholderWhoseMarkupIsPartlyAnEventsIsNotTheTemplates) {
  MarkedText text(Purpose::kShown, "<");
  text.Append("x>", Origin::kEvent);
  text.Replace("<x>", "1");
  EXPECT_EQ(text.Finish(), "<x&gt;");
}

TEST(MarkedTextTest, ReplacementIsNotLookedAtAgain) {
  MarkedText text(Purpose::kExact, "aaa");
  text.Replace("aa", "aab");
  EXPECT_EQ(text.Finish(), "aaba");
}

TEST(MarkedTextTest, ValueWithSpecialCharactersIsOnlyFoundInEventsWhenShown) {
  MarkedText text(Purpose::kShown, "<td>");
  text.Append("<td>", Origin::kEvent);
  text.ReplaceValue("<td>", MarkedText(Purpose::kShown, "!"));
  EXPECT_EQ(text.Finish(), "<td>!");
}

// For events without special characters the text to be shown is the exact text, whatever is done to it.
TEST(MarkedTextTest, PlainEventsLookTheSameEitherWay) {
  std::mt19937 random(7);
  const std::string letters = "abcd";
  const auto word = [&](std::size_t longest) {
    std::string text;
    for (auto left = 1 + random() % longest; left > 0; --left) text += letters[random() % letters.size()];
    return text;
  };
  for (int round = 0; round < 2000; ++round) {
    MarkedText exact(Purpose::kExact), shown(Purpose::kShown);
    for (int step = 0; step < 12; ++step) {
      const std::string one = word(4), other = word(3);
      const auto apply = [&](MarkedText& text, unsigned what) {
        switch (what) {
          case 0:
            text.Append("<" + one + ">");
            break;
          case 1:
            text.Append(one, Origin::kEvent);
            break;
          case 2:
            text.Append(one, Origin::kEventInLink);
            break;
          case 3:
            text.Replace("<" + one + ">", MarkedText(text.purpose(), other, Origin::kEvent));
            break;
          case 4:
            text.ReplaceValue(one, MarkedText(text.purpose(), "<i>").Append(one, Origin::kEvent));
            break;
          case 5:
            text.ReplaceLastValue(one, MarkedText(text.purpose(), other, Origin::kEvent));
            break;
          default:
            text.CutAt("<" + one + ">");
            break;
        }
      };
      const unsigned what = random() % 7;
      apply(exact, what);
      apply(shown, what);
    }
    ASSERT_EQ(shown.Finish(), exact.Finish());
  }
}

}  // namespace
}  // namespace zendrix::alerts
