#include "support/temporary_folder.h"
#include "unit/agent/score/scored_host.h"

namespace zendrix::agent {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class BaselineScorerTest : public testing::Test {
 protected:
  BaselineScorerTest() {
    pc.Put("/usr/bin/bash", "bash");
    pc.Put("/home/ann/.x/tool", "tool");
  }
  void Learn(int days = 7) {
    for (int day = 0; day < days; ++day) {
      pc.At(day, 12);
      pc.Start("/usr/bin/bash", "/usr/bin/login");
    }
    pc.At(days, 12);
  }
  // Unusual enough for an alert behind the week of learning, and by no hard rule.
  void RunTool(const std::string& path = "/home/ann/.x/tool") {
    pc.Start(path, "/usr/bin/bash");
    pc.Wait(5);
  }

  // Each is an alert of its own, all of one kind.
  void Decoy() {
    pc.Came(MakeItem(monitor::kFolders, "/tmp/x" + std::to_string(++decoys_),
                     {Rule::kSetUserIdInTemporaryFolder}));
  }
  bool HasAlertOn(const std::string& subject) const {
    return std::any_of(pc.alerts.begin(), pc.alerts.end(),
                       [&](const auto& told) { return told.alert.subject == subject; });
  }
  // Of the last one.
  std::vector<std::string> FactsOfLeftOut() const {
    std::vector<std::string> facts;
    for (const auto& told : pc.alerts) {
      if (told.alert.subject == "alerts that found no room") facts = told.alert.facts;
    }
    return facts;
  }

  // As a source tells one of them.
  void Fail(const std::string& address) {
    const std::string where = " at sshd from " + address;
    Event event =
        HappenedEvent(MakeItem(monitor::kSystem, "failed logins 1" + where, {}, "failed logins" + where));
    event.change = 1;
    pc.Turn({event});
  }

  ScoredHost pc;

