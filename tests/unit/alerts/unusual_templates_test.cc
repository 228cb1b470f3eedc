// Description files are data too: whatever a template is like, and wherever it puts the text of an event, the
// page is made of the same tags and attributes as with a harmless text in that place.
#include "support/alert_fixture.h"
#include "support/browser_tokens.h"
#include "support/odd_texts.h"

namespace zendrix::alerts {
namespace {

using test::BrowserPage;
using test::OddTexts;
using test::ReadAsBrowser;

constexpr std::string_view kPortal = "http://portal.example.com/redir.asp?PostType=UserGetDescription&Mon=";

class UnusualTemplatesTest : public test::AlertFixture {
 protected:
  // The row's template for the description of a blocked event, filled for a page.
  std::string Shown(const std::string& row, const std::string& description,
                    const std::string& monitor = "System") {
    Have(AnAlert());
    HaveEvent(monitor, description, "success");
    state_.Desc[2] = {monitor + ",1,[[" + row + "]]"};
    const std::string table = Table("success", true, Purpose::kShown);
    const std::size_t start = table.find("[[") + 2;
    return table.substr(start, table.rfind("]]") - start);
  }
};

// "<<description>>" made a tag of any text: an event called "script" was one.
TEST_F(UnusualTemplatesTest, TextBetweenBareBracketsIsNoTag) {
  for (const std::string& text : OddTexts()) {
    SCOPED_TRACE(text);
    EXPECT_TRUE(ReadAsBrowser(Shown("<<description>>", text)).tags.empty());
    EXPECT_TRUE(ReadAsBrowser(Shown("</<description>>", text)).tags.empty());
  }
  EXPECT_EQ(Shown("<<description>>", "b"), "&lt;b>");
  EXPECT_EQ(Shown("<<description>b>", ""), "&lt;b>");
}

// A blank or ">" in the text ended the value, and what stood behind it became attributes or a tag.
TEST_F(UnusualTemplatesTest, BareValueHoldsTheWholeText) {
  for (const std::string& text : OddTexts()) {
    SCOPED_TRACE(text);
    const BrowserPage page = ReadAsBrowser(Shown("<b title=<description> class=x>", text));
    ASSERT_EQ(page.tags.size(), 1U);
    ASSERT_EQ(page.tags[0].attributes.size(), 2U);
    EXPECT_EQ(page.tags[0].attributes[1], (std::pair<std::string, std::string>("class", "x")));
  }
  EXPECT_EQ(Shown("<b title=<description>>", "a b>1"), "<b title=a&#32;b&#62;1>");
}

// Without a text of the event the next attribute became the value.
TEST_F(UnusualTemplatesTest, EmptyBareValueDoesNotSwallowTheNextAttribute) {
  EXPECT_EQ(Shown("<b title=<description> class=x>", ""), "<b title=&#32; class=x>");
}

TEST_F(UnusualTemplatesTest, QuotedValueHoldsTheWholeTextInNumericReferences) {
  EXPECT_EQ(Shown("<b title='<description>'>", "a'b\"<c>&\x01"),
            "<b title='a&#39;b&#34;&#60;c&#62;&#38;&#32;'>");
  EXPECT_EQ(Shown("<b title=\"<description>\">", "01/02/2026 03:04 AM"), "<b title=\"01/02/2026 03:04 AM\">");
}

TEST_F(UnusualTemplatesTest, TextAmongTheNamesOfATagIsNumericReferences) {
  EXPECT_EQ(Shown("<b <description>=1>", "on"), "<b &#111;&#110;=1>");
  EXPECT_EQ(Shown("<b<description>>", "r"), "<b&#114;>");
  EXPECT_EQ(Shown("<b /<description> x>", ">"), "<b /&#62; x>");
}

TEST_F(UnusualTemplatesTest, TargetThatTheTemplateGivesIsPercentEncoded) {
  EXPECT_EQ(Shown("<A HREF='http://x/?q=<description>'>", "a'b <c>&\xE4:/"),
            "<A HREF='http://x/?q=a%27b%20%3Cc%3E%26%E4:/'>");
  EXPECT_EQ(Shown("<img src=https://x/<description>>", "a b>"), "<img src=https://x/a%20b%3E>");
  EXPECT_EQ(Shown("<img SRC=\"..\\Images\\<description>.png\">", "x\" y=\""),
            "<img SRC=\"..\\Images\\x%22%20y%3D%22.png\">");
  EXPECT_EQ(Shown("<a href='x?a=1&am<description>'>", "p;"), "<a href='x?a=1&am%70%3B'>");
}

// A template that leaves the whole target to the event still lets it name no other place.
TEST_F(UnusualTemplatesTest, TargetThatIsTheEventsGoesNowhereElse) {
  for (const std::string text :
       {"http://evil.example/", "//evil.example", "javascript:alert(1)", "\\\\evil"}) {
    SCOPED_TRACE(text);
    EXPECT_EQ(Shown("<A HREF='<description>'>", text).find_first_of(":/\\"), std::string::npos);
  }
  EXPECT_EQ(Shown("<A HREF='javascript:f(\"<description>\")'>", "\");g(\""),
            "<A HREF='javascript:f(\"   g  \")'>");
  EXPECT_EQ(Shown("<A HREF='javascript&colon;<description>'>", "f()"), "<A HREF='javascript&colon;f  '>");
}

// "do" behind "HREF='" was the command to block.
TEST_F(UnusualTemplatesTest, TargetNeverBecomesACommand) {
  for (const std::string text : {"do", "undo", "DO", "showhide", "x.do"}) {
    EXPECT_EQ(Shown("<A HREF='<description>'>", text), "<A HREF='" + text + ".'>");
    EXPECT_EQ(Shown("<A HREF=<description>>", text), "<A HREF=" + text + ".>");
    EXPECT_EQ(Shown("<A HREF='<description>?x'>", text), "<A HREF='" + text + ".?x'>");
    EXPECT_EQ(Shown("<A HREF='<description>#x'>", text), "<A HREF='" + text + ".#x'>");
  }
  EXPECT_EQ(Shown("<A HREF='<description>o'>", "d"), "<A HREF='do.'>");
  EXPECT_EQ(Shown("<A HREF='<description>'>", "done"), "<A HREF='done'>");
  EXPECT_EQ(Shown("<A HREF='do'><b title='<description>'>", "do"), "<A HREF='do'><b title='do'>");
  EXPECT_EQ(Shown("<b title='<description>'><A HREF='do'>", "do"), "<b title='do'><A HREF='do'>");
  EXPECT_EQ(Shown("<A HREF='http://x/<description>'>", "do"), "<A HREF='http://x/do'>");
}

TEST_F(UnusualTemplatesTest, WhatIsRunOrLaidOutByKeepsLettersAndDigits) {
  EXPECT_EQ(Shown("<b style='color:<description>'>", "r3d;x:url(y)"), "<b style='color:r3d x url y '>");
  EXPECT_EQ(Shown("<b onclick=f(<description>)>", "1);g("), "<b onclick=f(1&#32;&#32;g&#32;)>");
  EXPECT_EQ(Shown("<script>x='<description>'</script>", "';y</script>"), "<script>x='  y  script '</script>");
  EXPECT_EQ(Shown("<style>b{<description>}</style>", "}a{"), "<style>b{ a }</style>");
}

TEST_F(UnusualTemplatesTest, CommentEndsWhereTheTemplateEndsIt) {
  EXPECT_EQ(Shown("<!-- <description>> x -->", "a--"), "<!-- a&#45;&#45;> x -->");
  EXPECT_EQ(Shown("<!--<description>-->", ">"), "<!--&#62;-->");
  EXPECT_EQ(Shown("<!--x--<description>>-->", ""), "<!--x--&#32;>-->");
}

TEST_F(UnusualTemplatesTest, FieldHoldsTheTextAsItIs) {
  EXPECT_EQ(Shown("<textarea><description></textarea>", "</textarea>&"),
            "<textarea>&lt;/textarea&gt;&amp;</textarea>");
  EXPECT_EQ(Shown("<textarea></<description>></textarea>", "textarea"),
            "<textarea></&#116;extarea></textarea>");
  EXPECT_EQ(Shown("<xmp><description></xmp>", "</xmp>"), "<xmp>&lt;/xmp&gt;</xmp>");
}

TEST_F(UnusualTemplatesTest, WhereOnlyTheBrowserKnowsNothingOfTheEventIsShown) {
  EXPECT_EQ(Shown("<svg><style><a title='<description>'>", "x'"),
            "<svg><style><a title='?"
            "?'>");
  EXPECT_EQ(Shown("<svg><![CDATA[<description>> <description>]]>", "a"), "<svg><![CDATA[?> ?]]>");
  EXPECT_EQ(Shown("<select><title><description>", "a"), "<select><title>?");
  EXPECT_EQ(Shown("<noscript><description></noscript><description>", ""), "<noscript>?</noscript>?");
  EXPECT_EQ(Shown("<svg></svg><b title='<description>'>", "x"), "<svg></svg><b title='x'>");
  EXPECT_EQ(Shown("<![CDATA[<description>]]>", "x"), "<![CDATA[x]]>");
}

// The value was linked inside the template's own reference: "&" + link + ";".
TEST_F(UnusualTemplatesTest, ValueNeverSplitsAReferenceOfTheTemplate) {
  EXPECT_EQ(Shown("&lt;<description, right of last \\>&gt;", "lt", "Running Processes"),
            "&lt;<A HREF='" + std::string(kPortal) + "RunningProcesses&Desc=lt'>lt</A>&gt;");
  EXPECT_EQ(Shown("&am<description>;", "p"), "&am&#112;;");
  EXPECT_EQ(Shown("&#6<description>;", "0"), "&#6&#48;;");
  EXPECT_EQ(Shown("<b title='&am<description>;'>", "p"), "<b title='&am&#112;;'>");
}

// The search for the end of the tag stopped at the placeholder's ">".
TEST_F(UnusualTemplatesTest, NothingIsLinkedInAnAttributeBehindAnUnfilledPlaceholder) {
  for (const char* quote : {"'", "\"", ""}) {
    const std::string row = std::string("<b title=") + quote + "<description, left of :> srv" + quote +
                            ">x</b> <description, right of :>";
    EXPECT_EQ(Shown(row, "80:srv", "Listening Ports"), std::string("<b title=") + quote + "80 srv" + quote +
                                                           ">x</b> <A HREF='" + std::string(kPortal) +
                                                           "RunningProcesses&Desc=srv'>srv</A>");
  }
}

TEST_F(UnusualTemplatesTest, LinkedDescriptionInAnAttributeIsTheTextAlone) {
  EXPECT_EQ(Shown("<b title='<description>'>x</b>", "e'e", "System Users"), "<b title='e&#39;e'>x</b>");
  EXPECT_EQ(Shown("<textarea><description></textarea>", "eve", "System Users"), "<textarea>eve</textarea>");
}

// An event called "dotext" between the template's brackets was filled like the template's own placeholder.
TEST_F(UnusualTemplatesTest, BracketsAroundATextMakeNoPlaceholder) {
  state_.Desc[2] = {"Aggregation,N,<Corrected>", "System,1,<<description>>"};
  for (const char* text : {"undotext", "risklevel", "NotCorrected"}) {
    Have(AnAlert());
    HaveEvent("System", text, "success");
    EXPECT_THAT(Page(true, Purpose::kShown), ::testing::HasSubstr(std::string("&lt;") + text + ">"));
  }
}

}  // namespace
}  // namespace zendrix::alerts
