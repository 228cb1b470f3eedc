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
  EXPECT_EQ(text.Finish(), "&lt;x&gt;");
}

TEST(MarkedTextTest, ReplacementIsNotLookedAtAgain) {
  MarkedText text(Purpose::kExact, "aaa");
  text.Replace("aa", "aab");
  EXPECT_EQ(text.Finish(), "aaba");
}

// The "/" of an event behind a template's bare "<" was read as that of a closing tag.
TEST(MarkedTextTest, LessThanThatAnEventStandsBehindIsText) {
  const std::pair<const char*, const char*> cases[] = {
      {"/", "&lt;/"}, {"/b", "&lt;/b"}, {"b", "&lt;b"}, {"", "&lt;"}};
  for (const auto& [event, shown] : cases) {
    for (const std::string behind : {"", "i>"}) {
      MarkedText text(Purpose::kShown, "<");
      text.Append(event, Origin::kEvent).Append(behind);
      EXPECT_EQ(text.Finish(), shown + behind);
    }
  }
  MarkedText closing(Purpose::kShown, "</");
  EXPECT_EQ(closing.Append("b", Origin::kEvent).Append(">").Finish(), "&lt;/b>");
  MarkedText name(Purpose::kShown, "<i");
  EXPECT_EQ(name.Append("b", Origin::kEvent).Append(">").Finish(), "<i&#98;>");
  MarkedText other_slash(Purpose::kShown, "<i/");
  EXPECT_EQ(other_slash.Append("b", Origin::kEvent).Append(">").Finish(), "<i/&#98;>");
  for (const char* end : {"<", "</", "a<b/"}) EXPECT_EQ(MarkedText(Purpose::kShown, end).Finish(), end);
}

// An anchor around a value, as the renderers make it.
MarkedText Anchor(Purpose purpose, std::string_view target = {}) {
  MarkedText anchor(purpose, "<A HREF='", Origin::kLink);
  if (!target.empty()) anchor.Append("http://x/?", Origin::kLink).Append(target, Origin::kEvent);
  return anchor.Append("'>", Origin::kLink);
}

MarkedText AnchorEnd(Purpose purpose) {
  return MarkedText(purpose, "</A>", Origin::kLink);
}

void Link(MarkedText& text, std::string_view value) {
  text.Surround(value, Anchor(text.purpose()), AnchorEnd(text.purpose()));
}

void LinkLast(MarkedText& text, std::string_view value) {
  text.SurroundLast(value, Anchor(text.purpose()), AnchorEnd(text.purpose()));
}

TEST(MarkedTextTest, ValueWithSpecialCharactersIsOnlyFoundInEventsWhenShown) {
  MarkedText text(Purpose::kShown, "<td>");
  text.Append("<td>", Origin::kEvent);
  Link(text, "<td>");
  EXPECT_EQ(text.Finish(), "<td><A HREF=''>&lt;td&gt;</A>");
}

// A program by the name of "td" once took the cells of its own row apart.
TEST(MarkedTextTest, ValueIsNotFoundInATagWhenShown) {
  for (const Purpose purpose : {Purpose::kExact, Purpose::kShown}) {
    MarkedText text(purpose, "<td width=18>td: ");
    text.Append("td", Origin::kEvent).Append("</td>");
    Link(text, "td");
    EXPECT_EQ(text.Finish(),
              purpose == Purpose::kExact
                  ? "<<A HREF=''>td</A> width=18><A HREF=''>td</A>: <A HREF=''>td</A></<A HREF=''>td</A>>"
                  : "<td width=18><A HREF=''>td</A>: <A HREF=''>td</A></td>");
  }
}

TEST(MarkedTextTest, LastValueIsTheLastOneThatCanBeReadWhenShown) {
  for (const Purpose purpose : {Purpose::kExact, Purpose::kShown}) {
    MarkedText text(purpose, "<td>");
    text.Append("d d", Origin::kEvent).Append("</td>");
    LinkLast(text, "d");
    EXPECT_EQ(text.Finish(),
              purpose == Purpose::kExact ? "<td>d d</t<A HREF=''>d</A>>" : "<td>d <A HREF=''>d</A></td>");
  }
}

TEST(MarkedTextTest, LastValueAtTheVeryBeginningIsFoundAndAMissingOneChangesNothing) {
  MarkedText text(Purpose::kShown);
  text.Append("d", Origin::kEvent).Append("<d>");
  LinkLast(text, "d");
  EXPECT_EQ(text.Finish(), "<A HREF=''>d</A><d>");
  MarkedText other(Purpose::kShown, "<d>");
  LinkLast(other, "d");
  LinkLast(other, "");
  EXPECT_EQ(other.Finish(), "<d>");
}

