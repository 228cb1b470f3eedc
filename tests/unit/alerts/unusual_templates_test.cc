// Description files are data too: whatever a template is like, and wherever it puts the text of an event, the
// page is made of the same tags and attributes as with a harmless text in that place.
#include <algorithm>
#include <random>

#include "support/alert_fixture.h"
#include "support/browser_tokens.h"
#include "support/hostile_corpus.h"
#include "support/hostile_events.h"
#include "support/sanitizers.h"

namespace zendrix::alerts {
namespace {

using test::BrowserPage;
using test::BrowserTag;
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
  // The same, as what a browser sees.
  static std::vector<std::string> Shape(const std::string& shown) {
    return test::ShapeOf(ReadAsBrowser(shown), kPortal);
  }
};

const std::vector<std::string>& OddTexts() {
  static const std::vector<std::string> texts = [] {
    std::vector<std::string> all = {"script",
                                    "img",
                                    "a b",
                                    "onclick=x",
                                    "x onclick=x",
                                    "' onclick='x",
                                    "\" onclick=\"x",
                                    ">",
                                    "->",
                                    "--",
                                    "--!",
                                    "-",
                                    "!",
                                    "/",
                                    "=",
                                    "am",
                                    "amp",
                                    "lt",
                                    "lt;",
                                    "#60;",
                                    "#x3c;",
                                    ";",
                                    "p",
                                    "do",
                                    "undo",
                                    "showhide",
                                    "dotext",
                                    "undotext",
                                    "description",
                                    "Corrected",
                                    "risklevel",
                                    "td",
                                    "tr",
                                    "/td",
                                    "80",
                                    "0",
                                    "]]>",
                                    "]]",
                                    "--><b>",
                                    "'><b>",
                                    "\"><b>",
                                    "</script><b>",
                                    "</style><b>",
                                    "</textarea><b>",
                                    "</title>",
                                    "/script",
                                    "?",
                                    "<!--",
                                    "<script>",
                                    "<svg>",
                                    "javascript:alert(1)",
                                    "http://evil.example/",
                                    "//evil.example",
                                    "\t",
                                    "a\tb",
                                    "`",
                                    "\\",
                                    "{}",
                                    ":expression(1)",
                                    "&",
                                    "&lt",
                                    "\x01",
                                    "\x81",
                                    "%3C"};
    for (const auto& hostile : test::HostileCorpus(std::string(ZENDRIX_TEST_DATA) + "/hostile"))
      all.push_back(hostile.bytes);
    return all;
  }();
  return texts;
}

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

// Random templates.

class Templates {
 public:
  explicit Templates(unsigned seed) : random_(seed) {}

  std::size_t Below(std::size_t end) { return random_() % end; }
  // Of pieces of markup and these placeholders.
  std::string With(const std::vector<std::string>& placeholders) {
    std::string text;
    for (auto left = 3 + Below(8); left > 0; --left)
      text += Below(3) == 0 ? placeholders[Below(placeholders.size())] : Piece();
    return text;
  }

 private:
  std::string Piece() {
    static const std::vector<std::string> kPieces = {
        "<",        ">",         "</",          "<!--",     "-->",       "--",      "-",        "!",
        "<!",       "<?",        "<![CDATA[",   "]]>",      "'",         "\"",      "=",        " ",
        "/",        "/>",        "&",           "&am",      "&#",        "&#x",     ";",        "&lt;",
        "x",        "td",        "80",          "script",   "<b",        "<b ",     "<b>",      "</b>",
        "<a href=", "<A HREF='", "<img src=\"", " title=",  " title='",  " alt=\"", " style='", " onclick=\"",
        "<script>", "</script>", "<!--<script", "<script ", "</script ", "<style>", "</style>", "<textarea>",
        "</text",   "area>",     "</textarea>", "<title>",  "</title>",  "<xmp>",   "</xmp>",   "<svg>",
        "<select>", "<math>",    "<noscript>",  "<iframe>", "</iframe>", "<TD",     "http://x", "javascript:",
        "?q=",      "#",         "do",          "<dotext>", "\t",        "--!>",    "`",        "\\"};
    // What never ends would leave the rest of the template unread.
    return Below(400) == 0 ? "<plaintext>" : kPieces[Below(kPieces.size())];
  }

