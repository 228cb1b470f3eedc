#include "alerts/page_writer.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>

namespace zendrix::alerts {
namespace {

constexpr std::string_view kLettersAndDigits =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
constexpr std::string_view kAddress = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-._~:/";
constexpr std::string_view kPartOfAnAddress =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-._~";

bool IsAmong(char character, std::string_view all) {
  return all.find(character) != std::string_view::npos;
}

// Bytes that Windows-1252 gives no visible character.
bool IsInvisible(char character) {
  const auto byte = static_cast<unsigned char>(character);
  return byte <= 31 || IsAmong(character, "\x7f\x81\x8d\x8f\x90\x9d");
}

std::string Numeric(char character) {
  const int byte = IsInvisible(character) ? 32 : static_cast<unsigned char>(character);
  return "&#" + std::to_string(byte) + ";";
}

std::string Percent(char character) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  const auto byte = static_cast<unsigned char>(character);
  return {'%', kDigits[byte / 16], kDigits[byte % 16]};
}

constexpr std::pair<char, std::string_view> kReferences[] = {{'"', "&quot;"}, {'&', "&amp;"}, {'\'', "&#39;"},
                                                             {'<', "&lt;"},   {'>', "&gt;"},  {'`', "&#96;"}};

std::string InText(char character) {
  for (const auto& [special, reference] : kReferences)
    if (special == character) return std::string(reference);
  return std::string(1, IsInvisible(character) ? ' ' : character);
}

// A page piece by piece: Template, Event and Path texts behind one another.
class Page {
 public:
  Page& Template(std::string_view text, bool before_event = false) {
    for (const char character : text) writer_.Template(character, before_event);
    return *this;
  }
  Page& Event(std::string_view text) {
    for (const char character : text) writer_.Event(character);
    return *this;
  }
  Page& Path(std::string_view text) {
    for (const char character : text) writer_.Path(character);
    return *this;
  }
  Page& EmptyEvent() {
    writer_.EmptyEvent();
    return *this;
  }
  const std::string& Text() const { return writer_.page(); }
  const PageWriter& writer() const { return writer_; }

