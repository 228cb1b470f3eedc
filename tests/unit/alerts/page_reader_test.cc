#include "alerts/page_reader.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zendrix::alerts {
namespace {

PageReader After(std::string_view html) {
  PageReader reader;
  for (const char character : html) reader.Read(character);
  return reader;
}

char LetterOf(Place place) {
  switch (place) {
    case Place::kText:
      return 't';
    case Place::kFieldText:
      return 'f';
    case Place::kRawText:
      return 'r';
    case Place::kCode:
      return 'c';
    case Place::kComment:
      return '!';
    case Place::kValue:
      return 'v';
    case Place::kBareValue:
      return 'b';
    case Place::kMarkup:
      return 'm';
    case Place::kUnsure:
      return '?';
  }
  return '-';
}

// Behind each character the place of the next, a letter each.
std::string Places(std::string_view html) {
  PageReader reader;
  std::string places;
  for (const char character : html) {
    reader.Read(character);
    places += LetterOf(reader.place());
  }
  return places;
}

// Behind each character whether the next may belong to a reference.
std::string References(std::string_view html) {
  PageReader reader;
  std::string references;
  for (const char character : html) {
    reader.Read(character);
    references += reader.in_reference() ? '1' : '0';
  }
  return references;
}

using Cases = std::vector<std::pair<const char*, const char*>>;

void ExpectPlaces(const Cases& cases) {
  for (const auto& [html, places] : cases) EXPECT_EQ(Places(html), places) << html;
}

// The place behind the last character only.
void ExpectLastPlace(char place, const std::vector<const char*>& pages) {
  for (const char* html : pages) EXPECT_EQ(LetterOf(After(html).place()), place) << html;
}

TEST(PageReaderTest, TagNameAndValuesAreEachTheirOwnPlace) {
  ExpectPlaces({{"a<b c='d' e=f g>h", "tmmmmbvvmmmbbmmtt"},
                {"<b c=\"d'e\">f", "mmmmbvvvvmtt"},
                {"<b c='d\"e'>f", "mmmmbvvvvmtt"},
                {"</b c>d", "mmmmmtt"},
                {"<b c = d>e", "mmmmmbbbtt"},
                {"<b c=>d", "mmmmbtt"},
                {"<b>c", "mmtt"}});
}

TEST(PageReaderTest, SlashInATagPartsAttributesAndDoesNotKeepTheTagOpen) {
  ExpectPlaces({{"<b/c=d>e", "mmmmbbtt"},
                {"<b c/>d", "mmmmmtt"},
                {"<b />d", "mmmmtt"},
                {"<b c='1'/>d", "mmmmbvvmmtt"},
                {"<b//c>d", "mmmmmtt"},
                {"<b c='1'd='2'>e", "mmmmbvvmmbvvmtt"}});
}

TEST(PageReaderTest, LessThanThatNoNameFollowsIsText) {
  ExpectPlaces({{"<1>", "mtt"}, {"< b>", "mttt"}, {"<<b>c", "mmmtt"}, {"</>a", "mmtt"}, {"<1<b", "mtmm"}});
  for (const std::string letter : {"a", "m", "z", "A", "M", "Z"}) {
    EXPECT_EQ(Places("<" + letter), "mm");
    EXPECT_EQ(Places("</" + letter), "mmm");
  }
  for (const std::string other : {"`", "{", "@", "[", "0", "~"}) {
    EXPECT_EQ(Places("<" + other), "mt");
    EXPECT_EQ(Places("</" + other), "mm!");
  }
}

TEST(PageReaderTest, EveryBlankPartsTheWordsOfATag) {
  for (const std::string blank : {" ", "\t", "\n", "\f", "\r"}) {
    const std::string begun = "<b" + blank + "c" + blank + "=" + blank + "d";
    EXPECT_EQ(Places(begun), "mmmmmbbb");
    EXPECT_EQ(After(begun).value(), "d");
    EXPECT_EQ(Places(begun + blank), "mmmmmbbbm");
    EXPECT_EQ(After(begun + blank + "e=").attributes(), 2U);
  }
  EXPECT_EQ(Places("<b\vc=d"), "mmmmmm") << "no blank of a tag: the name goes on";
  EXPECT_EQ(After("<b c=d\ve").value(), "d\ve");
}

TEST(PageReaderTest, DeclarationsAndOddClosingTagsAreCommentsToTheNextGreaterThan) {
  ExpectPlaces({{"<?a>b", "m!!tt"},
                {"<!a>b", "mm!tt"},
                {"<!>a", "mmtt"},
                {"<!->a", "mmmtt"},
                {"<!-a>b", "mmm!tt"},
                {"</1>a", "mm!tt"},
                {"</ b>a", "mm!!tt"},
                {"<![CDATA[>a", "mm!!!!!!!tt"}});
}

// One dash read wrongly shows the rest of a page as a comment, or a comment as the page.
TEST(PageReaderTest, CommentEndsWhereABrowserEndsIt) {
  ExpectPlaces({{"<!--a-->b", "mmm!!!!tt"},
                {"<!-->a", "mmm!tt"},
                {"<!--->a", "mmm!!tt"},
                {"<!---->a", "mmm!!!tt"},
                {"<!----->a", "mmm!!!!tt"},
                {"<!----!>a", "mmm!!!!tt"},
                {"<!--a--!>b", "mmm!!!!!tt"},
                {"<!----!-->a", "mmm!!!!!!tt"},
                {"<!--a-b-->c", "mmm!!!!!!tt"}});
}

TEST(PageReaderTest, CommentGoesOnWhereABrowserReadsOn) {
  ExpectLastPlace('!', {"<!--a>b", "<!---!>a", "<!----a>b", "<!----!a->b", "<!----!!>a", "<!--a-b>c",
                        "<!--a-!>b", "<!--a->b", "<!--<b>c", "<!---a>b", "<!----!-a>b"});
}

TEST(PageReaderTest, AttributesThatABrowserFollowsAreTargets) {
  for (const std::string name :
       {"href",        "src",     "action",   "formaction", "background", "cite",       "data",
        "poster",      "usemap",  "longdesc", "manifest",   "ping",       "srcset",     "lowsrc",
        "imagesrcset", "archive", "codebase", "dynsrc",     "profile",    "xlink:href", "xml:base"})
    EXPECT_EQ(After("<b " + name + "=").value_use(), ValueUse::kTarget) << name;
  for (const char* page :
       {"<b HREF=", "<b Action='", "<b x href=y", "<b x/href=", "<b a='1'href=", "<b/src='x"})
    EXPECT_EQ(After(page).value_use(), ValueUse::kTarget) << page;
}

TEST(PageReaderTest, AttributesThatABrowserRunsOrLaysOutByAreCode) {
  for (const char* page :
       {"<b style=", "<b srcdoc=", "<b content='", "<b onclick=", "<b ONLOAD='x", "<b on="})
    EXPECT_EQ(After(page).value_use(), ValueUse::kCode) << page;
}

TEST(PageReaderTest, OtherAttributesAreText) {
  for (const char* page : {"<b title=", "<b o=", "<b hre=", "<b xhref=", "<b hrefx='",
                           "<b href x=", "<b =href=", "<b href=1 title=", "<b onclick='1' x="})
    EXPECT_EQ(After(page).value_use(), ValueUse::kText) << page;
}

TEST(PageReaderTest, ValueIsWhatStandsBehindItsOwnEqualsSign) {
  const std::pair<const char*, const char*> cases[] = {
      {"<b c=de", "de"},      {"<b c='d e", "d e"},     {"<b c=\"d'", "d'"}, {"<b c=1 d=2", "2"},
      {"<b c='1' d='", ""},   {"<b c =href", "href"},   {"<b c= 'd", "d"},   {"<b =c=d", "d"},
      {"<b c='d'>text", "d"}, {"<b c=d=e", "d=e"},      {"<b c=d/e", "d/e"}, {"<b c=d'e", "d'e"},
      {"<b c==d", "=d"},      {"<b c='1'><i d=2", "2"},
  };
  for (const auto& [page, value] : cases) EXPECT_EQ(After(page).value(), value) << page;
}

TEST(PageReaderTest, AttributesCountWhenTheirValueBegins) {
  const std::pair<const char*, std::size_t> cases[] = {
      {"a=b", 0},    {"<b c", 0},   {"<b c d>", 0},       {"<b c=", 1},
      {"<b c =", 1}, {"<b =c=", 1}, {"<b c='1'd=2 e", 2}, {"<b c=1><i d=2>", 2}};
  for (const auto& [page, count] : cases) EXPECT_EQ(After(page).attributes(), count) << page;
}

TEST(PageReaderTest, ElementsHoldTextFieldsRawTextOrCode) {
  ExpectLastPlace('t', {"<b>", "<styles>", "<script1>", "</style>", "</script>", "</title>", "<p><b>"});
  ExpectLastPlace('f', {"<title>", "<textarea>", "<TITLE>", "<Textarea rows=3>", "<b><title>"});
  ExpectLastPlace('r', {"<xmp>", "<iframe>", "<noembed>", "<noframes>", "<plaintext>"});
  ExpectLastPlace('c', {"<style>", "<script>", "<STYLE>", "<style/>", "<style a='b'>", "</b><style>",
                        "<b><script>", "<p/><script >"});
}

TEST(PageReaderTest, RawContentEndsAtItsOwnClosingTagOnly) {
  ExpectPlaces({{"<style>a</style>b", "mmmmmmccmmmmmmmtt"}, {"<xmp>&<b></xmp>c", "mmmmrrmrrmmmmmtt"}});
  ExpectLastPlace('t', {"<style></style>", "<style></STYLE>", "<style></style >", "<style></style/>",
                        "<style></style\ta=b>", "<style><</style>", "<style></x</style>", "<style></</style>",
                        "<style><x</style>", "<style><style></style>", "<style></style><b>",
                        "<title></title>", "<textarea><b></textarea>", "<iframe></iframe>"});
  ExpectLastPlace('c',
                  {"<style></b>", "<style></styles>", "<style></style1>", "<style></1>", "<style></ style>",
                   "<style><style>", "<style></style><style>", "<style></script>", "<style><!--</b>"});
  ExpectLastPlace('r', {"<plaintext></plaintext>", "<xmp></iframe>", "<xmp><!--"});
  ExpectLastPlace('f', {"<title></textarea>", "<title><b>"});
  ExpectLastPlace('v', {"<style></style a='", "<title></title/a='"});
}

// Inside "<!--" a script may hold the text of another one, whose closing tag does not end it.
TEST(PageReaderTest, HiddenScriptOfAScriptIsCodeToItsEnd) {
  ExpectLastPlace('c', {"<script><!--<script></script>", "<script><!--<SCRIPT></script>",
                        "<script><!--<script/></script>", "<script><!--<script ></script>",
                        "<script><!--<x<script></script>", "<script><!--<script></b></script>",
                        "<script><!--<script></script1></script>", "<script><!--x-><script></script>",
                        "<script><!--x-a-><script></script>", "<script><!--x--a><script></script>",
                        "<script><!--<><script></script>", "<script><!--x--<><script></script>",
                        "<script><!--x><script></script>"});
  ExpectLastPlace('t',
                  {"<script><!--<script></script></script>", "<script><!--<script></b></script></script>",
                   "<script><!--<script><script></script></script>", "<script><!--<script>--></script>"});
}

TEST(PageReaderTest, ScriptThatHidesNoOtherEndsAtItsFirstClosingTag) {
  ExpectLastPlace('t', {"<script></script>",
                        "<script><!--</script>",
                        "<script><script></script>",
                        "<script><!--x--><script></script>",
                        "<script><!--x---><script></script>",
                        "<script><!--><script></script>",
                        "<script><!---><script></script>",
                        "<script><!<script></script>",
                        "<script><!</script>",
                        "<script><!-</script>",
                        "<script><!-<script></script>",
                        "<script><!x--<script></script>",
                        "<script><!-x--<script></script>",
                        "<script>a<x--<script></script>",
                        "<script><?--<script></script>",
                        "<script><!--<script1></script>",
                        "<script><!--<b></script>",
                        "<script><!--< script></script>",
                        "<script><!--<scripts></script>",
                        "<script><!--<xscript></script>",
                        "<style><!--<script></style>"});
}

TEST(PageReaderTest, ScriptDoesNotInheritWhatTheOneBeforeItHid) {
  ExpectLastPlace('t', {"<script><!--</script><script><script></script>"});
}

TEST(PageReaderTest, PlaceIsUnknownWhereTheTreeDecides) {
  ExpectLastPlace('?', {"<noscript>", "<noscript></noscript>a", "<svg><style>", "<math><title>",
                        "<select><textarea>", "<frameset><xmp>", "<svg></svg><script>", "<svg><![",
                        "<svg><plaintext>", "<noscript><b title='"});
  ExpectLastPlace('t', {"</noscript>", "<svg>", "<svg><b>", "<math>", "<select>", "<frameset>"});
  ExpectLastPlace('!', {"<![", "<svg><!x", "<!DOCTYPE", "<svg><!--["});
  ExpectLastPlace('c', {"</svg><style>", "<b><style>"});
}

TEST(PageReaderTest, ReferenceGoesOnThroughLettersDigitsAndOneNumberSign) {
  const std::pair<const char*, const char*> cases[] = {
      {"a&b c", "01100"}, {"&lt;x", "11100"}, {"&#60;1", "111100"}, {"&09 1", "11100"}, {"&azAZ;", "111110"},
      {"&a#1", "1100"},   {"& a", "100"},     {"&&#1", "1111"},     {"&##1", "1100"},   {"#a1", "000"},
      {"&/1", "100"},     {"&:1", "100"},     {"&a&b", "1111"},     {"&`a", "100"},     {"&1#", "110"},
  };
  for (const auto& [html, references] : cases) EXPECT_EQ(References(html), references) << html;
}

TEST(PageReaderTest, ReferencesAreReadInTextFieldsAndValuesOnly) {
  for (const char* page :
       {"&", "a&", "<&", "<b>&", "<b c='&", "<b c=\"&a", "<b c=&", "<b c=d&", "<title>&", "<textarea>&a"})
    EXPECT_TRUE(After(page).in_reference()) << page;
  for (const char* page : {"", "a", "<b&", "<b &", "<b c&", "<b c='1'&", "</b &", "<style>&", "<script>&a",
                           "<xmp>&", "<!--&", "<?&", "<textarea>a", "<b c=d", "<b c='&a'", "<b c=&a>x", "&<"})
    EXPECT_FALSE(After(page).in_reference()) << page;
}

TEST(PageReaderTest, PlainTextIsTextOutsideReferencesWhereThePlaceIsKnown) {
  for (const char* page : {"", "a", "<b>", "&amp;", "<!---->", "<style></style>"})
    EXPECT_TRUE(After(page).in_plain_text()) << page;
  for (const char* page : {"&", "&am", "<", "<b", "<b c='", "<title>", "<style>", "<!--", "<noscript>a"})
    EXPECT_FALSE(After(page).in_plain_text()) << page;
}

}  // namespace
}  // namespace zendrix::alerts