 private:
  int decoys_ = 0;
};

class BaselineScorerRestarts : public BaselineScorerTest {
 protected:
  BaselineScorerRestarts() { pc.KeepIn(folder_.Path("memory.db")); }
  test::TemporaryFolder folder_;
};

TEST_F(BaselineScorerTest, InTheWeekOfLearningSoftFactsAreStoredAndNoAlert) {
  RunTool();
  EXPECT_THAT(pc.alerts, IsEmpty());
  ASSERT_THAT(pc.quiet, SizeIs(1));
  EXPECT_THAT(pc.quiet[0].alert.change, HasSubstr("-0.9600"));
  EXPECT_DOUBLE_EQ(pc.quiet[0].alert.risk, 1 - 0.4 * 0.4 * 0.5 * 0.5);
}

TEST_F(BaselineScorerTest, WaitsForTimeToPassOnlyUntilAnAlertIsTold) {
  EXPECT_FALSE(pc.scorer().IsWaiting());
  pc.Account("toor", {Rule::kSecondRoot});
  EXPECT_TRUE(pc.scorer().IsWaiting());
  pc.Wait(5);
  EXPECT_FALSE(pc.scorer().IsWaiting());
}

TEST_F(BaselineScorerTest, WhatWasThereAllAlongIsNotStoredLineByLine) {
  Item item = MakeItem(monitor::kProcesses, "/home/ann/.x/tool:7",
                       RulesOfProgram({"/home/ann/.x/tool", false, false}), "/home/ann/.x/tool");
  item.program = "/home/ann/.x/tool";
  pc.IsThere({item});
  pc.Wait(5);
  EXPECT_THAT(pc.quiet, IsEmpty());
}

TEST_F(BaselineScorerTest, HardFactsAlertInTheWeekOfLearningToo) {
  pc.Account("toor", {Rule::kSecondRoot});
  pc.Wait(5);
  ASSERT_THAT(pc.alerts, SizeIs(1));
  EXPECT_EQ(pc.alerts[0].alert.subject, "account toor");
}

TEST_F(BaselineScorerTest, BehindTheWeekWhatIsNewAndOddIsAnAlertWithItsFacts) {
  Learn();
  RunTool();
  ASSERT_THAT(pc.alerts, SizeIs(1));
  EXPECT_THAT(pc.alerts[0].alert.facts, ElementsAre("runs from a hidden place", "first seen in 8 days",
                                                    "started by /usr/bin/bash as never before"));
  EXPECT_THAT(pc.alerts[0].alert.code, ::testing::MatchesRegex("AG,[0-9A-F]{24}"));
}

TEST_F(BaselineScorerTest, WhatAHostIsUsedToIsNoAlert) {
  for (int day = 0; day < 8; ++day) {
    pc.At(day, 12);
    RunTool();
  }
  EXPECT_THAT(pc.alerts, IsEmpty());
}

TEST_F(BaselineScorerTest, ProgramWithNewContentsIsNews) {
  for (int day = 0; day < 8; ++day) {
    pc.At(day, 12);
    RunTool();
  }
  pc.At(9, 12);
  pc.Put("/home/ann/.x/tool", "another");
  RunTool();
  ASSERT_THAT(pc.alerts, SizeIs(1));
  EXPECT_THAT(pc.alerts[0].alert.facts, Contains("has changed since it was last seen"));
  EXPECT_DOUBLE_EQ(pc.alerts[0].alert.risk, 1 - 0.4 * 0.4 * 0.5 * (1 - 0.5 * std::exp2(-8 / 3.0)));
}

TEST_F(BaselineScorerTest, UnchangedFileOfAPackageThatIsBeingInstalledWeighsLess) {
  Learn();
  pc.Install("odd", {{"/opt/.odd/run", "odd"}});
  pc.Put("/opt/.other/run", "other");
  const auto work = [&](const std::string& program) {
    pc.Start(program, "/usr/bin/dpkg");
    pc.Listen(program, 4444);
    pc.Connect(program, "203.0.113.1", 4444);
    pc.Wait(5);
  };
  work("/opt/.odd/run");
  EXPECT_THAT(pc.alerts, IsEmpty());
  work("/opt/.other/run");
  EXPECT_THAT(pc.alerts, SizeIs(1)) << "the same of a file of no package";
  pc.alerts.clear();
  pc.Put("/opt/.odd/run", "altered");
  pc.At(9, 12);
  work("/opt/.odd/run");
  EXPECT_THAT(pc.alerts, SizeIs(1)) << "neither unchanged nor just installed";
}

TEST_F(BaselineScorerTest, AlertWaitsForWhatElseItsSubjectDoes) {
  Learn();
  pc.Start("/tmp/.y", "/usr/bin/bash");
  EXPECT_THAT(pc.alerts, IsEmpty());
  pc.Listen("/tmp/.y", 4444);
  pc.Wait(2);
  ASSERT_THAT(pc.alerts, SizeIs(1));
  EXPECT_THAT(pc.alerts[0].alert.members, SizeIs(2));
}

TEST_F(BaselineScorerTest, EndOfTheRunWaitsForNothing) {
  Learn();
  pc.Start("/tmp/.y", "/usr/bin/bash");
  EXPECT_THAT(pc.scorer().Rest({pc.utc, (pc.utc - ScoredHost::kBegin) * 1000}), SizeIs(1));
}

TEST_F(BaselineScorerTest, SameAlertIsNotRaisedAgainThatDayAndOneThatSaysMoreIs) {
  Learn();
  pc.Start("/tmp/.y", "/usr/bin/bash");
  pc.Wait(5);
  pc.Start("/tmp/.y", "/usr/bin/bash");
  pc.Wait(4000);
  pc.Start("/tmp/.y", "/usr/bin/bash");
  pc.Wait(5);
  EXPECT_THAT(pc.alerts, SizeIs(1));
  pc.Autostart("y.desktop", "/tmp/.y");
  pc.Wait(5);
  ASSERT_THAT(pc.alerts, SizeIs(2));
  EXPECT_GT(pc.alerts[1].alert.risk, pc.alerts[0].alert.risk - 0.01);
  EXPECT_EQ(pc.alerts[1].alert.code, pc.alerts[0].alert.code);
}

TEST_F(BaselineScorerTest, SecondAlertOfADayHasToBeFarMoreUnusual) {
  Learn();
  RunTool();
  pc.Put("/home/ann/.z/tool", "z");
  RunTool("/home/ann/.z/tool");
  EXPECT_THAT(pc.alerts, SizeIs(1));
  pc.Start("/tmp/.a/b", "/usr/bin/python3");
  pc.Connect("/tmp/.a/b", "203.0.113.5", 4444);
  pc.Wait(5);
  EXPECT_THAT(pc.alerts, SizeIs(2));
  pc.Wait(ScoredHost::kDay);
  pc.Put("/home/ann/.w/tool", "w");
  RunTool("/home/ann/.w/tool");
  EXPECT_THAT(pc.alerts, SizeIs(3));
}

TEST_F(BaselineScorerTest, AlertsOfOneMomentSpendFromOneBudget) {
  Learn();
  for (int i = 0; i < 20; ++i) pc.Start("/home/ann/.t" + std::to_string(i) + "/x", "/usr/bin/bash");
  pc.Wait(5);
  EXPECT_THAT(pc.alerts, SizeIs(1));
}

TEST_F(BaselineScorerRestarts, RestartKeepsWhatWasSaidAndSpent) {
  Learn();
  RunTool();
  const std::string code = pc.alerts.at(0).alert.code;
  pc.Restart();
  RunTool();
  pc.Put("/home/ann/.z/tool", "z");
  RunTool("/home/ann/.z/tool");
  EXPECT_THAT(pc.alerts, SizeIs(1));
  pc.Wait(ScoredHost::kDay);
  pc.Put("/home/ann/.x/tool", "new");
  pc.Start("/home/ann/.x/tool", "/usr/bin/perl");
  pc.Wait(5);
  ASSERT_THAT(pc.alerts, SizeIs(2));
  EXPECT_EQ(pc.alerts[1].alert.code, code) << "one host, one key";
}

TEST_F(BaselineScorerTest, NewFileIsToldAgainWhatIsStillThere) {
  Learn();
  RunTool();
  pc.scorer().BeginFile();
  Item item = MakeItem(monitor::kProcesses, "/home/ann/.x/tool:7",
                       RulesOfProgram({"/home/ann/.x/tool", false, false}), "/home/ann/.x/tool");
  item.program = "/home/ann/.x/tool";
  pc.IsThere({item});
  ASSERT_THAT(pc.alerts, SizeIs(2));
  EXPECT_FALSE(pc.alerts[1].alert.has_forerunner);
}

TEST_F(BaselineScorerTest, ForerunnerIsNeededOnceForEachChange) {
  Learn();
  RunTool();
  EXPECT_FALSE(pc.alerts.at(0).alert.has_forerunner);
  pc.Wait(ScoredHost::kDay);
  pc.Start("/tmp/x", "/usr/bin/bash");
  pc.Wait(5);
  EXPECT_FALSE(pc.alerts.at(1).alert.has_forerunner);
}

TEST_F(BaselineScorerTest, AlertThatWasNotWrittenComesBackAtEachTurn) {
  Learn();
  pc.writes = false;
  RunTool();
  const Moment now{pc.utc, (pc.utc - ScoredHost::kBegin) * 1000};
  EXPECT_THAT(pc.scorer().Weigh({}, now), SizeIs(1));
  EXPECT_THAT(pc.scorer().Weigh({}, now), SizeIs(1));
}

TEST_F(BaselineScorerRestarts, AllowedSubjectIsQuietUntilItDoesWorseOrChanges) {
  Learn();
  RunTool();
  EXPECT_TRUE(pc.scorer().Decide(pc.alerts.at(0).alert.code, false));
  EXPECT_FALSE(pc.scorer().Decide(pc.alerts.at(0).alert.code, false)) << "nothing new";
  pc.alerts.clear();
  pc.Wait(2 * ScoredHost::kDay);
  pc.Connect("/home/ann/.x/tool", "203.0.113.1", 4444);
  pc.Listen("/home/ann/.x/tool", 4444);
  pc.Wait(5);
  EXPECT_THAT(pc.alerts, IsEmpty());
  pc.Restart();
  pc.Connect("/home/ann/.x/tool", "203.0.113.2", 4444);
  pc.Listen("/home/ann/.x/tool", 4445);
  pc.Wait(5);
  EXPECT_THAT(pc.alerts, IsEmpty()) << "a decision outlives the run";
  pc.Start("/home/ann/.x/tool", "/usr/bin/bash", {Rule::kNamedLikeKernelThread});
  pc.Wait(5);
  EXPECT_THAT(pc.alerts, SizeIs(1)) << "a hard fact that nobody had seen";
  pc.Put("/home/ann/.x/tool", "another");
  pc.Wait(2 * ScoredHost::kDay);
  pc.Connect("/home/ann/.x/tool", "203.0.113.3", 4444);
  pc.Listen("/home/ann/.x/tool", 4446);
  pc.Wait(5);
  EXPECT_THAT(pc.alerts, SizeIs(2)) << "other contents than those that were allowed";
}

TEST_F(BaselineScorerTest, BlockedSubjectIsAnAlertWheneverItIsBack) {
  Learn();
  RunTool();
  EXPECT_TRUE(pc.scorer().Decide(pc.alerts.at(0).alert.code, true));
  pc.Wait(30 * ScoredHost::kDay);
  pc.alerts.clear();
  RunTool();
  ASSERT_THAT(pc.alerts, SizeIs(1));
  EXPECT_THAT(pc.alerts[0].alert.facts, Contains("was blocked before"));
}

TEST_F(BaselineScorerTest, DecisionOnAnUnknownCodeIsNone) {
  EXPECT_FALSE(pc.scorer().Decide("AG,0123456789ABCDEF01234567", true));
  EXPECT_THAT(pc.scorer().Decided(), IsEmpty());
}

TEST_F(BaselineScorerTest, DecidedAlertsAreNamedByTheirSeconds) {
  Learn();
  RunTool();
  pc.scorer().Decide(pc.alerts.at(0).alert.code, true);
  const auto decided = pc.scorer().Decided();
  ASSERT_THAT(decided, SizeIs(1));
  EXPECT_EQ(decided[0].second, pc.alerts[0].utc);
  EXPECT_TRUE(decided[0].block);
}

TEST_F(BaselineScorerTest, KnownIsWhatWasSeenBefore) {
  Item item = MakeItem(monitor::kProcesses, "/usr/bin/bash:1", {}, "/usr/bin/bash");
  item.program = "/usr/bin/bash";
  EXPECT_FALSE(pc.scorer().IsKnown(item));
  Learn(1);
  EXPECT_TRUE(pc.scorer().IsKnown(item));
  const Item account = MakeItem(monitor::kAccounts, "eve");
  EXPECT_FALSE(pc.scorer().IsKnown(account));
  pc.Came(account);
  EXPECT_TRUE(pc.scorer().IsKnown(account));
}

TEST_F(BaselineScorerTest, ProgramThatTalksToEverybodyMakesNoNewsOfOneMore) {
  Item item = MakeItem(monitor::kConnections, "192.0.2.200:443:/usr/bin/web", {}, "/usr/bin/web");
  item.program = "/usr/bin/web";
  pc.Connect("/usr/bin/web", "192.0.2.1", 443);
  EXPECT_FALSE(pc.scorer().IsKnown(item));
  for (int i = 2; i < 100; ++i) pc.Connect("/usr/bin/web", "192.0.2." + std::to_string(i), 443);
  EXPECT_TRUE(pc.scorer().IsKnown(item));
}

TEST_F(BaselineScorerTest, GuessesBelowTenInTenMinutesAreNone) {
  const auto fail = [&](double count) {
    Event event;
    event.kind = EventKind::kHappened;
    event.item = MakeItem(monitor::kSystem, "failed logins " + std::to_string(static_cast<int>(count)), {},
                          "failed logins");
    event.change = count;
    pc.Turn({event});
    pc.Wait(4);
  };
  fail(9);
  pc.Wait(600);
  fail(9);
  EXPECT_THAT(pc.alerts, IsEmpty());
  fail(1);
  ASSERT_THAT(pc.alerts, SizeIs(1));
  EXPECT_THAT(pc.alerts[0].alert.facts, ElementsAre("10 logins failed in 10 minutes"));
}

TEST_F(BaselineScorerTest, FloodOfHardFactsIsBoundedAndTold) {
  std::vector<Item> items;
  for (int i = 0; i < 20000; ++i) {
    items.push_back(
        MakeItem(monitor::kFolders, "/tmp/x" + std::to_string(i), {Rule::kSetUserIdInTemporaryFolder}));
  }
  pc.Turn(ChangeEvents({{}, items}));
  pc.Wait(5);
  ASSERT_THAT(pc.alerts, SizeIs(11));
  // 5,000 subjects are kept apart; of these 10 are told at once and 200 wait.
  EXPECT_THAT(FactsOfLeftOut(), ElementsAre("15000 alerts found no room",
                                            "file in a temporary folder runs with the rights of its owner"));
  EXPECT_THAT(pc.scorer().TakeMessages(), ElementsAre(HasSubstr("19790 were left out")));
}

TEST_F(BaselineScorerTest, TenDecoysAMinuteDoNotHideAnAlert) {
  for (int i = 0; i < 10; ++i) Decoy();
  pc.Wait(5);
  pc.Autostart("evil.desktop", "/tmp/evil");
  pc.Wait(5);
  EXPECT_TRUE(HasAlertOn("/tmp/evil")) << "it is of another kind";
}

TEST_F(BaselineScorerTest, AlertThatFindsNoRoomWaitsForTheNextMinute) {
  for (int i = 0; i < 10; ++i) Decoy();
  pc.Wait(5);
  pc.Came(MakeItem(monitor::kFolders, "/tmp/REAL", {Rule::kSetUserIdInTemporaryFolder}));
  pc.Wait(5);
  EXPECT_FALSE(HasAlertOn("/tmp/REAL"));
  for (int i = 0; i < 5; ++i) Decoy();
  pc.Wait(60);
  EXPECT_TRUE(HasAlertOn("/tmp/REAL"));
  EXPECT_THAT(pc.alerts, SizeIs(16)) << "none is lost, none comes twice";
  EXPECT_THAT(pc.scorer().TakeMessages(), IsEmpty());
}

TEST_F(BaselineScorerTest, WhatWaitsOutlivesTheFile) {
  for (int i = 0; i < 10; ++i) Decoy();
  pc.Wait(5);
  pc.Came(MakeItem(monitor::kFolders, "/tmp/REAL", {Rule::kSetUserIdInTemporaryFolder}));
  pc.Wait(5);
  pc.scorer().BeginFile();
  pc.Wait(60);
  EXPECT_TRUE(HasAlertOn("/tmp/REAL"));
}

TEST_F(BaselineScorerTest, EndOfTheRunCountsWhatWaits) {
  for (int i = 0; i < 15; ++i) Decoy();
  const auto rest = pc.scorer().Rest({pc.utc, (pc.utc - ScoredHost::kBegin) * 1000});
  ASSERT_THAT(rest, SizeIs(11));
  EXPECT_EQ(rest.back().facts.at(0), "5 alerts found no room");
  EXPECT_THAT(rest.back().members, SizeIs(5));
}

TEST_F(BaselineScorerTest, NumberOfTheLeftOutIsToldAtOnceAndThenOnceAnHour) {
  for (int i = 0; i < 300; ++i) Decoy();
  pc.Wait(5);
  EXPECT_THAT(FactsOfLeftOut().at(0), "90 alerts found no room");
  const std::size_t before = pc.alerts.size();
  for (int i = 0; i < 300; ++i) Decoy();
  pc.Wait(5);
  EXPECT_THAT(pc.alerts, SizeIs(before));
  pc.Wait(3600);
  EXPECT_THAT(FactsOfLeftOut().at(0), "300 alerts found no room");
}

TEST_F(BaselineScorerTest, LogTellsOfTheLeftOutOnceAMinute) {
  for (int i = 0; i < 300; ++i) Decoy();
  pc.Wait(5);
  EXPECT_THAT(pc.scorer().TakeMessages(), SizeIs(1));
  for (int i = 0; i < 300; ++i) Decoy();
  pc.Wait(5);
  EXPECT_THAT(pc.scorer().TakeMessages(), IsEmpty());
  pc.Wait(60);
  EXPECT_THAT(pc.scorer().TakeMessages(), ElementsAre(HasSubstr(" were left out")));
}

TEST_F(BaselineScorerTest, ProgramsOfEqualCleanedNamesAreTwoSubjects) {
  Learn();
  const auto run = [&](const std::string& program) {
    Item item =
        MakeItem(monitor::kProcesses, "/tmp/a_b:7", RulesOfProgram({program, false, false}), "/tmp/a_b");
    item.rules.Add(Rule::kNamedLikeKernelThread);
    item.program = program;
    pc.Came(item);
  };
  pc.Put("/tmp/a|b", "one");
  pc.Put("/tmp/a_b", "two");
  run("/tmp/a|b");
  run("/tmp/a_b");
  pc.Wait(5);
  ASSERT_THAT(pc.alerts, SizeIs(2));
  const Alert& one = pc.alerts[0].alert;
  const Alert& two = pc.alerts[1].alert;
  EXPECT_NE(one.code, two.code);
  EXPECT_NE(one.subject, two.subject);
  EXPECT_THAT(one.members, SizeIs(1));
  EXPECT_NE(one.members.at(0).program, two.members.at(0).program);
  pc.scorer().Decide(one.code, true);
  const auto decided = pc.scorer().Decided();
  ASSERT_THAT(decided, SizeIs(1)) << "a decision is about one of them";
}

TEST_F(BaselineScorerTest, GuessingIsToldOfTheSourceThatGuessedMost) {
  for (int i = 0; i < 12; ++i) Fail("203.0.113.66");
  Fail("10.0.0.5");
  pc.Wait(5);
  ASSERT_THAT(pc.alerts, SizeIs(1));
  EXPECT_EQ(pc.alerts[0].alert.subject, "failed logins at sshd from 203.0.113.66");
  EXPECT_THAT(pc.alerts[0].alert.members.at(0).description, HasSubstr("203.0.113.66"));
  EXPECT_THAT(pc.alerts[0].alert.facts, ElementsAre("12 logins failed in 10 minutes"));
}

TEST_F(BaselineScorerTest, GuessingFromEverOtherAddressesIsToldToo) {
  for (int i = 0; i < 9; ++i) Fail("198.51.100." + std::to_string(i));
  pc.Wait(5);
  EXPECT_THAT(pc.alerts, IsEmpty());
  Fail("198.51.100.3");
  pc.Wait(5);
  ASSERT_THAT(pc.alerts, SizeIs(1));
  EXPECT_THAT(
      pc.alerts[0].alert.facts,
      ElementsAre(
          "10 logins failed in 10 minutes - the most, 2, as failed logins at sshd from 198.51.100.3"));
  pc.Wait(700);
  Fail("198.51.100.3");
  pc.Wait(5);
  EXPECT_THAT(pc.alerts, SizeIs(1)) << "the others lie too far back";
}

TEST_F(BaselineScorerTest, InterpreterOrUnusualPortMakesNoTalker) {
  for (int i = 1; i < 100; ++i) {
    pc.Connect("/usr/bin/python3.11", "192.0.2." + std::to_string(i), 443);
    pc.Connect("/usr/bin/web", "192.0.2." + std::to_string(i), 443);
  }
  const auto is_known = [&](const std::string& program, unsigned port) {
    Item item =
        MakeItem(monitor::kConnections, "203.0.113.9:" + std::to_string(port) + ":" + program, {}, program);
    if (port == 4444) item.rules.Add(Rule::kConnectionToUnusualPort);
    item.program = program;
    return pc.scorer().IsKnown(item);
  };
  EXPECT_TRUE(is_known("/usr/bin/web", 443));
  EXPECT_FALSE(is_known("/usr/bin/web", 4444));
  EXPECT_FALSE(is_known("/usr/bin/python3.11", 443));
}

TEST_F(BaselineScorerTest, ProgramStartedByWayOfTheLoaderIsAnAlert) {
  Learn();
  pc.Start("/usr/lib/x86_64-linux-gnu/ld-linux-x86-64.so.2", "/usr/bin/bash");
  pc.Wait(5);
  ASSERT_THAT(pc.alerts, SizeIs(1));
  EXPECT_THAT(pc.alerts[0].alert.facts.at(0), HasSubstr("by way of the loader"));
}

TEST_F(BaselineScorerTest, KnownProgramThatCannotBeReadAnyMoreIsNews) {
  for (int day = 0; day < 8; ++day) {
    pc.At(day, 12);
    RunTool();
  }
  pc.At(9, 12);
  pc.host.facts.erase("/home/ann/.x/tool");
  RunTool();
  ASSERT_THAT(pc.alerts, SizeIs(1));
  EXPECT_THAT(pc.alerts[0].alert.facts, Contains(HasSubstr("cannot be read and compared")));
}

TEST_F(BaselineScorerTest, ProgramThatOnceCouldNotBeReadIsNotExcusedLater) {
  for (int day = 0; day < 8; ++day) {
    pc.At(day, 12);
    if (day == 2) pc.host.facts.erase("/home/ann/.x/tool");
    RunTool();
    if (day == 2) pc.Put("/home/ann/.x/tool", "tool");
  }
  pc.At(9, 12);
  pc.Put("/home/ann/.x/tool", "another");
  RunTool();
  ASSERT_THAT(pc.alerts, SizeIs(1));
  EXPECT_THAT(pc.alerts[0].alert.facts, Contains("has changed since it was last seen"));
}

TEST_F(BaselineScorerTest, AllowOfContentsThatCouldNotBeHadFitsNothing) {
  Learn();
  pc.host.facts.erase("/home/ann/.x/tool");
  RunTool();
  ASSERT_THAT(pc.alerts, SizeIs(1));
  pc.scorer().Decide(pc.alerts[0].alert.code, false);
  pc.Wait(2 * ScoredHost::kDay);
  pc.Connect("/home/ann/.x/tool", "203.0.113.1", 4444);
  pc.Listen("/home/ann/.x/tool", 4444);
  pc.Wait(5);
  EXPECT_THAT(pc.alerts, SizeIs(2));
}

TEST_F(BaselineScorerTest, ContentsThatWereTooMuchToReadAreReadLater) {
  for (int day = 0; day < 8; ++day) {
    pc.At(day, 12);
    RunTool();
  }
  pc.At(9, 12);
  pc.Put("/home/ann/.x/tool", "another");
  pc.Put("/usr/bin/large", std::string(64 << 20, 'x'));
  pc.Start("/usr/bin/large", "/usr/bin/bash");
  RunTool();
  ASSERT_THAT(pc.alerts, SizeIs(1));
  EXPECT_THAT(pc.alerts[0].alert.facts, Contains("has changed since it was last seen"));
}

}  // namespace
}  // namespace zendrix::agent
