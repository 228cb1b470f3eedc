#include "core/path_text.h"

namespace zendrix::core {
namespace {

TEST(PathText, LettersBeyondAsciiComeInTheCodePage) {
  EXPECT_EQ(PathText("/home/Gr\xC3\xBC\xC3\x9F"
                     "e/\xE2\x82\xAC.kvl"),
            "/home/Gr\xFC\xDF"
            "e/\x80.kvl");
}

TEST(PathText, WhatTheCodePageLacksAndWhatIsNoTextBecomeQuestionMarks) {
  EXPECT_EQ(PathText("/\xE6\x97\xA5/\xFF"), "/?/?");
}

}  // namespace
}  // namespace zendrix::core
