// The mailer between a file system in memory and a mail server that answers as the test wants.
#include "mail/mailer.h"

#include <algorithm>
#include <map>
#include <set>

#include "alert_text.h"
#include "mail/memory/scripted_transport.h"
#include "platform/memory/fake_clock.h"
#include "platform/memory/faulty_files.h"
#include "platform/memory/memory_family.h"
#include "platform/memory/memory_files.h"
#include "platform/process.h"

namespace zendrix::mail {
namespace {

using test::AlertText;
using test::TakeApart;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

const Delivery kDown = {Delivery::Outcome::kLater, "the mail server cannot be reached"};
const Delivery kNo = {Delivery::Outcome::kRefused, "the mail server does not take it (550)"};
const std::string kMonitored = "/f/KorvessaMonitoring.kvl";
const std::string kSettings = "Send Alerts To=me@example.org;SMTP Server=mail.example.org:25;";

class Mailing : public testing::Test {
 protected:
  Mailing() {
    SaveSettings(kSettings);
    files.Put(kMonitored, AlertText(clock.NowUtc() - 50, "AG,OLD,1"));
    Restart();
  }
  void SaveSettings(const std::string& text) {
    files.Put("/s/KorvessaSMTPConfig.kvl", text);
    files.Put("/s/KorvessaSMTPConfig.kvh", family.HashBytes(text) + "\r\n");
  }
  void Restart() { mailer = std::make_unique<Mailer>(Parts(files)); }
  MailerParts Parts(platform::Files& used) {
    return {used, clock, family, server,
            "/f", "/s",  "/k",   [this](const std::string& line) { log.push_back(line); }};
  }
  // Turns until nothing is left to do at once.
  void Turn() {
    for (int i = 0; mailer->Turn(); ++i) ASSERT_LT(i, 100);
  }
  void Pass(std::int64_t seconds) {
    for (std::int64_t i = 0; i < seconds; i += 10) {
      clock.Advance(10'000);
      Turn();
    }
  }
  void Raise(int count = 1) {
    for (int i = 0; i < count; ++i)
      files.PutMore(kMonitored, AlertText(clock.NowUtc() + i, "AG," + std::to_string(++raised) + ",1"));
  }
  std::vector<std::string> Subjects() {
    std::vector<std::string> subjects;
    for (const auto& [settings, text] : server.taken)
      subjects.push_back(TakeApart(text).headers.at("Subject"));
    return subjects;
  }

  platform::MemoryFiles files;
  platform::FakeClock clock;
  platform::MemoryFamily family;
  ScriptedTransport server;
  std::vector<std::string> log;
  std::unique_ptr<Mailer> mailer;
  int raised = 0;
};

TEST_F(Mailing, AlertIsMailedOnceAndHistoryNever) {
  Turn();
  EXPECT_THAT(server.taken, IsEmpty());
  Raise();
  Turn();
  Turn();
  EXPECT_THAT(Subjects(), ElementsAre("Zendrix: alert on desk (risk 99 %): /tmp/x:17"));
  EXPECT_EQ(server.taken[0].first.to, "me@example.org");
  EXPECT_THAT(log, ElementsAre("E-mail of 1 alert was sent"));
  Restart();
  Turn();
  EXPECT_EQ(server.tries, 1);
}

// The Agent writes the first alert with its Change twice.
TEST_F(Mailing, AlertThatStandsTwiceIsOne) {
  Turn();
  const std::string line = AlertText(clock.NowUtc());
  files.PutMore(kMonitored, line + line);
  Turn();
  EXPECT_EQ(server.taken.size(), 1U);
}

TEST_F(Mailing, OtherRowsAreNotMailed) {
  Turn();
  files.PutMore(kMonitored, "1100000000,desk,1,Running Processes|1|1|/tmp/x:1|observed|RP,1,1|0\r\n" +
                                AlertText(1100000000, "AG,9,1", "a=b;", "-0.98"));
  Turn();
  EXPECT_EQ(server.tries, 0);
}

TEST_F(Mailing, WhatCameWhileItDidNotRunIsMailed) {
  Turn();
  Raise();
  ASSERT_TRUE(files.Rename(kMonitored, "/f/KorvessaMonitoring-1100000010.kvl"));
  files.Put(kMonitored, AlertText(clock.NowUtc() + 20, "AG,B,1"));
  Restart();
  Turn();
  EXPECT_EQ(server.taken.size(), 2U);
}

TEST_F(Mailing, ServerThatIsDownForADayCostsNothing) {
  Turn();
  server.Always(kDown);
  Raise();
  Pass(12 * 3600);
  Restart();  // the computer was started anew
  Raise(7);
  Pass(12 * 3600);
  EXPECT_GE(server.tries, 40);
  EXPECT_LE(server.tries, 70);
  server.Always({Delivery::Outcome::kSent, ""});
  Pass(1800);
  EXPECT_THAT(Subjects(),
              ElementsAre("Zendrix: alert on desk (risk 99 %): /tmp/x:17", "Zendrix: 7 alerts on desk"));
  const auto waits = std::count_if(log.begin(), log.end(), [](const std::string& line) {
    return line.find("waits") != std::string::npos;
  });
  EXPECT_EQ(waits, 2) << "told once for each start";
}

TEST_F(Mailing, TriesComeFurtherAndFurtherApart) {
  Turn();
  server.Always(kDown);
  Raise();
  Turn();
  EXPECT_EQ(server.tries, 1);
  Pass(50);
  EXPECT_EQ(server.tries, 1);
  Pass(10);
  EXPECT_EQ(server.tries, 2);
  Pass(110);
  EXPECT_EQ(server.tries, 2);
  Pass(10);
  EXPECT_EQ(server.tries, 3);
}

TEST_F(Mailing, FloodIsOneMail) {
  Turn();
  Raise(600);
  Turn();
  EXPECT_THAT(Subjects(), ElementsAre("Zendrix: 600 alerts on desk"));
  EXPECT_THAT(log.back(), HasSubstr("600 alerts"));
}

TEST_F(Mailing, LastingFloodIsAMailEveryTenMinutes) {
  Turn();
  for (int minute = 0; minute < 120; ++minute) {
    Raise(10);
    Pass(60);
  }
  EXPECT_LE(server.taken.size(), 20U);
  EXPECT_GE(server.taken.size(), 12U);
  EXPECT_LT(files.Get("/k/zendrix-mail.state").size(), 2'000'000U);
}

TEST_F(Mailing, RefusedMailIsGivenUpAndToldInTheLog) {
  Turn();
  server.Always(kNo);
  Raise();
  Pass(24 * 3600);
  EXPECT_EQ(server.tries, 3);
  EXPECT_THAT(
      log,
      ElementsAre("E-mail of 1 alert was refused and is tried again: the mail server does not take it (550)",
                  "E-mail of 1 alert is given up: the mail server does not take it (550)"));
  server.Always({Delivery::Outcome::kSent, ""});
  Raise();
  Turn();
  EXPECT_EQ(server.taken.size(), 1U) << "the next alert is a mail of its own";
}

// It was tried every half hour for ever; providers shut an account for that.
TEST_F(Mailing, RefusedLoginIsTriedEverMoreRarelyToldOnceAndDropsNothing) {
  Turn();
  server.Always({Delivery::Outcome::kNoLogin, "the mail server does not take user and password (535)"});
  Raise();
  Pass(24 * 3600);
  EXPECT_EQ(server.tries, 11);
  Pass(24 * 3600);
  EXPECT_EQ(server.tries, 12);
  EXPECT_THAT(log,
              ElementsAre("E-mail of 1 alert waits: the mail server does not take user and password (535)"));
  server.Always({Delivery::Outcome::kSent, ""});
  SaveSettings(kSettings + "User=me;Password=mended;");
  Pass(10);
  EXPECT_EQ(server.taken.size(), 1U) << "a changed password is tried at once";
}

TEST_F(Mailing, AServerThatIsDownIsTriedEveryHalfHour) {
  Turn();
  server.Always(kDown);
  Raise();
  Pass(24 * 3600);
  EXPECT_GE(server.tries, 48);
}

TEST_F(Mailing, WhatWaitsOutlivesASettingsFileThatIsGoneForAWhile) {
  Turn();
  server.Always(kDown);
  Raise(2);
  Turn();
  server.Always({Delivery::Outcome::kSent, ""});
  ASSERT_TRUE(files.Remove("/s/KorvessaSMTPConfig.kvl").ok());
  Pass(3600);
  Raise();
  Pass(3600);
  EXPECT_THAT(server.taken, IsEmpty());
  EXPECT_EQ(std::count(log.begin(), log.end(), "E-mail waits: the SMTP file is gone"), 1);
  SaveSettings(kSettings);
  Pass(60);
  EXPECT_EQ(server.taken.size(), 3U);
}

// With what it had sent went the memory of it: nothing of the history is mailed again.
TEST_F(Mailing, WithoutItsStateItBeginsAtTheEnd) {
  Turn();
  Raise(3);
  Turn();
  const auto sent = server.taken.size();
  mailer.reset();
  ASSERT_TRUE(files.Remove("/k/zendrix-mail.state").ok());
  Restart();
  Pass(3600);
  EXPECT_EQ(server.taken.size(), sent);
  Raise();
  Pass(60);
  EXPECT_EQ(server.taken.size(), sent + 1);
}

TEST_F(Mailing, RefusalsOutliveARestart) {
  Turn();
  server.Always(kNo);
  Raise();
  for (int i = 0; i < 10; ++i) {
    Turn();
    Restart();
  }
  EXPECT_EQ(server.tries, 3);
}

TEST_F(Mailing, ChangedSettingsAreTriedAtOnce) {
  Turn();
  server.Always(kDown);
  Raise();
  Turn();
  server.Always({Delivery::Outcome::kSent, ""});
  SaveSettings("Send Alerts To=me@example.org;SMTP Server=other.example.org:25;");
  Pass(10);
  ASSERT_EQ(server.taken.size(), 1U);
  EXPECT_EQ(server.taken[0].first.server, "other.example.org");
}

TEST_F(Mailing, WhileItIsOffNothingWaits) {
  SaveSettings("Send Alerts To=;SMTP Server=:25;");
  Restart();
  Turn();
  Raise(3);
  Turn();
  SaveSettings(kSettings);
  Pass(10);
  EXPECT_EQ(server.tries, 0);
  Raise();
  Turn();
  EXPECT_EQ(server.taken.size(), 1U);
}

TEST_F(Mailing, TurnedOffItGivesUpWhatWaits) {
  Turn();
  server.Always(kDown);
  Raise(2);
  Turn();
  SaveSettings("Send Alerts To=;SMTP Server=:25;");
  Pass(10);
  EXPECT_EQ(log.back(), "E-mail was turned off; 2 alerts will not be mailed");
  SaveSettings(kSettings);
  const int before = server.tries;
  Pass(3600);
  EXPECT_EQ(server.tries, before);
}

TEST_F(Mailing, FileThatDoesNotFitItsSideFileKeepsTheAlerts) {
  Turn();
  files.Put("/s/KorvessaSMTPConfig.kvl", "Send Alerts To=evil@example.org;SMTP Server=mail.example.org:25;");
  Pass(10);
  EXPECT_THAT(log, IsEmpty()) << "a look may fall between the file and its side file";
  Raise();
  Pass(30);
  EXPECT_EQ(server.tries, 0);
  EXPECT_THAT(log, ElementsAre("E-mail waits: the SMTP file does not fit its side file"));
  SaveSettings(kSettings);
  Pass(10);
  EXPECT_EQ(server.taken.size(), 1U);
}

TEST_F(Mailing, WhileItsStateCannotBeWrittenNothingIsSent) {
  Turn();
  files.FailNext(platform::FileOp::kWriteAll, "/k/zendrix-mail.state", platform::ErrorKind::kNoSpace,
                 platform::MemoryFiles::kAlways);
  Raise();
  Pass(60);
  Restart();  // what it would have sent it would send again
  Pass(60);
  EXPECT_EQ(server.tries, 0);
  EXPECT_THAT(log, ElementsAre("E-mail waits: its state file cannot be written",
                               "E-mail waits: its state file cannot be written"))
      << "told once for each start";
  files.ClearFaults();
  Pass(10);
  EXPECT_EQ(server.taken.size(), 1U);
  Restart();
  Turn();
  EXPECT_EQ(server.tries, 1);
}

TEST_F(Mailing, AlertsThatWaitedForRoomAreOneMail) {
  Turn();
  files.FailNext(platform::FileOp::kWriteAll, "/k/zendrix-mail.state", platform::ErrorKind::kNoSpace,
                 platform::MemoryFiles::kAlways);
  Raise();
  Pass(10);
  Raise(6);
  Pass(10);
  files.ClearFaults();
  Pass(10);
  EXPECT_THAT(Subjects(), ElementsAre("Zendrix: 7 alerts on desk"));
}

// The first alert was written down as waiting; that it is being tried was not.
TEST_F(Mailing, DiskThatFillsUpInFrontOfAMailHoldsItBack) {
  Turn();
  int writes = 0;
  files.before = [&](platform::FileOp op, const std::string& path) {
    if (op == platform::FileOp::kWriteAll && ++writes == 2)
      files.FailNext(op, path, platform::ErrorKind::kNoSpace, platform::MemoryFiles::kAlways);
  };
  Raise();
  Pass(30);
  EXPECT_EQ(server.tries, 0);
  EXPECT_THAT(log, ElementsAre("E-mail waits: its state file cannot be written"));
  files.before = nullptr;
  files.ClearFaults();
  Pass(10);
  EXPECT_EQ(server.taken.size(), 1U);
}

TEST_F(Mailing, DiskThatFillsUpBehindAMailLetsNoOtherOut) {
  Turn();
  server.sending = [&] {
    files.FailNext(platform::FileOp::kWriteAll, "/k/zendrix-mail.state", platform::ErrorKind::kNoSpace,
                   platform::MemoryFiles::kAlways);
  };
  Raise(2);
  Pass(60);
  EXPECT_EQ(server.taken.size(), 1U);
  server.sending = nullptr;
  files.ClearFaults();
  Pass(10);
  EXPECT_EQ(server.taken.size(), 2U) << "the first is struck out, and not sent twice";
  Restart();
  Turn();
  EXPECT_EQ(server.tries, 2);
}

// The Agent writes rows all day; a disk is not to be woken for each.
TEST_F(Mailing, RowsThatAreNoAlertsCostAWriteAMinute) {
  Turn();
  int writes = 0;
  files.before = [&](platform::FileOp op, const std::string&) {
    writes += op == platform::FileOp::kWriteAll ? 1 : 0;
  };
  const auto rows = [&](int seconds) {
    for (int i = 0; i < seconds; i += 2) {
      files.PutMore(kMonitored, "1100000000,desk,1,Running Processes|1|1|/bin/x:1|observed|RP,1,1|0\r\n");
      clock.Advance(2000);
      Turn();
    }
  };
  rows(600);
  EXPECT_GE(writes, 9);
  EXPECT_LE(writes, 11);
  // What was read since is read again after a kill, and nothing comes of it.
  rows(20);
  Restart();
  Turn();
  EXPECT_EQ(server.tries, 0);
  rows(20);
  writes = 0;
  mailer->Finish();
  mailer->Finish();
  EXPECT_EQ(writes, 1);
  Raise();
  Turn();
  EXPECT_EQ(server.taken.size(), 1U);
}

TEST_F(Mailing, DamagedStateIsSetAsideAndTheLastDayIsReadAgain) {
  const std::int64_t now = clock.NowUtc();
  files.Put("/f/KorvessaMonitoring-" + std::to_string(now - 90000) + ".kvl",
            AlertText(now - 90001, "AG,A,1"));
  files.Put("/f/KorvessaMonitoring-" + std::to_string(now - 86400) + ".kvl",
            AlertText(now - 86401, "AG,B,1") + AlertText(now - 86400, "AG,C,1"));
  files.Put(kMonitored, AlertText(now - 50, "AG,D,1"));
  Turn();
  EXPECT_EQ(server.tries, 0);
  files.Put("/k/zendrix-mail.state", "x");
  Restart();
  Turn();
  EXPECT_EQ(server.taken.size(), 2U) << "C and D";
  EXPECT_EQ(
      log.front(),
      "E-mail begins anew: its state file is damaged and was set aside; alerts of before may be missing and "
      "those of the last day may come again");
  EXPECT_EQ(files.Get("/k/zendrix-mail.state.damaged"), "x");
  Restart();
  Turn();
  EXPECT_EQ(server.tries, 2) << "once, though the damaged file is still there";
  EXPECT_EQ(std::count(log.begin(), log.end(), log.front()), 1);
  // What is read again ends; a clock that is put back afterwards makes nothing history.
  files.PutMore(kMonitored, AlertText(now - 200000, "AG,E,1"));
  Turn();
  EXPECT_EQ(server.taken.size(), 3U);
}

TEST_F(Mailing, KillBehindSettingAsideLosesNothing) {
  Turn();
  for (int kill_at = 1, steps = 0;; ++kill_at) {
    SCOPED_TRACE(kill_at);
    files.Put("/k/zendrix-mail.state", "x");
    files.Remove("/k/zendrix-mail.state.damaged").ok();
    files.Put(kMonitored,
              AlertText(clock.NowUtc() - 90000, "AG,A,1") + AlertText(clock.NowUtc() - 10, "AG,B,1"));
    server = ScriptedTransport();
    platform::FaultyFiles faulty(files);
    faulty.KillAt(kill_at);
    bool killed = false;
    try {
      Mailer first(Parts(faulty));
      while (first.Turn()) {
      }
    } catch (const platform::ProcessEnded&) {
      killed = true;
    }
    Restart();
    Turn();
    EXPECT_GE(server.taken.size(), 1U);
    EXPECT_LE(server.taken.size(), killed ? 2U : 1U);
    if (!killed) {
      EXPECT_GE(steps, 3);
      break;
    }
    ++steps;
    clock.Advance(7'200'000);
  }
}

TEST_F(Mailing, DamagedStateThatCannotBeSetAsideStaysAndIsTold) {
  Turn();
  files.Put("/k/zendrix-mail.state", "x");
  files.FailNext(platform::FileOp::kRename, "/k/zendrix-mail.state", platform::ErrorKind::kPermissionDenied,
                 platform::MemoryFiles::kAlways);
  Restart();
  Raise();
  Pass(60);
  EXPECT_EQ(server.tries, 0);
  EXPECT_EQ(files.Get("/k/zendrix-mail.state"), "x");
  EXPECT_THAT(log, ElementsAre("E-mail waits: its damaged state file cannot be set aside"));
}

TEST_F(Mailing, StateThatCannotBeReadNowIsNotBegunAnew) {
  Turn();
  Raise();
  files.FailNext(platform::FileOp::kOpen, "/k/zendrix-mail.state", platform::ErrorKind::kPermissionDenied);
  Restart();
  Turn();
  EXPECT_EQ(server.tries, 0);
  Turn();
  EXPECT_EQ(server.taken.size(), 1U);
}

TEST_F(Mailing, OldAlertsOfARestoredFileAreHistory) {
  Turn();
  files.Vanish(kMonitored);
  files.Put(kMonitored,
            AlertText(clock.NowUtc() - 90000, "AG,X,1") + AlertText(clock.NowUtc() - 10, "AG,Y,1"));
  Turn();
  EXPECT_EQ(server.taken.size(), 1U);
}

// Killed at any of its steps, and started again: every alert arrives, and one that arrives twice is known for
// the same by its Message-ID.
TEST_F(Mailing, KillAtAnyStepLosesNothing) {
  Turn();
  const std::string begun = files.Get("/k/zendrix-mail.state");
  const std::string monitored = files.Get(kMonitored);
  int steps = 0;
  for (int kill_at = 1;; ++kill_at) {
    SCOPED_TRACE(kill_at);
    files.Put("/k/zendrix-mail.state", begun);
    files.Put(kMonitored, monitored);
    server = ScriptedTransport();
    platform::FaultyFiles faulty(files);
    faulty.KillAt(kill_at);
    bool killed = false;
    Raise(2);
    try {
      Mailer first(Parts(faulty));
      while (first.Turn()) {
      }
    } catch (const platform::ProcessEnded&) {
      killed = true;
    }
    Raise(1);
    Restart();
    Turn();
    std::map<std::string, std::string> subject_by_id;
    for (const auto& [settings, text] : server.taken) {
      const auto parts = TakeApart(text);
      const auto [at, is_new] = subject_by_id.try_emplace(parts.headers.at("Message-ID"), parts.body);
      EXPECT_EQ(at->second, parts.body);
    }
    EXPECT_EQ(subject_by_id.size(), 3U);
    EXPECT_LE(server.taken.size(), killed ? 4U : 3U);
    if (!killed) break;
    ++steps;
    clock.Advance(7'200'000);
  }
  EXPECT_GE(steps, 3);
}

}  // namespace
}  // namespace zendrix::mail