  std::mt19937 random_;
};

const std::vector<std::string>& RowPlaceholders() {
  static const std::vector<std::string> all = {"<description>",
                                               "<description, right of :>",
                                               "<description, left of :>",
                                               "<description, right of last :>",
                                               "<description, right of last \\>",
                                               "<description right of =>",
                                               "<%1>",
                                               ".<%2>",
                                               "<:",
                                               ":>"};
  return all;
}

const std::vector<std::string>& PagePlaceholders() {
  static const std::vector<std::string> all = {"<date>",         "<time>",      "<time>.<br>", "<Corrected>",
                                               "<NotCorrected>", "<risklevel>", "<undotext>",  "<dotext>"};
  return all;
}

const std::vector<std::string>& WizardPlaceholders() {
  static const std::vector<std::string> all = {
      "&lt;port&gt;",        "&lt;ip address&gt;",     "&lt;program&gt;",
      "&lt;description&gt;", "&lt;time of alert&gt;",  "&lt;click here&gt;",
      "&lt;Click here&gt;",  "&lt;important icon&gt;", "&lt;full description from right pane&gt;"};
  return all;
}

class RandomTemplatesTest : public UnusualTemplatesTest, public ::testing::WithParamInterface<unsigned> {
 protected:
  void HaveTemplates(Templates& templates, const std::string& monitor) {
    state_.Desc[2] = {"Aggregation,N," + templates.With(PagePlaceholders()),
                      monitor + ",1," + templates.With(RowPlaceholders())};
    state_.Desc[5] = {monitor + "," + templates.With(WizardPlaceholders()),
                      "Aggregation," + templates.With(WizardPlaceholders())};
  }
  void HaveAlert(const std::string& monitor, const std::string& description, const std::string& text) {
    NotableRecord alert = AnAlert();
    alert.DateTime = text;
    Have(alert);
    HaveEvent(monitor, description, "success failed");
    alerts_.context().FirstEventDateTime = text;
  }
  std::vector<std::string> Pages() {
    std::vector<std::string> all = {Page(true, Purpose::kShown), Page(false, Purpose::kShown)};
    for (std::size_t i = 0; i < 2; ++i) all.push_back(MonitorText(i, Purpose::kShown));
    return all;
  }
  void ExpectSameShapes(const std::vector<std::string>& pages, const std::vector<std::string>& harmless) {
    for (std::size_t i = 0; i < pages.size(); ++i) {
      EXPECT_EQ(Shape(pages[i]), Shape(harmless[i])) << pages[i] << "\n\nharmless:\n" << harmless[i];
      if (HasFailure()) return;
    }
  }
};

TEST_P(RandomTemplatesTest, PageIsMadeOfTheSameAsWithAHarmlessText) {
  Templates templates(GetParam());
  const auto& texts = OddTexts();
  const auto& monitors = test::PageMonitors();
  for (int round = 0; round < test::Rounds(400); ++round) {
    const std::string& monitor = monitors[templates.Below(monitors.size())];
    const std::string& text = texts[templates.Below(texts.size())];
    const auto descriptions = test::DescriptionsWith(monitor, text);
    const std::string& description = descriptions[templates.Below(descriptions.size())];
    HaveTemplates(templates, monitor);
    SCOPED_TRACE(monitor + ": " + description + "\n" + state_.Desc[2][0] + "\n" + state_.Desc[2][1] + "\n" +
                 state_.Desc[5][0]);
    test::Harmless harmless;
    HaveAlert(monitor, description, text);
    const std::vector<std::string> pages = Pages();
    HaveAlert(monitor, harmless.Of(description), harmless.Of(text));
    ExpectSameShapes(pages, Pages());
    if (HasFailure()) return;
  }
}

// An event that says nothing is an event's text as well.
TEST_P(RandomTemplatesTest, PageIsMadeOfTheSameWithAnEmptyText) {
  Templates templates(GetParam() + 1000);
  for (int round = 0; round < test::Rounds(200); ++round) {
    const std::string monitor = templates.Below(2) ? "System" : "Autorun Registry";
    const bool entry = monitor != "System";
    HaveTemplates(templates, monitor);
    SCOPED_TRACE(state_.Desc[2][0] + "\n" + state_.Desc[2][1] + "\n" + state_.Desc[5][0]);
    HaveAlert(monitor, entry ? "=" : "", "");
    const std::vector<std::string> pages = Pages();
    HaveAlert(monitor, entry ? "Q=Q" : "Q", "Q");
    ExpectSameShapes(pages, Pages());
    if (HasFailure()) return;
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomTemplatesTest, ::testing::Range(0U, 12U));

}  // namespace
}  // namespace zendrix::alerts
