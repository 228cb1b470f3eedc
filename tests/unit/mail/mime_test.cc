#include "mail/mime.h"

#include "alert_text.h"

namespace zendrix::mail {
namespace {

TEST(HeaderText, PlainTextStandsAsItIs) {
  EXPECT_EQ(HeaderText("Zendrix: alert on desk"), "Zendrix: alert on desk");
  EXPECT_EQ(HeaderText(""), "");
  EXPECT_EQ(HeaderText(std::string(66, 'a')), std::string(66, 'a'));
  EXPECT_EQ(HeaderText(std::string(67, 'a')).substr(0, 10), "=?UTF-8?B?");
}

TEST(HeaderText, OtherTextIsEncodedInWordsThatFit) {
  EXPECT_EQ(HeaderText("caf\xC3\xA9"), "=?UTF-8?B?Y2Fmw6k=?=");
  EXPECT_EQ(HeaderText(" a"), "=?UTF-8?B?IGE=?=");
  EXPECT_EQ(HeaderText("=?x"), "=?UTF-8?B?PT94?=");
  std::string text;
  for (int i = 0; i < 100; ++i) text += "\xE2\x82\xAC";  // euro signs, three bytes each
  const std::string header = HeaderText(text);
  for (std::size_t at = 0; at != std::string::npos;) {
    const std::size_t end = header.find("\r\n ", at);
    const std::string word = header.substr(at, end == std::string::npos ? end : end - at);
    EXPECT_LE(word.size(), 75U);
    EXPECT_EQ(word.substr(0, 10), "=?UTF-8?B?");
    // A character of three bytes is four digits: none is cut in two.
    EXPECT_EQ((word.size() - 12) % 4, 0U);
    EXPECT_EQ(word.find('=', 10), word.size() - 1) << "no filling, so whole characters";
    at = end == std::string::npos ? end : end + 3;
  }
}

TEST(HeaderText, LineEndsCannotBeginAHeader) {
  EXPECT_EQ(HeaderText("a\r\nBcc: b"), "a  Bcc: b");
  EXPECT_EQ(HeaderText("a\nb").find('\n'), std::string::npos);
}

TEST(QuotedPrintable, LinesStayNarrowAndPrintable) {
  EXPECT_EQ(QuotedPrintable("a=b\n"), "a=3Db\r\n");
  EXPECT_EQ(QuotedPrintable("a"), "a\r\n");
  EXPECT_EQ(QuotedPrintable("caf\xC3\xA9\r\n"), "caf=C3=A9=0D\r\n");
  EXPECT_EQ(QuotedPrintable("a \n\t\n"), "a=20\r\n=09\r\n");
  const std::string wide = QuotedPrintable(std::string(200, 'x'));
  EXPECT_EQ(wide,
            std::string(75, 'x') + "=\r\n" + std::string(75, 'x') + "=\r\n" + std::string(50, 'x') + "\r\n");
  EXPECT_EQ(QuotedPrintable(std::string(74, 'x') + "=y"), std::string(74, 'x') + "=\r\n=3Dy\r\n");
}

// A line of a single "." would end the mail.
TEST(QuotedPrintable, NoLineBeginsWithADot) {
  EXPECT_EQ(QuotedPrintable(".\n..\n"), "=2E\r\n=2E.\r\n");
  EXPECT_EQ(QuotedPrintable(std::string(75, 'x') + ".y"), std::string(75, 'x') + "=\r\n=2Ey\r\n");
}

TEST(QuotedPrintable, EveryByteComesBack) {
  std::string all;
  for (int i = 0; i < 256; ++i) {
    if (i != '\n') all += static_cast<char>(i);
  }
  EXPECT_EQ(test::Unquoted(QuotedPrintable(all)), all + "\r\n");
}

TEST(HeaderDate, IsTheStandards) {
  EXPECT_EQ(HeaderDate(0), "Thu, 01 Jan 1970 00:00:00 +0000");
  EXPECT_EQ(HeaderDate(1795225505), "Sat, 21 Nov 2026 01:45:05 +0000");
  EXPECT_EQ(HeaderDate(2147483647), "Tue, 19 Jan 2038 03:14:07 +0000");
}

}  // namespace
}  // namespace zendrix::mail
