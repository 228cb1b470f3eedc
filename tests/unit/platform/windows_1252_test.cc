#include "platform/windows_1252.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/all_bytes.h"
#include "support/golden_table.h"

namespace zendrix::platform {
namespace {

using test::AllBytes;
using test::ByteText;
using test::GoldenReport;
using test::GoldenRow;
using test::LoadGolden;

std::string Utf8Of(unsigned character) {
  std::string utf8;
  if (character < 0x80) {
    utf8 += static_cast<char>(character);
  } else if (character < 0x800) {
    utf8 += static_cast<char>(0xC0 | character >> 6);
    utf8 += static_cast<char>(0x80 | (character & 0x3F));
  } else {
    utf8 += static_cast<char>(0xE0 | character >> 12);
    utf8 += static_cast<char>(0x80 | (character >> 6 & 0x3F));
    utf8 += static_cast<char>(0x80 | (character & 0x3F));
  }
  return utf8;
}

TEST(Windows1252Test, EveryByteSurvivesTheRoundTrip) {
  for (int byte = 0; byte < 256; ++byte) {
    const std::string text(1, static_cast<char>(byte));
    EXPECT_EQ(BytesFromUtf8Exactly(Utf8FromBytes(text)), text) << byte;
  }
}

TEST(Windows1252Test, KnownCharacters) {
  EXPECT_EQ(BytesFromUtf8Exactly("M\u00E4rz"), "M\xE4rz");
  EXPECT_EQ(BytesFromUtf8Exactly("\u20AC\u2019"), "\x80\x92");
  EXPECT_EQ(Utf8FromBytes("\x80 \xFF"), "\u20AC \u00FF");
}

TEST(Windows1252Test, CharacterThatTheCodePageLacksIsRefused) {
  EXPECT_FALSE(BytesFromUtf8Exactly("\u65E5\u672C"));
  EXPECT_FALSE(BytesFromUtf8Exactly("\U0001F600"));
}

TEST(Windows1252Test, DamagedUtf8IsRefused) {
  for (const char* damaged :
       {"\xC3", "\xC3(", "\x80", "\xC0\x80", "\xE0\x80\x80", "\xFF", "\xE2\x82", "\xF8\x88\x80\x80"}) {
    EXPECT_FALSE(BytesFromUtf8Exactly(damaged));
  }
}

TEST(CodePageGolden, DecodesEveryByte) {
  GoldenReport report;
  for (const GoldenRow& row : LoadGolden(ZENDRIX_TEST_DATA, "misc_mb2wc.tsv")) {
    const std::string byte = ByteText(row.Hex("byte"));
    report.Compare(row, byte, Utf8Of(row.Hex("codepoint")), Utf8FromBytes(byte));
  }
}

// Held to the columns without best fit: a look-alike must not turn into a real quote, slash or separator.
TEST(CodePageGolden, EncodesCharactersWithoutBestFit) {
  GoldenReport report;
  for (const GoldenRow& row : LoadGolden(ZENDRIX_TEST_DATA, "misc_wc2mb.tsv")) {
    const std::string utf8 = Utf8Of(row.Hex("codepoint"));
    report.Compare(row, utf8, ByteText(row.Hex("byte_no_best_fit")), BytesFromUtf8(utf8));
  }
}

TEST(CodePage, EveryByteSurvivesTheWayOutAndBack) {
  EXPECT_EQ(BytesFromUtf8(Utf8FromBytes(AllBytes())), AllBytes());
}

TEST(CodePage, CharacterWithoutAByteGivesOneQuestionMarkHoweverManyBytesItHas) {
  EXPECT_EQ(BytesFromUtf8("a\u0101z"), "a?z");
  EXPECT_EQ(BytesFromUtf8("a\u65E5z"), "a?z");
  EXPECT_EQ(BytesFromUtf8("a\U0001F600z"), "a?z");
  EXPECT_EQ(BytesFromUtf8("\u65E5\u672C"), "??");
}

TEST(CodePage, ReplacesBrokenUtf8ByteByByte) {
  EXPECT_EQ(BytesFromUtf8("a\xFFz"), "a?z");
  EXPECT_EQ(BytesFromUtf8("\xC3"), "?");
  EXPECT_EQ(BytesFromUtf8("\xC0\xAF"), "??");
  EXPECT_EQ(BytesFromUtf8("\xE2\x82"), "??");
  EXPECT_EQ(BytesFromUtf8("\xF0\x9F\x98\x80"), "?");
  EXPECT_EQ(BytesFromUtf8("\xE0\x80\xAF"), "???");
}

}  // namespace
}  // namespace zendrix::platform