// The date since when there is a history stands in the picture's ALT text, the port in a link's target.
TEST(MarkedTextTest, ValueIsNotFoundInWhatEventsGaveToATagWhenShown) {
  for (const std::string value : {"x", "<x", "'"}) {
    MarkedText text(Purpose::kShown, "<IMG ALT='since ");
    text.Append(value, Origin::kEvent).Append("'>");
    text.Append(Anchor(Purpose::kShown, value))
        .Append(AnchorEnd(Purpose::kShown))
        .Append(value, Origin::kEvent);
    const std::string before = text.Finish();
    Link(text, value);
    const std::size_t end = before.find("</A>") + 4;
    EXPECT_EQ(text.Finish(), before.substr(0, end) + "<A HREF=''>" + before.substr(end) + "</A>");
  }
}

TEST(MarkedTextTest, EventDoesNotOpenATag) {
  MarkedText text(Purpose::kShown);
  text.Append("<a", Origin::kEvent).Append(" word");
  Link(text, "word");
  EXPECT_EQ(text.Finish(), "&lt;a <A HREF=''>word</A>");
}

// The template's ">" ended the search for the tag that an event's ">" stood in.
TEST(MarkedTextTest, EventsGreaterThanDirectlyBehindTheTemplatesEndsNoTag) {
  MarkedText text(Purpose::kShown, "<td>");
  text.Append(">td", Origin::kEvent).Append("<td ");
  text.Append(">td", Origin::kEvent).Append("td>");
  Link(text, "td");
  EXPECT_EQ(text.Finish(), "<td>&gt;<A HREF=''>td</A><td &#62;&#116;&#100;td>");
}

// "gt" was linked inside the template's own "&gt;".
TEST(MarkedTextTest, ValueIsNotFoundInAReferenceOfTheTemplateWhenShown) {
  for (const char* value : {"lt", "l", "t", "#6", "60", ";"}) {
    MarkedText text(Purpose::kShown, "a &lt; b &#60; c ");
    text.Append(value, Origin::kEvent);
    Link(text, value);
    EXPECT_EQ(text.Finish(), std::string("a &lt; b &#60; c <A HREF=''>") + value + "</A>");
  }
}

TEST(MarkedTextTest, ValueBehindTheBeginningOfAReferenceStaysApartFromIt) {
  MarkedText text(Purpose::kShown, "&am");
  text.Append("pq", Origin::kEvent).Append(";");
  EXPECT_EQ(text.Finish(), "&am&#112;q;");
  Link(text, "pq");
  EXPECT_EQ(text.Finish(), "&am&#112;q;");
}

TEST(MarkedTextTest, NothingIsLinkedInAnAttributeBehindAnUnfilledPlaceholder) {
  for (const char* quote : {"'", ""}) {
    MarkedText text(Purpose::kShown, std::string("<b title=") + quote + "<left> 80" + quote + ">80");
    Link(text, "80");
    text.Replace("<left>", "x", Origin::kEvent);
    EXPECT_EQ(text.Finish(), std::string("<b title=") + quote + "x 80" + quote + "><A HREF=''>80</A>");
  }
}

TEST(MarkedTextTest, LinkInAnAttributeLeavesItsValueAlone) {
  MarkedText text(Purpose::kShown, "<b title='<d>'><d>");
  MarkedText linked = Anchor(Purpose::kShown, "v");
  text.Replace("<d>", linked.Append("<d>").Append(AnchorEnd(Purpose::kShown)));
  text.Replace("<d>", "v'", Origin::kEvent);
  EXPECT_EQ(text.Finish(), "<b title='v&#39;'><A HREF='http://x/?v'>v&#39;</A>");
}

TEST(MarkedTextTest, PathIsPercentEncodedInATargetAndTextElsewhere) {
  MarkedText text(Purpose::kShown, "<IMG SRC='");
  text.Append("/o'neil/a b:c", Origin::kEventInLink).Append("\\x.png' ALT='");
  text.Append("/o'neil", Origin::kEventInLink).Append("'>").Append("/o'n", Origin::kEventInLink);
  EXPECT_EQ(text.Finish(), "<IMG SRC='/o%27neil/a%20b:c\\x.png' ALT='/o&#39;neil'>/o&#39;n");
}

TEST(MarkedTextTest, EndOfALinkWithoutItsBeginningIsLeftOutWhenShown) {
  for (const Purpose purpose : {Purpose::kExact, Purpose::kShown}) {
    MarkedText text(purpose, "d");
    text.Append(AnchorEnd(purpose));
    EXPECT_EQ(text.Finish(), purpose == Purpose::kExact ? "d</A>" : "d");
  }
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
        const MarkedText mark(text.purpose(), "<I>");
        switch (what) {
          case 0:
            text.Append(tag);
            break;
          case 1:
            text.Append(one, Origin::kEvent);
            break;
          case 2:
            text.Append(Anchor(text.purpose())).Append(one, Origin::kEvent).Append(AnchorEnd(text.purpose()));
            break;
          case 3:
            text.Replace(tag, MarkedText(text.purpose(), other, Origin::kEvent));
            break;
          case 4:
            text.Surround(one, mark, mark);
            break;
          case 5:
            text.SurroundLast(one, mark, mark);
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