 private:
  PageWriter writer_;
};

// What each byte of an event becomes behind this template, the place staying what it is.
template <class Expected>
void ExpectEveryByte(const std::string& begun, Expected&& expected) {
  for (int byte = 0; byte < 256; ++byte) {
    const char character = static_cast<char>(byte);
    EXPECT_EQ(Page().Template(begun).Event({&character, 1}).Text(), begun + expected(character))
        << begun << " and byte " << byte;
  }
}

TEST(PageWriterTest, EveryByteOfAnEventIsTextInTextAndFields) {
  for (const char* begun : {"", "a", "<b>", "<title>", "<textarea>", "<xmp>"}) ExpectEveryByte(begun, InText);
}

TEST(PageWriterTest, WhatIsSpecialInTextIsWhatIsNotWrittenAsItStands) {
  for (int byte = 0; byte < 256; ++byte) {
    const char character = static_cast<char>(byte);
    EXPECT_EQ(IsSpecialInText(character), InText(character) != std::string(1, character)) << byte;
  }
}

TEST(PageWriterTest, EveryByteInQuotesIsItselfOrANumericReference) {
  for (const char* begun : {"<b title='", "<b title=\"x"})
    ExpectEveryByte(begun, [](char c) {
      return IsInvisible(c) || IsAmong(c, "<>&'\"`") ? Numeric(c) : std::string(1, c);
    });
}

TEST(PageWriterTest, EveryByteOfABareValueOrACommentIsALetterADigitOrANumericReference) {
  for (const char* begun : {"<b title=", "<b title=x", "<!--", "<!--x", "<?"})
    ExpectEveryByte(begun,
                    [](char c) { return IsAmong(c, kLettersAndDigits) ? std::string(1, c) : Numeric(c); });
}

TEST(PageWriterTest, EveryByteAmongTheNamesOfATagIsANumericReference) {
  for (const char* begun : {"<b", "<b ", "<b c", "<", "</", "<b c='d'", "<!"})
    ExpectEveryByte(begun, Numeric);
}

TEST(PageWriterTest, EveryByteOfCodeIsALetterADigitOrABlank) {
  for (const char* begun : {"<style>", "<script>", "<b onclick='", "<b style=\"x"})
    ExpectEveryByte(begun, [](char c) { return std::string(1, IsAmong(c, kLettersAndDigits) ? c : ' '); });
  ExpectEveryByte("<b onclick=",
                  [](char c) { return IsAmong(c, kLettersAndDigits) ? std::string(1, c) : "&#32;"; });
}

TEST(PageWriterTest, EveryByteOfATargetBesideIsPercentEncodedButForTheUnreserved) {
  for (const char* begun :
       {"<a href='", "<a href=", "<img src='../", "<a href='x?a=", "<a href='x/y:", "<a href='x#:"})
    ExpectEveryByte(begun,
                    [](char c) { return IsAmong(c, kPartOfAnAddress) ? std::string(1, c) : Percent(c); });
}

TEST(PageWriterTest, EveryByteOfAnAddressIsPercentEncodedButForHostsPortsAndPaths) {
  for (const char* begun : {"<a href='http://", "<a href='https://x/?q=", "<img src=HTTP://x/",
                            "<a href=' http://x/", "<a href='\t\x01 http://"})
    ExpectEveryByte(begun, [](char c) { return IsAmong(c, kAddress) ? std::string(1, c) : Percent(c); });
}

// A target that is a command of its own, as a script's, is code.
TEST(PageWriterTest, EveryByteBehindASchemeIsALetterADigitOrABlank) {
  for (const char* begun :
       {"<a href='javascript:", "<a href='x&colon;", "<a href=' mailto:x", "<a href='ftp://"})
    ExpectEveryByte(begun, [](char c) { return std::string(1, IsAmong(c, kLettersAndDigits) ? c : ' '); });
}

TEST(PageWriterTest, EveryByteIsAQuestionMarkWhereThePlaceIsUnknown) {
  for (const char* begun : {"<noscript>", "<svg><style>"})
    ExpectEveryByte(begun, [](char) { return std::string("?"); });
}

TEST(PageWriterTest, EventBehindTheBeginningOfAReferenceDoesNotContinueIt) {
  EXPECT_EQ(Page().Template("&").Event("lt").Text(), "&&#108;t");
  EXPECT_EQ(Page().Template("<title>&").Event("lt").Text(), "<title>&&#108;t");
  EXPECT_EQ(Page().Template("<b title='&").Event("lt").Text(), "<b title='&&#108;t");
  EXPECT_EQ(Page().Template("<b title=&").Event("lt").Text(), "<b title=&&#108;t");
  EXPECT_EQ(Page().Template("<a href='?x&").Event("lt").Text(), "<a href='?x&%6Ct");
  EXPECT_EQ(Page().Template("<b onclick='&").Event("lt").Text(), "<b onclick='&&#32;t");
  EXPECT_EQ(Page().Template("<b onclick='&").Event("(").Text(), "<b onclick='&&#32;");
}

TEST(PageWriterTest, PathKeepsItsSlashesAndColonsInATarget) {
  for (const std::string begun : {"<img src='", "<img src=", "<img src=\"x"})
    for (int byte = 0; byte < 256; ++byte) {
      const char c = static_cast<char>(byte);
      EXPECT_EQ(Page().Template(begun).Path({&c, 1}).Text(),
                begun + (IsAmong(c, kAddress) ? std::string(1, c) : Percent(c)))
          << byte;
    }
  EXPECT_EQ(Page().Template("<img src='x&").Path("lt/").Text(), "<img src='x&%6Ct/");
}

TEST(PageWriterTest, PathIsAnEventsTextOutsideTargets) {
  for (const std::string begun :
       {"", "<b title='", "<b title=", "<b onclick='", "<title>", "<!--", "<b ", "<style>"})
    for (const std::string path : {"/", ":", "'", "a", "&", " ", "\xE4"})
      EXPECT_EQ(Page().Template(begun).Path(path).Text(), Page().Template(begun).Event(path).Text());
  EXPECT_EQ(Page().Template("<a href='x'>").Path("/'").Text(), "<a href='x'>/&#39;");
  EXPECT_EQ(Page().Template("<a href='x' ").Path("/").Text(), "<a href='x' &#47;");
}

TEST(PageWriterTest, EmptyEventKeepsApartWhatWouldGrowTogetherAndNothingElse) {
  for (const std::string begun : {"<", "<b", "<b ", "<b c", "<!--", "<!--x-", "<b c=", "<a href="})
    EXPECT_EQ(Page().Template(begun).EmptyEvent().Text(), begun + "&#32;");
  for (const std::string begun :
       {"", "a", "&a", "<b>", "<b c=d", "<b c='", "<b c='d", "<title>", "<xmp>", "<style>"})
    EXPECT_EQ(Page().Template(begun).EmptyEvent().Text(), begun);
  EXPECT_EQ(Page().Template("<noscript>").EmptyEvent().Text(), "<noscript>?");
}

TEST(PageWriterTest, LessThanThatAnEventStandsBehindIsText) {
  EXPECT_EQ(Page().Template("<", true).Event("b").Text(), "&lt;b");
  EXPECT_EQ(Page().Template("a<", true).Text(), "a&lt;");
  EXPECT_EQ(Page().Template("&<", true).Text(), "&&lt;") << "behind a reference as well";
  EXPECT_EQ(Page().Template("<b title='").Template("<", true).Text(), "<b title='<");
  EXPECT_EQ(Page().Template("<xmp>").Template("<", true).Text(), "<xmp><");
  EXPECT_EQ(Page().Template("<b ").Template("<a>", true).Text(), "<b <a>") << "in a tag all stays";
  EXPECT_EQ(Page().Template("a>&b", true).Text(), "a>&b");
}

TEST(PageWriterTest, TemplatesGoOutAsTheyAreAndAreRead) {
  const std::string page = "a <b c='d&amp;'>&lt;<!-- x --><a href='do'>[Block]</a><style>b{}</style>";
  EXPECT_EQ(Page().Template(page).Text(), page);
  EXPECT_TRUE(Page().Template(page).writer().LinkMayStand());
  EXPECT_FALSE(Page().Template("a &").writer().LinkMayStand());
  EXPECT_FALSE(Page().Template("<b").writer().LinkMayStand());
  EXPECT_EQ(Page().Template("<b").writer().reader().place(), Place::kMarkup);
}

// "do" in a target is the command to block.
TEST(PageWriterTest, TargetThatAnEventWroteIntoEndsInNoCommand) {
  for (const std::string command : {"do", "undo", "Do", "showhide", "x.ShowHide"}) {
    for (const std::string end : {"'", "\"", ">", " ", "\t", "\r", "\n", "\f", "?", "#"}) {
      EXPECT_EQ(Page().Template("<a href=").Event(command).Template(end).Text(),
                "<a href=" + command + "." + end);
      EXPECT_EQ(Page().Template("<a href='").Event(command).Template(end).Text(),
                "<a href='" + command + "." + end);
    }
    EXPECT_EQ(Page().Template("<a href='").Event("x").Template(command + "'").Text(),
              "<a href='x" + command + ".'");
  }
  for (const std::string more : {"x", "/", "&", "=", "."})
    EXPECT_EQ(Page().Template("<a href='").Event("do").Template(more + "'").Text(),
              "<a href='do" + more + "'");
}

TEST(PageWriterTest, CommandsOfATemplateAndWordsOfOtherValuesAreLeftAlone) {
  EXPECT_EQ(Page().Event("x").Template("<a href='do'>").Text(), "x<a href='do'>");
  EXPECT_EQ(Page().Template("<a href='").Event("x").Template("'><a href='do'>").Text(),
            "<a href='x'><a href='do'>");
  EXPECT_EQ(Page().Template("<b title='").Event("do").Template("'>").Text(), "<b title='do'>");
  EXPECT_EQ(Page().Template("<a href='http://x/").Event("do").Template("'>").Text(),
            "<a href='http://x/do'>");
  EXPECT_EQ(Page().Template("<a href='x:").Event("do").Template("'>").Text(), "<a href='x:do'>");
}

// What an event and the template together spell is no scheme and no address.
TEST(PageWriterTest, TargetIsWhatTheTemplateMadeOfItInFrontOfItsFirstEvent) {
  EXPECT_EQ(Page().Template("<a href='").Event("http").Template("://").Event("x/y").Text(),
            "<a href='http://x%2Fy");
  EXPECT_EQ(Page().Template("<a href='http://").Event("x").Template("'><img src='").Event("/").Text(),
            "<a href='http://x'><img src='%2F");
  EXPECT_EQ(Page().Template("<img src='").Event("x").Template("'><a href='http://").Event("y/").Text(),
            "<img src='x'><a href='http://y/");
}

}  // namespace
}  // namespace zendrix::alerts
