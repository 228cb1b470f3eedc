#include "settings/smtp.h"

#include "settings_fixture.h"

namespace zendrix::settings {
namespace {

constexpr char kSmtp[] = "/program/KorvessaSMTPConfig.kvl";
constexpr char kSmtpSide[] = "/program/KorvessaSMTPConfig.kvh";

class SmtpTest : public SettingsTest {
 protected:
  void PutSmtp(const std::string& text) {
    platform_.files.Put(kSmtp, text);
    platform_.files.Put(kSmtpSide, platform_.family.HashBytes(text) + "\r\n");
  }
  SmtpData Load() { return LoadSMTPData(state_, log_); }
  SmtpData LoadOf(const std::string& text) {
    PutSmtp(text);
    return Load();
  }
  void Save(const SmtpData& data) { SaveSMTPData(state_, log_, data); }
  std::string Text() const { return platform_.files.Get(kSmtp); }

  const SmtpData data_{"me@b.c", "mail.b.c", "587"};
};

TEST_F(SmtpTest, AMissingFileReadsAsEmptyWithoutAMessage) {
  EXPECT_EQ(Load(), SmtpData());
  EXPECT_TRUE(Boxes().empty());
}

TEST_F(SmtpTest, AddressServerAndPortAreRead) {
  EXPECT_EQ(LoadOf("Send Alerts To=a@b.c;SMTP Server=mail.b.c:25;"), (SmtpData{"a@b.c", "mail.b.c", "25"}));
}

TEST_F(SmtpTest, FieldsAreReadByPositionWhateverTheirKeys) {
  EXPECT_EQ(LoadOf("SMTP Server=x;y=z:1"), (SmtpData{"x", "z", "1"}));
}

TEST_F(SmtpTest, AValueIsWhatStandsBehindTheFirstEquals) {
  EXPECT_EQ(LoadOf("a=b=c;d=e=f:g=h"), (SmtpData{"b=c", "e=f", "g=h"}));
}

TEST_F(SmtpTest, OneFieldAndAClosingSemicolonSetTheAddressAndLeaveTheServerEmpty) {
  EXPECT_EQ(LoadOf("Send Alerts To=a@b.c;"), (SmtpData{"a@b.c", "", ""}));
}

TEST_F(SmtpTest, FewerThanTwoFieldsReadAsEmpty) {
  EXPECT_EQ(LoadOf("Send Alerts To=a@b.c"), SmtpData());
}

TEST_F(SmtpTest, AFieldWithoutEqualsHasNoValue) {
  EXPECT_EQ(LoadOf("a@b.c;SMTP Server=s:1"), (SmtpData{"", "s", "1"}));
  EXPECT_EQ(LoadOf("Send Alerts To=a@b.c;s:1"), (SmtpData{"a@b.c", "", ""}));
}

TEST_F(SmtpTest, AServerWithoutColonLeavesThePortEmpty) {
  EXPECT_EQ(LoadOf("Send Alerts To=a@b.c;SMTP Server=mail.b.c;"), (SmtpData{"a@b.c", "mail.b.c", ""}));
}

TEST_F(SmtpTest, AHostNameThatContainsAColonIsCutAtTheFirstOne) {
  EXPECT_EQ(LoadOf("Send Alerts To=a@b.c;SMTP Server=fe80::1:25;"), (SmtpData{"a@b.c", "fe80", ":1:25"}));
}

TEST_F(SmtpTest, OnlyTheFirstLineIsRead) {
  EXPECT_EQ(LoadOf("Send Alerts To=a@b.c\r\n;SMTP Server=s:1"), SmtpData());
  EXPECT_EQ(LoadOf("a=b;c=d:e\r\nf;g"), (SmtpData{"b", "d", "e"}));
}

TEST_F(SmtpTest, AnEmptyFileReadsAsEmptyAndNothingIsLogged) {
  EXPECT_EQ(LoadOf(""), SmtpData());
  EXPECT_TRUE(Boxes().empty());
  EXPECT_TRUE(platform_.files.Has(kSmtp));
}

TEST_F(SmtpTest, ATamperedFileIsDeletedAtTheFirstReadAfterAMessage) {
  PutSmtp("Send Alerts To=a@b.c;SMTP Server=s.b.c:25;");
  platform_.files.Put(kSmtp, "Send Alerts To=evil@b.c;SMTP Server=s.b.c:25;");
  EXPECT_EQ(Load(), SmtpData());
  ASSERT_EQ(platform_.message_boxes.shown.size(), 1U);
  const auto& box = platform_.message_boxes.shown.front();
  EXPECT_EQ(box.text, "Invalid SMTP configuration file. Loading default values");
  EXPECT_EQ(box.title, "Korvessa Zendrix Home Edition");
  EXPECT_EQ(box.icon, platform::BoxIcon::kInformation);
  EXPECT_FALSE(platform_.files.Has(kSmtp));
}

TEST_F(SmtpTest, TheSaveAfterATamperedReadLosesTheFieldsBehindTheSecond) {
  PutSmtp("a=1;b=2:3;Extra=kept");
  platform_.files.Put(kSmtp, "a=9;b=2:3;Extra=kept");
  Load();
  Save(data_);
  EXPECT_EQ(Text(), "Send Alerts To=me@b.c;SMTP Server=mail.b.c:587;");
}

TEST_F(SmtpTest, AFileWithoutASideFileIsDeleted) {
  platform_.files.Put(kSmtp, "a=1;b=2:3;");
  EXPECT_EQ(Load(), SmtpData());
  EXPECT_FALSE(platform_.files.Has(kSmtp));
  EXPECT_EQ(Boxes().size(), 1U);
}

TEST_F(SmtpTest, AFileWrittenFromNothingEndsWithASemicolonAndHasNoLineEnd) {
  Save(data_);
  EXPECT_EQ(Text(), "Send Alerts To=me@b.c;SMTP Server=mail.b.c:587;");
  EXPECT_TRUE(Verifies(kSmtp));
  EXPECT_EQ(Load(), data_);
}

TEST_F(SmtpTest, ValuesAreTrimmedBeforeTheyAreWritten) {
  Save({"  me@b.c ", " mail.b.c", "587  "});
  EXPECT_EQ(Text(), "Send Alerts To=me@b.c;SMTP Server=mail.b.c:587;");
}

TEST_F(SmtpTest, EmptyValuesAreWrittenAsEmptyFields) {
  Save({});
  EXPECT_EQ(Text(), "Send Alerts To=;SMTP Server=:;");
}

TEST_F(SmtpTest, AFileWithAThirdFieldKeepsItExactlyThroughASave) {
  PutSmtp("a=1;b=2:3; Extra = k\xE9pt ;;x\r\nsecond line;");
  Save(data_);
  EXPECT_EQ(Text(), "Send Alerts To=me@b.c;SMTP Server=mail.b.c:587; Extra = k\xE9pt ;;x\r\nsecond line;");
  EXPECT_TRUE(Verifies(kSmtp));
}

TEST_F(SmtpTest, AFileOfExactlyTwoFieldsGetsAClosingSemicolon) {
  PutSmtp("a=1;b=2:3");
  Save(data_);
  EXPECT_EQ(Text(), "Send Alerts To=me@b.c;SMTP Server=mail.b.c:587;");
}

TEST_F(SmtpTest, AFileOfFewerThanTwoFieldsBecomesTheRemainder) {
  PutSmtp("something else");
  Save(data_);
  EXPECT_EQ(Text(), "Send Alerts To=me@b.c;SMTP Server=mail.b.c:587;something else");
}

TEST_F(SmtpTest, AnEmptyFileIsWrittenAsOneFromNothing) {
  PutSmtp("");
  Save(data_);
  EXPECT_EQ(Text(), "Send Alerts To=me@b.c;SMTP Server=mail.b.c:587;");
}

TEST_F(SmtpTest, TheSaveDoesNotCheckAndBlessesAChangeMadeByHand) {
  PutSmtp("a=1;b=2:3;Extra=1");
  platform_.files.Put(kSmtp, "a=1;b=2:3;Extra=2");
  Save(data_);
  EXPECT_TRUE(Boxes().empty());
  EXPECT_EQ(Load(), data_);
  EXPECT_EQ(Text(), "Send Alerts To=me@b.c;SMTP Server=mail.b.c:587;Extra=2");
}

TEST_F(SmtpTest, AFailureToSaveIsLoggedAndLeavesTheOldPair) {
  PutSmtp("a=1;b=2:3;");
  platform_.files.FailNext(platform::FileOp::kWriteAll, kSmtp, platform::ErrorKind::kPermissionDenied);
  Save(data_);
  EXPECT_EQ(TakeLog(), std::vector<std::string>{"'Utils : SaveSMTPData': 70: Permission denied"});
  EXPECT_EQ(Text(), "a=1;b=2:3;");
  EXPECT_TRUE(Verifies(kSmtp));
}

TEST_F(SmtpTest, AFileThatCannotBeReadFailsItsHash) {
  PutSmtp("a=1;b=2:3;");
  platform_.files.FailNext(platform::FileOp::kOpen, kSmtp, platform::ErrorKind::kPermissionDenied);
  EXPECT_EQ(Load(), SmtpData());
  EXPECT_EQ(Boxes().size(), 1U);
  EXPECT_FALSE(platform_.files.Has(kSmtp));
}

// The file was read once for its hash and once more for its fields: whoever exchanged it in between had his
// own mail server taken.
TEST_F(SmtpTest, AFileThatChangesBehindItsVerificationIsUsedAsItWasVerified) {
  PutSmtp("a=1;b=2:3;");
  int opened = 0;
  platform_.files.before = [&](platform::FileOp op, const std::string& path) {
    if (op == platform::FileOp::kOpen && path == kSmtp && ++opened > 1)
      platform_.files.Put(kSmtp, "a=9;b=evil:3;");
  };
  EXPECT_EQ(Load(), (SmtpData{"1", "2", "3"}));
  EXPECT_EQ(opened, 1);
}

// A caller that looks every few seconds opened a box each time.
TEST_F(SmtpTest, ATamperedFileThatCannotBeDeletedIsToldOfOnceUntilAGoodOneWasThere) {
  bool told = false;
  const auto damage = [&] {
    platform_.files.Put(kSmtp, "a=1;b=2:3;");
    platform_.files.Put(kSmtpSide, "stale\r\n");
  };
  damage();
  platform_.files.FailNext(platform::FileOp::kRemove, kSmtp, platform::ErrorKind::kPermissionDenied,
                           platform::MemoryFiles::kAlways);
  LoadSMTPData(state_, log_, &told);
  EXPECT_TRUE(told);
  EXPECT_EQ(LoadSMTPData(state_, log_, &told), SmtpData());
  EXPECT_EQ(Boxes().size(), 1U);
  EXPECT_EQ(TakeLog().size(), 1U);
  PutSmtp("a=1;b=2:3;");
  EXPECT_EQ(LoadSMTPData(state_, log_, &told), (SmtpData{"1", "2", "3"}));
  EXPECT_FALSE(told);
  damage();
  LoadSMTPData(state_, log_, &told);
  EXPECT_EQ(Boxes().size(), 2U);
  EXPECT_EQ(TakeLog().size(), 1U);
}

TEST_F(SmtpTest, ATamperedFileThatCannotBeDeletedIsLogged) {
  platform_.files.Put(kSmtp, "a=1;b=2:3;");
  platform_.files.FailNext(platform::FileOp::kRemove, kSmtp, platform::ErrorKind::kPermissionDenied);
  EXPECT_EQ(Load(), SmtpData());
  EXPECT_EQ(TakeLog(), std::vector<std::string>{"'Utils : LoadSMTPData': 70: Permission denied"});
}

}  // namespace
}  // namespace zendrix::settings
