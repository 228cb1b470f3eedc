#include "platform/linux/windows_1252.h"

#include <gtest/gtest.h>

namespace zendrix::platform {
namespace {

TEST(Windows1252Test, EveryByteSurvivesTheRoundTrip) {
  for (int byte = 0; byte < 256; ++byte) {
    const std::string text(1, static_cast<char>(byte));
    EXPECT_EQ(Windows1252FromUtf8(Utf8FromWindows1252(text)), text) << byte;
  }
}

TEST(Windows1252Test, KnownCharacters) {
  EXPECT_EQ(Windows1252FromUtf8("M\u00E4rz"), "M\xE4rz");
  EXPECT_EQ(Windows1252FromUtf8("\u20AC\u2019"), "\x80\x92");
  EXPECT_EQ(Utf8FromWindows1252("\x80 \xFF"), "\u20AC \u00FF");
}

TEST(Windows1252Test, CharacterThatTheCodePageLacksIsRefused) {
  EXPECT_FALSE(Windows1252FromUtf8("\u65E5\u672C"));
  EXPECT_FALSE(Windows1252FromUtf8("\U0001F600"));
}

TEST(Windows1252Test, DamagedUtf8IsRefused) {
  for (const char* damaged :
       {"\xC3", "\xC3(", "\x80", "\xC0\x80", "\xE0\x80\x80", "\xFF", "\xE2\x82", "\xF8\x88\x80\x80"}) {
    EXPECT_FALSE(Windows1252FromUtf8(damaged));
  }
}

}  // namespace
}  // namespace zendrix::platform
