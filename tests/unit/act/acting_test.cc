// Every road to an action and every reason to refuse one, with twins in the places of the quarantine, the
// processes, the authority and the Agent.
#include "act/acting.h"

#include "unit/act/acting_fixture.h"

namespace zendrix::act {
namespace {

TEST_F(ActingTest, BlockTakesTheFileEndsTheProcessAndNotesIt) {
  const Answer answer = Block();
  EXPECT_TRUE(answer.done);
  EXPECT_EQ(answer.sentence, "took /tmp/dropper. Ended process: 4711.");
  EXPECT_FALSE(dropper_->lives);
  ASSERT_EQ(store_.entries.size(), 1U);
  EXPECT_EQ(store_.entries[0].manifest.alert, std::to_string(kMoment + 3));
  EXPECT_EQ(ParseBlocks(files_.Get(kRecordPath)).value(),
            (std::vector<BlockedProgram>{{kPath, sum_, clock_.NowUtc(), 1000}}));
}

TEST_F(ActingTest, BlockAsksTheAuthorityForTheRightActionAndCaller) {
  Block();
  ASSERT_EQ(authority_.questions.size(), 1U);
  EXPECT_EQ(authority_.questions[0].action, "com.korvessa.zendrix.block");
  EXPECT_EQ(authority_.questions[0].caller.name, ":1.5");
  EXPECT_TRUE(authority_.questions[0].caller.may_ask);
  EXPECT_EQ(store_.takes.at(0).second, 1000U);
}

TEST_F(ActingTest, AFileThatIsNotTheCallersAffairTakesAnAdministrator) {
  store_.files[kPath].others = true;
  EXPECT_TRUE(Block().done);
  EXPECT_EQ(authority_.questions.at(0).action, "com.korvessa.zendrix.block-other");
}

TEST_F(ActingTest, AFileThatBecomesAnAdministratorsAffairMeanwhileStays) {
  authority_.at_once.reset();
  Block();
  store_.files[kPath].others = true;
  authority_.questions.at(0).answer(Verdict::kYes);
  ExpectUntouched(last_, "is no longer the file that you were asked about");
}

TEST_F(ActingTest, TheUserReadsWhichFileAndProcessHeIsAskedAbout) {
  ASSERT_TRUE(Block().done);
  EXPECT_EQ(authority_.questions.at(0).about.path, "\"/tmp/dropper\"");
  EXPECT_EQ(authority_.questions.at(0).about.process, "4711");
  ASSERT_TRUE(Allow(store_.entries.at(0).name).done);
  EXPECT_EQ(authority_.questions.at(1).about.path, "\"/tmp/dropper\"");
  EXPECT_EQ(authority_.questions.at(1).about.process, "none");
}

TEST_F(ActingTest, ANameInTheQuestionIsCleanedAndShort) {
  const auto asked = [&](const std::string& path) {
    store_.files[path] = {sum_, {1, 70}};
    const BlockRequest request{{"Windows Folder", path, kMoment, kMoment + 3}, true};
    agent_.told.push_back(request.event);
    EXPECT_TRUE(Block(request, user_).done) << last_.sentence;
    EXPECT_EQ(authority_.questions.back().about.process, "none");
    return authority_.questions.back().about.path;
  };
  EXPECT_EQ(asked("/tmp/<b>a&\"b\nc"), "\"/tmp/?b?a?'b?c\"");
  EXPECT_EQ(asked("/tmp/\xE9"), "\"/tmp/\xC3\xA9\"") << "no broken UTF-8 for the bus";
  EXPECT_LE(asked("/tmp/" + std::string(2000, 'x')).size(), 120U);
}

TEST_F(ActingTest, AnEventWithoutAProcessOnlyMovesTheFile) {
  const BlockRequest folder{{"Windows Folder", kPath, kMoment, kMoment + 3}, true};
  agent_.told.push_back(folder.event);
  EXPECT_EQ(Block(folder, user_).sentence, "took /tmp/dropper.");
  EXPECT_TRUE(dropper_->lives);
}

TEST_F(ActingTest, WhatTheAgentDidNotTellIsRefusedBeforeAnybodyIsAsked) {
  for (const BlockRequest& other :
       {BlockRequest{{"Running Processes", "/tmp/other:4711", kMoment, kMoment + 3}, true},
        BlockRequest{{"Running Processes", "/tmp/dropper:4711", kMoment + 1, kMoment + 3}, true},
        BlockRequest{{"Running Processes", "/tmp/dropper:4711", kMoment, kMoment + 4}, true},
        BlockRequest{{"Windows Folder", "/tmp/dropper:4711", kMoment, kMoment + 3}, true}}) {
    ExpectUntouched(Block(other, user_), "The Agent has not told of this event");
  }
  agent_.readable = false;
  ExpectUntouched(Block(), "What the Agent wrote cannot be read.");
  EXPECT_TRUE(authority_.questions.empty());
  EXPECT_TRUE(store_.looks.empty());
}

TEST_F(ActingTest, WhatTheQuarantineRefusesIsRefusedBeforeAnybodyIsAsked) {
  store_.refuse_look = "\"/tmp/dropper\" is only a symbolic link to a file. Nothing was changed.";
  ExpectUntouched(Block(), "symbolic link");
  EXPECT_TRUE(authority_.questions.empty());
}

TEST_F(ActingTest, TheQuarantineLearnsWhetherThePageShowsTheEvent) {
  Block({shown_.event, false}, user_);
  EXPECT_FALSE(store_.looks.at(0).first.shown);
}

TEST_F(ActingTest, EachRefusalOfTheAuthorityHasItsSentence) {
  const std::pair<Verdict, const char*> refusals[] = {
      {Verdict::kNo, "You have no permission"},
      {Verdict::kDismissed, "The question for permission was closed."},
      {Verdict::kNobodyToAsk, "nobody here who can be asked"},
      {Verdict::kUnavailable, "The computer did not say"}};
  for (const auto& [verdict, sentence] : refusals) {
    authority_.at_once = verdict;
    ExpectUntouched(Block(), sentence);
    EXPECT_FALSE(acting_.IsBusy());
  }
}

TEST_F(ActingTest, AProcessOfAnotherFileIsRefused) {
  processes_.Start(kProcess, {1, 8}, kMoment - 10);
  dropper_ = &processes_.Start(kProcess, {2, 7}, kMoment - 10);
  ExpectUntouched(Block(), "is not the file");
}

TEST_F(ActingTest, AProcessInAContainerOfItsOwnIsRefused) {
  dropper_->elsewhere = true;
  ExpectUntouched(Block(), "is not the file");
}

TEST_F(ActingTest, AProcessThatBeganBehindTheEventIsNotEnded) {
  dropper_ = &processes_.Start(kProcess, kFile, kMoment + 10);
  EXPECT_EQ(Block().sentence, "took /tmp/dropper.");
  EXPECT_TRUE(dropper_->lives);
}

TEST_F(ActingTest, ANumberThatIsGivenAwayWhileTheUserAnswersHitsNobody) {
  authority_.at_once.reset();
  EXPECT_EQ(Block().sentence, "no reply");
  auto& other = processes_.Start(kProcess, kFile, kMoment - 1);
  authority_.questions.at(0).answer(Verdict::kYes);
  EXPECT_EQ(last_.sentence, "took /tmp/dropper.");
  EXPECT_TRUE(other.lives);
}

TEST_F(ActingTest, AProcessThatBecomesAnotherProgramMeanwhileIsToldAsGoingOn) {
  authority_.at_once.reset();
  Block();
  dropper_->file = {1, 1000};
  authority_.questions.at(0).answer(Verdict::kYes);
  EXPECT_FALSE(last_.done);
  EXPECT_EQ(last_.sentence, "took /tmp/dropper. Could not be ended and goes on: process 4711.");
  EXPECT_TRUE(dropper_->lives);
}

TEST_F(ActingTest, AProcessThatResistsIsToldAsGoingOn) {
  dropper_->resists = true;
  const Answer answer = Block();
  EXPECT_FALSE(answer.done);
  EXPECT_EQ(answer.sentence, "took /tmp/dropper. Could not be ended and goes on: process 4711.");
}

TEST_F(ActingTest, AFileThatIsReplacedWhileTheUserAnswersIsNotTaken) {
  authority_.at_once.reset();
  Block();
  store_.files[kPath] = {std::string(64, 'b'), {1, 8}};
  authority_.questions.at(0).answer(Verdict::kYes);
  ExpectUntouched(last_, "other contents");
}

TEST_F(ActingTest, AFullDiskLeavesEverythingAsItWas) {
  store_.refuse_take = "The disk did not take the change. Nothing was changed.";
  ExpectUntouched(Block(), "The disk did not take the change.");
}

TEST_F(ActingTest, ABlockThatCannotBeNotedIsDoneAndSaysSo) {
  files_.FailNext(platform::FileOp::kWriteAll, kRecordPath, platform::ErrorKind::kNoSpace,
                  platform::MemoryFiles::kAlways);
  const Answer answer = Block();
  EXPECT_TRUE(answer.done);
  EXPECT_NE(answer.sentence.find("could not be noted"), std::string::npos);
  ComeAgain();
  EXPECT_FALSE(Again().done);
}

// A helper that was killed behind the move left a program that would never have been blocked again by itself.
TEST_F(ActingTest, TheNoteIsThereBeforeTheFileMoves) {
  bool was_noted = false;
  store_.on_take = [&] {
    was_noted = BlockRecord(files_, clock_, kRecordPath).Find(kPath, sum_).has_value();
  };
  ASSERT_TRUE(Block().done);
  EXPECT_TRUE(was_noted);
}

TEST_F(ActingTest, ABlockThatFailsLeavesTheNoteOfTheOneBefore) {
  ASSERT_TRUE(Block().done);
  const auto before = record_.Find(kPath, sum_);
  ComeAgain();
  clock_.Sleep(5000);
  store_.refuse_take = "The disk did not take the change.";
  EXPECT_FALSE(Block(shown_, {":1.6", 1001, true}).done);
  EXPECT_EQ(record_.Find(kPath, sum_), before);
}

TEST_F(ActingTest, ACallerThatIsGoneGetsNothingDone) {
  authority_.at_once.reset();
  Block();
  EXPECT_TRUE(acting_.IsBusy());
  acting_.CallerGone(":1.6");
  EXPECT_TRUE(acting_.IsBusy());
  acting_.CallerGone(":1.5");
  EXPECT_FALSE(acting_.IsBusy());
  EXPECT_TRUE(authority_.questions.at(0).withdrawn);
  authority_.questions.at(0).answer(Verdict::kYes);
  ExpectUntouched(last_, "");
}

TEST_F(ActingTest, OneQuestionPerUserAndEightInAll) {
  authority_.at_once.reset();
  Block();
  EXPECT_NE(Block().sentence.find("waiting for an answer"), std::string::npos);
  EXPECT_NE(Block(shown_, {":1.6", 1000, true}).sentence.find("waiting"), std::string::npos)
      << "by another connection of his";
  for (std::uint32_t i = 1; i < Acting::kMostPending; ++i)
    EXPECT_EQ(Block(shown_, {":2." + std::to_string(i), 1000 + i, true}).sentence, "no reply");
  EXPECT_NE(Block(shown_, {":3.1", 2000, true}).sentence.find("waiting"), std::string::npos);
  EXPECT_NE(Allow("x").sentence.find("waiting"), std::string::npos);
  EXPECT_EQ(authority_.questions.size(), Acting::kMostPending);
}

TEST_F(ActingTest, TextsBeyondAnythingTheAgentWritesAreRefused) {
  BlockRequest request = shown_;
  request.event.description = std::string(Acting::kLongestText + 1, 'x');
  EXPECT_NE(Block(request, user_).sentence.find("longer than any"), std::string::npos);
  request.event.description.pop_back();
  EXPECT_NE(Block(request, user_).sentence.find("has not told"), std::string::npos);
}

TEST_F(ActingTest, SentencesFitTheConsolesBuffer) {
  store_.refuse_look = "\"" + std::string(2000, 'x') + "\" stays. Nothing was changed.";
  EXPECT_EQ(Block().sentence.size(), 255U);
  EXPECT_TRUE(Block().sentence.ends_with("stays. Nothing was changed."));
}

// The way back.

TEST_F(ActingTest, AllowBringsBackWhatIsInQuarantineAndForgetsTheBlock) {
  ASSERT_TRUE(Block().done);
  const std::string entry = store_.entries.at(0).name;
  EXPECT_TRUE(Allow(entry).done);
  EXPECT_EQ(authority_.questions.at(1).action, "com.korvessa.zendrix.allow");
  EXPECT_TRUE(store_.files.contains(kPath));
  EXPECT_FALSE(record_.Find(kPath, sum_).has_value());
  EXPECT_FALSE(Again().done);
}

TEST_F(ActingTest, AllowOfWhatIsNotInTheListAsksNobody) {
  ASSERT_TRUE(Block().done);
  EXPECT_NE(Allow("../" + store_.entries.at(0).name).sentence.find("no such entry"), std::string::npos);
  EXPECT_EQ(authority_.questions.size(), 1U);
}

TEST_F(ActingTest, AllowWithoutPermissionChangesNothing) {
  ASSERT_TRUE(Block().done);
  authority_.at_once = Verdict::kDismissed;
  EXPECT_NE(Allow(store_.entries.at(0).name).sentence.find("was closed"), std::string::npos);
  EXPECT_EQ(store_.entries.size(), 1U);
  EXPECT_TRUE(record_.Find(kPath, sum_).has_value());
}

TEST_F(ActingTest, AllowThatTheQuarantineRefusesLeavesTheBlock) {
  ASSERT_TRUE(Block().done);
  store_.refuse_restore = "There is another file in its place.";
  EXPECT_FALSE(Allow(store_.entries.at(0).name).done);
  EXPECT_TRUE(record_.Find(kPath, sum_).has_value());
}

TEST_F(ActingTest, AllowThatCannotBeNotedBringsNothingBack) {
  ASSERT_TRUE(Block().done);
  files_.FailNext(platform::FileOp::kWriteAll, kRecordPath, platform::ErrorKind::kNoSpace);
  const Answer answer = Allow(store_.entries.at(0).name);
  EXPECT_NE(answer.sentence.find("could not be noted"), std::string::npos);
  EXPECT_EQ(store_.entries.size(), 1U);
  EXPECT_TRUE(record_.Find(kPath, sum_).has_value());
}

TEST_F(ActingTest, ADamagedStoreIsToldInListAndAllow) {
  store_.refuse_list = "The Quarantine folder of Zendrix cannot be used. Nothing was changed.";
  EXPECT_FALSE(acting_.List(root_).done);
  EXPECT_EQ(acting_.List(root_).sentence, store_.refuse_list);
  EXPECT_EQ(Allow(std::string(32, '0')).sentence, store_.refuse_list);
}

TEST_F(ActingTest, ListHasALineForEachEntry) {
  EXPECT_TRUE(acting_.List(root_).done);
  EXPECT_EQ(acting_.List(root_).sentence, "");
  ASSERT_TRUE(Block().done);
  EXPECT_EQ(acting_.List(root_).sentence, store_.entries[0].name + "\t0\t" + sum_ + "\t0\t0\t" +
                                              std::to_string(kMoment + 3) + "\t/tmp/dropper\n");
}

TEST_F(ActingTest, OrdinaryUsersSeeInTheListOnlyWhatIsTheirs) {
  store_.owner = 1003;
  ASSERT_TRUE(Block().done);
  for (const std::uint32_t user : {0U, 990U, 1007U, 1003U, 1000U})
    EXPECT_NE(acting_.List({":1.7", user, false}).sentence, "") << user;
  const Answer stranger = acting_.List({":1.7", 1004, false});
  EXPECT_TRUE(stranger.done);
  EXPECT_EQ(stranger.sentence, "");
}

// Again, by itself.

TEST_F(ActingTest, TheSamePathWithTheSameContentsIsBlockedAgainWithoutAsking) {
  ASSERT_TRUE(Block().done);
  ComeAgain();
  const Answer answer = Again();
  EXPECT_TRUE(answer.done) << answer.sentence;
  EXPECT_EQ(answer.sentence, "took /tmp/dropper. Ended process: 4711.");
  EXPECT_FALSE(dropper_->lives);
  EXPECT_EQ(authority_.questions.size(), 1U);
  EXPECT_EQ(store_.takes.back().first.sha256, sum_);
  EXPECT_EQ(store_.takes.back().second, 1000U);
}

TEST_F(ActingTest, OtherContentsAtTheSamePathAreNotBlockedAgain) {
  ASSERT_TRUE(Block().done);
  ComeAgain();
  store_.files[kPath].sha256 = std::string(64, 'b');
  EXPECT_FALSE(Again().done);                             // by the Agent's mistake
  EXPECT_FALSE(Again(kPath, std::string(64, 'b')).done);  // as it is
  EXPECT_TRUE(store_.files.contains(kPath));
  EXPECT_TRUE(dropper_->lives);
}

TEST_F(ActingTest, TheSameContentsAtAnotherPathAreNotBlockedAgain) {
  ASSERT_TRUE(Block().done);
  store_.files["/tmp/copy"] = {sum_, {1, 9}};
  EXPECT_NE(Again("/tmp/copy").sentence.find("was not blocked with these contents"), std::string::npos);
  EXPECT_TRUE(store_.files.contains("/tmp/copy"));
}

TEST_F(ActingTest, APathThatMeansAnotherFileByNowIsNotBlockedAgain) {
  ASSERT_TRUE(Block().done);
  store_.files["/tmp/dropper in another spelling"] = {sum_, {1, 9}};
  store_.other_names[kPath] = "/tmp/dropper in another spelling";
  EXPECT_NE(Again().sentence.find("is not what was blocked"), std::string::npos);
  EXPECT_TRUE(store_.files.contains("/tmp/dropper in another spelling"));
}

TEST_F(ActingTest, WithoutABlockThatWasAuthorisedNothingIsBlockedAgain) {
  EXPECT_FALSE(Again().done);
  authority_.at_once = Verdict::kNo;
  Block();
  EXPECT_FALSE(Again().done);
  EXPECT_TRUE(dropper_->lives);
}

TEST_F(ActingTest, OnlyTheAgentMayBlockAgain) {
  ASSERT_TRUE(Block().done);
  ComeAgain();
  for (const std::uint32_t other : {0U, 1000U, kAgentUser + 1}) {
    const Answer answer = acting_.BlockAgain({":1.5", other, true}, kPath, sum_, {kProcess});
    EXPECT_EQ(answer.sentence, "Only the Agent may ask for this.");
  }
  EXPECT_TRUE(store_.files.contains(kPath));
}

TEST_F(ActingTest, OnlyProcessesOfTheBlockedFileAreEnded) {
  ASSERT_TRUE(Block().done);
  ComeAgain();
  auto& innocent = processes_.Start(12, {1, 500}, 0);
  EXPECT_TRUE(acting_.BlockAgain(agent_caller_, kPath, sum_, {12, kProcess, 13}).done);
  EXPECT_TRUE(innocent.lives);
  EXPECT_FALSE(dropper_->lives);
}

TEST_F(ActingTest, ABlockAgainThatLeavesAProcessIsNoSuccess) {
  ASSERT_TRUE(Block().done);
  ComeAgain();
  dropper_->resists = true;
  EXPECT_FALSE(Again().done);
}

TEST_F(ActingTest, AllProcessesAreEndedAtOnceAndWaitedForTogether) {
  ASSERT_TRUE(Block().done);
  ComeAgain();
  dropper_->resists = true;
  std::vector<MemoryProcesses::Process*> more;
  std::vector<pid_t> numbers = {kProcess};
  for (pid_t number = 100; number < 108; ++number) {
    more.push_back(&processes_.Start(number, {1, 8}, 0));
    more.back()->clock = &clock_;
    more.back()->resists = true;
    numbers.push_back(number);
  }
  dropper_->clock = &clock_;
  const std::int64_t before_ms = clock_.MonotonicMs();
  EXPECT_FALSE(acting_.BlockAgain(agent_caller_, kPath, sum_, numbers).done);
  EXPECT_EQ(clock_.MonotonicMs() - before_ms, 2000) << "one wait for all";
}

TEST_F(ActingTest, WhatNamesNoProgramIsRefused) {
  ASSERT_TRUE(Block().done);
  ComeAgain();
  EXPECT_FALSE(Again(kPath, "a").done);
  EXPECT_FALSE(Again(std::string(Acting::kLongestText + 1, '/')).done);
  EXPECT_FALSE(
      acting_.BlockAgain(agent_caller_, kPath, sum_, std::vector<pid_t>(Acting::kMostProcesses + 1, kProcess))
          .done);
  EXPECT_TRUE(store_.files.contains(kPath));
}

TEST_F(ActingTest, ADamagedRecordBlocksNothing) {
  ASSERT_TRUE(Block().done);
  ComeAgain();
  std::string text = files_.Get(kRecordPath);
  text[30] ^= 1;
  files_.Put(kRecordPath, text);
  BlockRecord anew(files_, clock_, kRecordPath);
  Acting acting({agent_, store_, processes_, authority_, anew, decisions_, files_, kMailPath, clock_,
                 kAgentUser, administrators_});
  EXPECT_FALSE(acting.BlockAgain(agent_caller_, kPath, sum_, {kProcess}).done);
  EXPECT_TRUE(store_.files.contains(kPath));
  EXPECT_TRUE(files_.Has(std::string(kRecordPath) + ".damaged-" + std::to_string(clock_.NowUtc())));
}

}  // namespace
}  // namespace zendrix::act
