#include "mail/message.h"

#include <algorithm>

#include "alert_text.h"
#include "platform/memory/memory_family.h"

namespace zendrix::mail {
namespace {

using test::AlertText;
using test::TakeApart;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;

const std::string kHeaders =
    "From To Subject Date Message-ID Auto-Submitted MIME-Version Content-Type Content-Transfer-Encoding ";

class Composed : public testing::Test {
 protected:
  test::TakenApart Compose(const std::vector<std::string>& lines, std::uint64_t unlisted = 0,
                           std::int64_t now = 1795225510) {
    Contents contents;
    for (const std::string& line : lines) contents.alerts.push_back(*ParseAlert(line));
    contents.unlisted = unlisted;
    const auto parts = TakeApart(ComposeMail(settings, contents, now, family));
    EXPECT_EQ(parts.order, kHeaders);
    EXPECT_TRUE(parts.all_ascii);
    EXPECT_LE(parts.longest_line, 78U);
    return parts;
  }

  MailSettings settings = {
      "me@example.org", "zendrix@example.net", "mail.example.org", 25, Security::kTls, "u", "secret"};
  platform::MemoryFamily family;
};

TEST_F(Composed, OneAlertIsToldWhole) {
  const auto mail = Compose({AlertText(1795225505)});
  EXPECT_EQ(mail.headers.at("From"), "Zendrix <zendrix@example.net>");
  EXPECT_EQ(mail.headers.at("To"), "<me@example.org>");
  EXPECT_EQ(mail.headers.at("Subject"), "Zendrix: alert on desk (risk 99 %): /tmp/x:17");
  EXPECT_EQ(mail.headers.at("Date"), "Sat, 21 Nov 2026 01:45:10 +0000");
  EXPECT_EQ(mail.headers.at("Auto-Submitted"), "auto-generated");
  EXPECT_EQ(mail.headers.at("Content-Type"), "text/plain; charset=utf-8");
  EXPECT_EQ(mail.headers.at("Content-Transfer-Encoding"), "quoted-printable");
  EXPECT_EQ(mail.body,
            "Zendrix raised an alert on desk.\r\n\r\n"
            "Time: Sat, 21 Nov 2026 01:45:05 +0000\r\nRisk: 99 %\r\n"
            "Why:  runs from /tmp; first seen in 41 days\r\nSeen:\r\n  Running Processes: /tmp/x:17\r\n\r\n"
            "The console on that computer explains it, and lets you block or allow it.\r\n");
}

TEST_F(Composed, SameAlertsHaveTheSameIdAndOthersAnother) {
  const auto id = [&](const std::vector<std::string>& lines, std::uint64_t unlisted = 0,
                      std::int64_t now = 5) {
    return Compose(lines, unlisted, now).headers.at("Message-ID");
  };
  const std::string one = id({AlertText(7)});
  EXPECT_THAT(one, EndsWith("@example.net>"));
  EXPECT_EQ(one, id({AlertText(7)}, 0, 99));
  EXPECT_NE(one, id({AlertText(8)}));
  EXPECT_NE(one, id({AlertText(7), AlertText(8)}));
  EXPECT_NE(one, id({AlertText(7)}, 1));
  EXPECT_NE(one, id({AlertText(7, "AG,2,1")}));
}

TEST_F(Composed, SeveralAlertsAreOneMail) {
  const auto mail = Compose({AlertText(7), AlertText(8, "AG,2,1", "Listening Ports=4444:/tmp/y;")});
  EXPECT_EQ(mail.headers.at("Subject"), "Zendrix: 2 alerts on desk");
  EXPECT_THAT(mail.body, HasSubstr("raised 2 alerts on desk"));
  EXPECT_THAT(mail.body, HasSubstr("/tmp/x:17"));
  EXPECT_THAT(mail.body, HasSubstr("4444:/tmp/y"));
  EXPECT_THAT(mail.body, Not(HasSubstr("more")));
}

TEST_F(Composed, OfAFloodTheGravestAreListedAndTheRestCounted) {
  std::vector<std::string> lines;
  for (int i = 0; i < 30; ++i) {
    const bool grave = i % 3 != 0;  // 20 of them
    lines.push_back(AlertText(100 + i, "AG,1,1", "Running Processes=/tmp/p" + std::to_string(i) + ":1;",
                              grave ? "0.97" : "0.91"));
  }
  const auto mail = Compose(lines, 5);
  EXPECT_EQ(mail.headers.at("Subject"), "Zendrix: 35 alerts on desk");
  EXPECT_THAT(mail.body, HasSubstr("And 15 alerts more"));
  EXPECT_THAT(mail.body, HasSubstr("/tmp/p29:1"));
  EXPECT_THAT(mail.body, Not(HasSubstr("/tmp/p27:1")));
  EXPECT_LT(mail.body.find("/tmp/p1:1"), mail.body.find("/tmp/p2:1"));
}

TEST_F(Composed, ManyThingsOfOneAlertAreCounted) {
  std::string description = "Running Processes=";
  for (int i = 0; i < 20; ++i) description += (i ? " * /tmp/p" : "/tmp/p") + std::to_string(i) + ":1";
  EXPECT_THAT(Compose({AlertText(7, "AG,1,20", description + ";")}).body, HasSubstr("  and 8 more\r\n"));
}

TEST_F(Composed, TextIsUtf8) {
  const auto mail = Compose({AlertText(7, "AG,1,1", "Running Processes=/tmp/caf\xE9\x80:1;")});
  EXPECT_THAT(mail.body, HasSubstr("/tmp/caf\xC3\xA9\xE2\x82\xAC:1"));
  EXPECT_THAT(mail.headers.at("Subject"), HasSubstr("=?UTF-8?B?"));
}

// Whatever a program calls itself, the mail has its nine headers and goes to its one address.
TEST_F(Composed, EventTextCannotForgeAHeader) {
  const std::string evil = "x\r\nBcc: all@example.org\r\n\r\n.\r\nMAIL FROM:<a@b.c>\x1b[2J\x7f\x81";
  const auto mail =
      Compose({"7,de\nsk\rX,1,Aggregation|0|0.98|" + evil + "=" + evil + ";|" + evil + "|" + evil + "|0"});
  EXPECT_EQ(mail.headers.at("To"), "<me@example.org>");
  EXPECT_EQ(mail.body.find('\x1b'), std::string::npos);
  EXPECT_EQ(mail.body.find('\x7f'), std::string::npos);
  EXPECT_EQ(mail.body.find("\n."), std::string::npos);
  EXPECT_EQ(mail.body.find("\nBcc"), std::string::npos);
}

TEST_F(Composed, LongNamesStayWithinALine) {
  Compose({AlertText(7, "AG,1,1", "Running Processes=" + std::string(1500, 'y') + ";")});
  Compose({AlertText(7, "AG,1,1", "Running Processes=" + std::string(1500, '\xE9') + ";")});
}

TEST_F(Composed, NothingOfTheLoginIsInIt) {
  Contents contents{{*ParseAlert(AlertText(7))}, 0};
  EXPECT_EQ(ComposeMail(settings, contents, 5, family).find("secret"), std::string::npos);
}

TEST_F(Composed, TrialSaysWhatItIsFor) {
  const auto mail = TakeApart(ComposeTrial(settings, "desk", 5, family));
  EXPECT_EQ(mail.order, kHeaders);
  EXPECT_EQ(mail.headers.at("Subject"), "Zendrix: mail from desk");
  EXPECT_THAT(mail.body, HasSubstr("alerts of desk arrive"));
}

}  // namespace
}  // namespace zendrix::mail
