#include "alerts/marked_text.h"
#include "core/letter_case.h"

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

// A program by the name of "td" once took the cells of its own row apart.
TEST(MarkedTextTest, ValueIsNotFoundInATagWhenShown) {
  for (const Purpose purpose : {Purpose::kExact, Purpose::kShown}) {
    MarkedText text(purpose, "<td width=18>td: ");
    text.Append("td", Origin::kEvent).Append("</td>");
    text.ReplaceValue("td", MarkedText(purpose, "!"));
    EXPECT_EQ(text.Finish(), purpose == Purpose::kExact ? "<! width=18>!: !</!>" : "<td width=18>!: !</td>");
  }
}

TEST(MarkedTextTest, LastValueIsTheLastOneThatCanBeReadWhenShown) {
  for (const Purpose purpose : {Purpose::kExact, Purpose::kShown}) {
    MarkedText text(purpose, "<td>");
    text.Append("d d", Origin::kEvent).Append("</td>");
    text.ReplaceLastValue("d", MarkedText(purpose, "!"));
    EXPECT_EQ(text.Finish(), purpose == Purpose::kExact ? "<td>d d</t!>" : "<td>d !</td>");
  }
}

// The date since when there is a history stands in the picture's ALT text, the port in a link's target.
TEST(MarkedTextTest, ValueIsNotFoundInWhatEventsGaveToATagWhenShown) {
  for (const std::string value : {"x", "<x", "'"}) {
    MarkedText text(Purpose::kShown, "<IMG ALT='since ");
    text.Append(value, Origin::kEvent).Append("'><A HREF='");
    text.Append(value, Origin::kEventInLink).Append("'></A>").Append(value, Origin::kEvent);
    const std::string before = text.Finish();
    text.ReplaceValue(value, MarkedText(Purpose::kShown, "!"));
    EXPECT_EQ(text.Finish(), before.substr(0, before.find("</A>")) + "</A>!");
  }
}

TEST(MarkedTextTest, EventDoesNotOpenATag) {
  MarkedText text(Purpose::kShown, "<a", Origin::kEvent);
  text.Append(" word");
  text.ReplaceValue("word", MarkedText(Purpose::kShown, "!"));
  EXPECT_EQ(text.Finish(), "&lt;a !");
}

// For events without special characters the text to be shown is the exact text, whatever is done to it, as
// long as no value reads like a piece of markup; markup is in capitals here.
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
      const std::string tag = "<" + core::UpperCase(one) + ">";
      const auto apply = [&](MarkedText& text, unsigned what) {
        switch (what) {
          case 0:
            text.Append(tag);
            break;
          case 1:
            text.Append(one, Origin::kEvent);
            break;
          case 2:
            text.Append(one, Origin::kEventInLink);
            break;
          case 3:
            text.Replace(tag, MarkedText(text.purpose(), other, Origin::kEvent));
            break;
          case 4:
            text.ReplaceValue(one, MarkedText(text.purpose(), "<i>").Append(one, Origin::kEvent));
            break;
          case 5:
            text.ReplaceLastValue(one, MarkedText(text.purpose(), other, Origin::kEvent));
            break;
          default:
            text.CutAt(tag);
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
