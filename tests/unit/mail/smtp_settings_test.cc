#include "mail/smtp_settings.h"

#include "platform/memory/memory_family.h"
#include "platform/memory/memory_files.h"

namespace zendrix::mail {
namespace {

using ::testing::HasSubstr;

const std::string kConsoles = "Send Alerts To=me@example.org;SMTP Server=mail.example.org:";

TEST(ParseMailSettings, WhatTheConsoleWritesIsEnough) {
  const auto read = ParseMailSettings(kConsoles + "2525;");
  ASSERT_TRUE(read.settings);
  EXPECT_EQ(*read.settings, (MailSettings{"me@example.org", "me@example.org", "mail.example.org", 2525,
                                          Security::kWhereOffered, "", ""}));
  EXPECT_EQ(ParseMailSettings(kConsoles + ";").settings->port, 25);
  EXPECT_EQ(ParseMailSettings(kConsoles + "465;").settings->security, Security::kTls);
}

TEST(ParseMailSettings, FieldsBehindTheConsolesSayHow) {
  const auto read = ParseMailSettings(
      kConsoles + "587;security=starttls;USER= me ;Password=a=b c;From=z@example.org;Else=x;");
  ASSERT_TRUE(read.settings);
  EXPECT_EQ(*read.settings, (MailSettings{"me@example.org", "z@example.org", "mail.example.org", 587,
                                          Security::kStartTls, "me", "a=b c"}));
  EXPECT_EQ(ParseMailSettings(kConsoles + "25;Security=TLS").settings->security, Security::kTls);
  EXPECT_EQ(ParseMailSettings(kConsoles + "465;Security=None").settings->security, Security::kNone);
  EXPECT_EQ(ParseMailSettings(kConsoles + "25;Password=\xE9;User=\xE9").settings->password, "\xC3\xA9");
}

TEST(ParseMailSettings, PasswordNeverGoesOutUnencrypted) {
  EXPECT_EQ(ParseMailSettings(kConsoles + "25;User=me;Password=x").settings->security, Security::kStartTls);
  const auto read = ParseMailSettings(kConsoles + "25;User=me;Password=x;Security=None");
  EXPECT_FALSE(read.settings);
  EXPECT_THAT(read.error, HasSubstr("unencrypted"));
}

TEST(ParseMailSettings, NoAddressIsOff) {
  for (const std::string text :
       {"", ";", "Send Alerts To=;SMTP Server=:25;", "Send Alerts To=;SMTP Server=a.b.c:25"}) {
    const auto read = ParseMailSettings(text);
    EXPECT_FALSE(read.settings) << text;
    EXPECT_EQ(read.error, "") << text;
  }
}

// The console takes two addresses with a ";" between them and saves them as they are; the second one then
// stands where the server is read. E-mail was off in silence, and what waited was given up.
TEST(ParseMailSettings, AnAddressWithoutAServerIsAnErrorAndNotOff) {
  for (const std::string text :
       {"Send Alerts To=me@example.org;", "Send Alerts To=me@example.org;SMTP Server=:25",
        "Send Alerts To=a@example.org;b@example.org;SMTP Server=mail.example.org:25;"}) {
    const auto read = ParseMailSettings(text);
    EXPECT_FALSE(read.settings) << text;
    EXPECT_THAT(read.error, HasSubstr("names no mail server")) << text;
  }
}

TEST(ParseMailSettings, WhatTheConsoleTakesAndMailCanReachIsTaken) {
  const auto read = ParseMailSettings("a=o'neil.x_y@example.org;b=mail.ex_ample.org:25;");
  ASSERT_TRUE(read.settings) << read.error;
  EXPECT_EQ(read.settings->to, "o'neil.x_y@example.org");
  EXPECT_EQ(read.settings->server, "mail.ex_ample.org");
}

TEST(ParseMailSettings, WhatMeansSomethingElsewhereIsRefused) {
  for (const std::string text :
       {"a=me;b=mail.example.org:25", "a=me@example.org\x01;b=mail.example.org:25",
        "a=m\xE9@example.org;b=mail.example.org:25", "a=me@example.org>;b=mail.example.org:25",
        "a=a@b.c,d@e.f;b=mail.example.org:25", "a=me@example.org;b=mail/example.org:25",
        "a=me@example.org;b=u@mail.example.org:25", "a=me@example.org;b=-mail.example.org:25",
        "a=me@example.org;b=mail.example.org:0", "a=me@example.org;b=mail.example.org:65536",
        "a=me@example.org;b=mail.example.org:25x", "a=me@example.org;b=mail.example.org:25;From=x y@b.c",
        "a=me@example.org;b=mail.example.org:25;Security=SSL",
        "a=me@example.org;b=mail.example.org:25;User=a\tb"}) {
    const auto read = ParseMailSettings(text);
    EXPECT_FALSE(read.settings) << text;
    EXPECT_NE(read.error, "") << text;
    EXPECT_EQ(read.error.find(','), std::string::npos) << "a line of the log has its own";
    EXPECT_EQ(read.error.find("example"), std::string::npos) << "the file's own text is not repeated";
  }
}

TEST(ParseMailSettings, OnlyTheFirstLineCounts) {
  EXPECT_EQ(ParseMailSettings(kConsoles + "25\r\n;User=me").settings->user, "");
}

class SmtpFile : public testing::Test {
 protected:
  void Save(const std::string& text) {
    files.Put("/f/KorvessaSMTPConfig.kvl", text);
    files.Put("/f/KorvessaSMTPConfig.kvh", family.HashBytes(text) + "\r\n");
  }
  platform::MemoryFiles files;
  platform::MemoryFamily family;
};

TEST_F(SmtpFile, IsTakenWhenItFitsItsSideFile) {
  EXPECT_FALSE(ReadMailSettings(files, family, "/f").settings);
  EXPECT_EQ(ReadMailSettings(files, family, "/f").error, "");
  Save(kConsoles + "25;");
  EXPECT_TRUE(ReadMailSettings(files, family, "/f").settings);
  files.Put("/f/KorvessaSMTPConfig.kvl", kConsoles + "26;");
  EXPECT_FALSE(ReadMailSettings(files, family, "/f").settings);
  EXPECT_THAT(ReadMailSettings(files, family, "/f").error, HasSubstr("side file"));
  files.Vanish("/f/KorvessaSMTPConfig.kvh");
  EXPECT_FALSE(ReadMailSettings(files, family, "/f").settings);
}

TEST_F(SmtpFile, LookingChangesNothing) {
  Save(kConsoles + "25;");
  files.Put("/f/KorvessaSMTPConfig.kvl.pending", "a save that goes on");
  const auto before = files.Paths();
  files.before = [](platform::FileOp op, const std::string& path) {
    EXPECT_TRUE(op == platform::FileOp::kOpen || op == platform::FileOp::kRead ||
                op == platform::FileOp::kSize)
        << path;
  };
  EXPECT_TRUE(ReadMailSettings(files, family, "/f").settings);
  EXPECT_EQ(files.Paths(), before);
}

TEST_F(SmtpFile, HugeOneIsNotRead) {
  Save(kConsoles + "25;" + std::string(70000, 'x'));
  EXPECT_THAT(ReadMailSettings(files, family, "/f").error, HasSubstr("cannot be read"));
}

}  // namespace
}  // namespace zendrix::mail
