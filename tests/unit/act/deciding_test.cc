// Decisions and mail settings on their way to the services, and how much anybody may ask.
#include "act/decision_record.h"

#include "act/allowance.h"
#include "family/intermediate/sha256.h"
#include "unit/act/acting_fixture.h"

namespace zendrix::act {
namespace {

class DecidingTest : public ActingTest {
 protected:
  Answer Decide(bool block, const Caller& caller) { return Decide(block, caller, alert_); }
  Answer Decide(bool block, const Caller& caller, const ShownAlert& alert) {
    last_ = {false, "no reply"};
    acting_.Decide(caller, alert, block, [this](const Answer& said) { last_ = said; });
    return last_;
  }
  Answer SetMail(const std::string& settings) {
    last_ = {false, "no reply"};
    acting_.SetMail(user_, settings, [this](const Answer& said) { last_ = said; });
    return last_;
  }
  void ExpectNothingFiled(const Answer& answer, const std::string& why) {
    EXPECT_FALSE(answer.done);
    EXPECT_NE(answer.sentence.find(why), std::string::npos) << answer.sentence;
    EXPECT_FALSE(files_.Has(kDecisionsPath));
    EXPECT_FALSE(files_.Has(kMailPath));
  }
};

TEST_F(DecidingTest, ABlockIsFiledForTheAgentWithTheUsersOwnConsent) {
  EXPECT_TRUE(Decide(true, user_).done) << last_.sentence;
  EXPECT_EQ(files_.Get(kDecisionsPath), "AG,0123456789ABCDEF01234567,1\r\n");
  ASSERT_EQ(authority_.questions.size(), 1U);
  EXPECT_EQ(authority_.questions[0].action, "com.korvessa.zendrix.decide-block");
  EXPECT_NE(authority_.questions[0].about.path.find("/tmp/dropper"), std::string::npos);
}

TEST_F(DecidingTest, AnAllowTakesAnAdministratorAndReplacesTheBlock) {
  ASSERT_TRUE(Decide(true, user_).done);
  EXPECT_TRUE(Decide(false, user_).done);
  EXPECT_EQ(authority_.questions.at(1).action, "com.korvessa.zendrix.decide-allow");
  EXPECT_EQ(files_.Get(kDecisionsPath), "AG,0123456789ABCDEF01234567,0\r\n");
}

TEST_F(DecidingTest, WithoutConsentNothingIsFiled) {
  authority_.at_once = Verdict::kNo;
  ExpectNothingFiled(Decide(false, user_), "no permission");
  authority_.at_once = Verdict::kDismissed;
  ExpectNothingFiled(Decide(true, user_), "was closed");
}

TEST_F(DecidingTest, WhatTheAgentNeverToldIsNotDecidedAndNobodyIsAsked) {
  ExpectNothingFiled(Decide(true, user_, {alert_.second + 1, alert_.code}), "has not told of this alert");
  ExpectNothingFiled(Decide(true, user_, {alert_.second, "AG,0123456789ABCDEF01234568"}), "has not told");
  ExpectNothingFiled(Decide(true, user_, {alert_.second, "AG,x"}), "no alert of the Agent");
  agent_.readable = false;
  ExpectNothingFiled(Decide(true, user_), "cannot be read");
  EXPECT_TRUE(authority_.questions.empty());
}

// The click in an alert's page blocks its files and then files the decision: one question for one click.
TEST_F(DecidingTest, WhoeverHasJustBlockedAFileOfTheAlertIsNotAskedAgain) {
  store_.files[kPath].others = true;
  ASSERT_TRUE(Block().done);
  EXPECT_TRUE(Decide(true, user_).done);
  EXPECT_EQ(authority_.questions.size(), 1U);
  ASSERT_TRUE(Allow(store_.entries.at(0).name).done);
  EXPECT_TRUE(Decide(false, user_).done);
  EXPECT_EQ(authority_.questions.size(), 2U);
}

TEST_F(DecidingTest, AConsentCoversNobodyElseNoOtherAlertAndNotTheOpposite) {
  ASSERT_TRUE(Block().done);
  authority_.at_once = Verdict::kNo;
  EXPECT_FALSE(Decide(false, user_).done);
  EXPECT_FALSE(Decide(true, {":1.7", 1001, true}).done);
  const ShownAlert other{alert_.second + 1, alert_.code};
  agent_.told_alerts.push_back(other);
  EXPECT_FALSE(Decide(true, user_, other).done);
  EXPECT_TRUE(Decide(true, {":1.8", 1000, true}).done) << "another connection of the same user";
  EXPECT_FALSE(Decide(true, user_).done) << "it covers one decision";
}

// Two alerts of one batch have one second: whoever allowed the one would have allowed the other.
TEST_F(DecidingTest, AConsentCoversNoOtherAlertOfTheSameSecond) {
  ASSERT_TRUE(Block().done);
  authority_.at_once = Verdict::kNo;
  const ShownAlert other{alert_.second, "AG,FFFF456789ABCDEF01234567"};
  agent_.told_alerts = {other};
  agent_.alert_description = "Running Processes=/tmp/dropper2:4711 * /opt/x:9;Listening Ports=1:/tmp/other;";
  EXPECT_FALSE(Decide(true, user_, other).done);
  agent_.alert_description = "Running Processes=/opt/x:9 * /tmp/dropper:4711;";
  EXPECT_TRUE(Decide(true, user_, other).done);
}

TEST_F(DecidingTest, ABlockThatFailedBehindTheAnswerIsNoConsent) {
  store_.refuse_take = "The disk did not take the change.";
  EXPECT_FALSE(Block().done);
  authority_.at_once = Verdict::kNo;
  EXPECT_FALSE(Decide(true, user_).done);
}

TEST_F(DecidingTest, AConsentEndsAfterAWhile) {
  ASSERT_TRUE(Block().done);
  authority_.at_once = Verdict::kNo;
  clock_.Sleep(Acting::kConsentMs + 1);
  EXPECT_FALSE(Decide(true, user_).done);
}

TEST_F(DecidingTest, AConsentLastsAWhile) {
  ASSERT_TRUE(Block().done);
  authority_.at_once = Verdict::kNo;
  clock_.Sleep(Acting::kConsentMs);
  EXPECT_TRUE(Decide(true, user_).done);
}

TEST_F(DecidingTest, ABlockThatWasRefusedIsNoConsent) {
  authority_.at_once = Verdict::kNo;
  Block();
  EXPECT_FALSE(Decide(true, user_).done);
}

TEST_F(DecidingTest, ADecisionThatCannotBeWrittenSaysSo) {
  files_.FailNext(platform::FileOp::kWriteAll, kDecisionsPath, platform::ErrorKind::kNoSpace);
  ExpectNothingFiled(Decide(true, user_), "could not be noted for the Agent");
}

TEST_F(DecidingTest, MailSettingsAreLaidDownAsTheyAreWithAnAdministratorsConsent) {
  EXPECT_TRUE(SetMail("Address=a@b;Server=mx;").done) << last_.sentence;
  EXPECT_EQ(files_.Get(kMailPath), "Address=a@b;Server=mx;");
  EXPECT_EQ(files_.Get(kMailSidePath), family::Sha256Of("Address=a@b;Server=mx;") + "\r\n");
  EXPECT_EQ(authority_.questions.at(0).action, "com.korvessa.zendrix.mail");
}

// A file that was taken away could come back, as far as the mailer knows, and what waited was mailed to
// whoever came next.
TEST_F(DecidingTest, NoMailSettingsAreSettingsThatNameNobody) {
  ASSERT_TRUE(SetMail("Send Alerts To=a@b.c;SMTP Server=mx:25;").done);
  EXPECT_TRUE(SetMail("").done);
  EXPECT_EQ(authority_.questions.back().about.path, "nowhere");
  EXPECT_EQ(files_.Get(kMailPath), "Send Alerts To=;SMTP Server=:25;");
  EXPECT_EQ(files_.Get(kMailSidePath), family::Sha256Of(files_.Get(kMailPath)) + "\r\n");
}

// Whoever asks first could have his own address laid down by an administrator who thinks of another one.
TEST_F(DecidingTest, TheQuestionOfMailNamesAddressAndServer) {
  ASSERT_TRUE(SetMail("Send Alerts To=a@b.c;SMTP Server=mx.b.c:25;Password=secret;").done);
  EXPECT_EQ(authority_.questions.at(0).about.path, "\"a@b.c by mx.b.c:25\"");
  ASSERT_TRUE(SetMail("no fields").done);
  EXPECT_EQ(authority_.questions.at(1).about.path, "\" by \"");
}

TEST_F(DecidingTest, SettingsThatCannotBeLaidDownLeaveTheOldOnesInUse) {
  ASSERT_TRUE(SetMail("Address=a@b;Server=mx;").done);
  files_.FailNext(platform::FileOp::kWriteAll, kMailPath, platform::ErrorKind::kNoSpace);
  EXPECT_FALSE(SetMail("Address=c@d;Server=mx;").done);
  EXPECT_EQ(files_.Get(kMailPath), "Address=a@b;Server=mx;");
  EXPECT_EQ(files_.Get(kMailSidePath), family::Sha256Of(files_.Get(kMailPath)) + "\r\n");
}

TEST_F(DecidingTest, MailSettingsThatAreNoneOrNotAllowedChangeNothing) {
  ExpectNothingFiled(SetMail(std::string(Acting::kLongestMail + 1, 'x')), "no settings of e-mail");
  ExpectNothingFiled(SetMail(std::string("a\0b", 3)), "no settings of e-mail");
  EXPECT_TRUE(authority_.questions.empty());
  authority_.at_once = Verdict::kNo;
  ExpectNothingFiled(SetMail("x"), "no permission");
  authority_.at_once = Verdict::kYes;
  files_.FailNext(platform::FileOp::kWriteAll, kMailPath, platform::ErrorKind::kNoSpace);
  ExpectNothingFiled(SetMail("x"), "could not be laid down");
  files_.FailNext(platform::FileOp::kWriteAll, kMailSidePath, platform::ErrorKind::kNoSpace);
  ExpectNothingFiled(SetMail("y"), "could not be laid down");
  EXPECT_TRUE(SetMail(std::string(Acting::kLongestMail, 'x')).done);
}

TEST_F(DecidingTest, AHelperThatEndsAnswersWhatWaits) {
  authority_.at_once.reset();
  EXPECT_EQ(Decide(true, user_).sentence, "no reply");
  acting_.GiveUp();
  ExpectNothingFiled(last_, "did not say");
  EXPECT_TRUE(authority_.questions.at(0).withdrawn);
  EXPECT_FALSE(acting_.IsBusy());
}

TEST_F(DecidingTest, WhoAsksTooMuchWaitsAndNobodyElseDoes) {
  for (std::int64_t i = 0; i < Allowance::kAtOnce; ++i) ASSERT_TRUE(acting_.List(user_).done);
  EXPECT_NE(acting_.List(user_).sentence.find("asked too much"), std::string::npos);
  ASSERT_TRUE(Decide(true, user_).done) << "the console's own questions have an allowance of their own";
  EXPECT_TRUE(acting_.List({":1.7", 1001, true}).done);
  EXPECT_TRUE(acting_.List(root_).done);
  clock_.Sleep(Allowance::kEveryMs);
  EXPECT_TRUE(acting_.List(user_).done);
  EXPECT_FALSE(acting_.List(user_).done);
}

TEST_F(DecidingTest, WhoHasQuestionsAskedWithoutEndWaitsToo) {
  for (std::int64_t i = 0; i < Allowance::kAtOnce; ++i)
    acting_.Decide(user_, {1, alert_.code}, true, [](const Answer&) {});
  ExpectNothingFiled(Decide(true, user_), "asked too much");
  ExpectNothingFiled(SetMail("x"), "asked too much");
  ExpectUntouched(Block(), "asked too much");
}

TEST_F(DecidingTest, TheAgentToo) {
  for (std::int64_t i = 0; i < Allowance::kAtOnce; ++i) Again("/no/such");
  EXPECT_NE(Again("/no/such").sentence.find("asked too much"), std::string::npos);
}

TEST(AllowanceTest, RootAlwaysAndOthersAgainWhenTheyHaveWaited) {
  Allowance allowance;
  for (std::int64_t i = 0; i < 2 * Allowance::kAtOnce; ++i) EXPECT_TRUE(allowance.Take(0, 5));
  for (std::int64_t i = 0; i < Allowance::kAtOnce; ++i) EXPECT_TRUE(allowance.Take(7, 5)) << i;
  EXPECT_FALSE(allowance.Take(7, 5));
  EXPECT_FALSE(allowance.Take(7, 5 + Allowance::kEveryMs - 1));
  EXPECT_TRUE(allowance.Take(7, 5 + Allowance::kEveryMs));
  const std::int64_t later_ms = 5 + (Allowance::kAtOnce + 1) * Allowance::kEveryMs;
  for (std::int64_t i = 0; i < Allowance::kAtOnce; ++i) EXPECT_TRUE(allowance.Take(7, later_ms)) << i;
  EXPECT_FALSE(allowance.Take(7, later_ms));
}

TEST(AllowanceTest, NoMoreUsersAreHeldThanThereIsRoomFor) {
  Allowance allowance;
  for (std::uint32_t user = 1; user <= Allowance::kMostUsers; ++user) EXPECT_TRUE(allowance.Take(user, 0));
  EXPECT_FALSE(allowance.Take(9999, 0));
  EXPECT_TRUE(allowance.Take(1, 0));
  EXPECT_TRUE(allowance.Take(9999, 2 * Allowance::kEveryMs));
}

std::string CodeOf(std::size_t number) {
  std::string digits = std::to_string(number);
  return "AG," + std::string(24 - digits.size(), '0') + digits;
}

TEST(DecisionRecordTest, OneLineForEachCodeTheNewestLast) {
  const std::string a = CodeOf(1), b = CodeOf(2);
  EXPECT_EQ(WithDecision("", a, true), a + ",1\r\n");
  EXPECT_EQ(WithDecision(a + ",1\r\n" + b + ",0\r\n", a, false), b + ",0\r\n" + a + ",0\r\n");
}

TEST(DecisionRecordTest, WhatIsNoDecisionGoes) {
  const std::string a = CodeOf(1), b = CodeOf(2);
  EXPECT_EQ(WithDecision("x\n" + a + ",2\n" + a + "\n\r\n" + a + "0,1\n" + b + ",1", a, true),
            b + ",1\r\n" + a + ",1\r\n");
}

TEST(DecisionRecordTest, TheOldestLeaveAFullRecord) {
  std::string text;
  for (std::size_t i = 0; i < DecisionRecord::kMost; ++i) text += CodeOf(i) + ",1\r\n";
  const std::string full = WithDecision(text, CodeOf(DecisionRecord::kMost), false);
  EXPECT_FALSE(full.starts_with(CodeOf(0)));
  EXPECT_TRUE(full.starts_with(CodeOf(1)));
  EXPECT_EQ(full.size(), text.size());
  EXPECT_EQ(WithDecision(text, CodeOf(5), true).size(), text.size()) << "a known one takes no place";
}

TEST(DecisionRecordTest, OnlyTheAgentsOwnCodesAreCodes) {
  EXPECT_TRUE(IsAlertCode(CodeOf(1)));
  for (const std::string& text : std::vector<std::string>{"", "AG,", CodeOf(1) + "0", CodeOf(1).substr(1),
                                                          "AG,0123456789abcdef01234567", CodeOf(1) + ",1"})
    EXPECT_FALSE(IsAlertCode(text)) << text;
}

TEST(DecisionRecordTest, AFileThatCannotBeReadIsNotReplaced) {
  platform::MemoryFiles files;
  files.Put("/d/f", CodeOf(1) + ",1\r\n");
  DecisionRecord record(files, "/d/f");
  files.FailNext(platform::FileOp::kOpen, "/d/f", platform::ErrorKind::kPermissionDenied);
  EXPECT_FALSE(record.File(CodeOf(2), true).ok());
  EXPECT_EQ(files.Get("/d/f"), CodeOf(1) + ",1\r\n");
  EXPECT_TRUE(record.File(CodeOf(2), true).ok());
  EXPECT_EQ(files.Get("/d/f"), CodeOf(1) + ",1\r\n" + CodeOf(2) + ",1\r\n");
}

}  // namespace
}  // namespace zendrix::act
