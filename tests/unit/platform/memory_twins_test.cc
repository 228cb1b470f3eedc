#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "platform/memory/memory_platform.h"

namespace zendrix::platform {
namespace {

using ::testing::ElementsAre;

TEST(FakeClockTest, BothClocksAdvanceTogether) {
  FakeClock clock;
  clock.SetUtc(-1);
  EXPECT_EQ(clock.NowUtc(), -1);
  clock.Advance(999);
  EXPECT_EQ(clock.NowUtc(), -1);
  clock.Advance(1);
  EXPECT_EQ(clock.NowUtc(), 0);
  EXPECT_EQ(clock.MonotonicMs(), 1000);
  clock.Sleep(800);
  EXPECT_EQ(clock.MonotonicMs(), 1800);
  EXPECT_EQ(clock.SleptMs(), 800);
}

TEST(FakeTimersTest, RepeatingTimerFiresAtEachInterval) {
  MemoryPlatform platform;
  std::vector<std::int64_t> moments;
  const auto timer = platform.timers.MakeTimer([&] { moments.push_back(platform.clock.MonotonicMs()); });
  timer->Start(1000);
  platform.timers.Advance(999);
  EXPECT_TRUE(moments.empty());
  platform.timers.Advance(2001);
  EXPECT_THAT(moments, ElementsAre(1000, 2000, 3000));
  timer->Stop();
  platform.timers.Advance(5000);
  EXPECT_EQ(moments.size(), 3U);
  EXPECT_EQ(platform.clock.MonotonicMs(), 8000);
}

TEST(FakeTimersTest, FifteenMinutesRunInAnInstant) {
  MemoryPlatform platform;
  int ticks = 0;
  const auto timer = platform.timers.MakeTimer([&] { ++ticks; });
  timer->Start(1000);
  platform.timers.Advance(15 * 60 * 1000);
  EXPECT_EQ(ticks, 900);
}

TEST(FakeTimersTest, OneShotFiresOnceAndCanArmItselfAgain) {
  MemoryPlatform platform;
  int ticks = 0;
  std::unique_ptr<Timer> timer;
  timer = platform.timers.MakeTimer([&] {
    EXPECT_FALSE(timer->Running());
    if (++ticks < 3) timer->StartOnce(2500);
  });
  timer->StartOnce(2500);
  EXPECT_TRUE(timer->Running());
  platform.timers.Advance(60000);
  EXPECT_EQ(ticks, 3);
  EXPECT_EQ(platform.timers.RunningTimers(), 0);
}

TEST(FakeTimersTest, TimersFireInTheOrderOfTheirMoments) {
  MemoryPlatform platform;
  std::string order;
  const auto slow = platform.timers.MakeTimer([&] { order += 's'; });
  const auto quick = platform.timers.MakeTimer([&] { order += 'q'; });
  slow->Start(300);
  quick->Start(100);
  platform.timers.Advance(600);
  EXPECT_EQ(order, "qqsqqqsq");
}

TEST(FakeTimersTest, DestroyedTimerNeverFires) {
  MemoryPlatform platform;
  bool fired = false;
  auto victim = platform.timers.MakeTimer([&] { fired = true; });
  const auto killer = platform.timers.MakeTimer([&] { victim.reset(); });
  killer->StartOnce(100);
  victim->StartOnce(100);
  platform.timers.Advance(1000);
  EXPECT_FALSE(fired);
}

TEST(FakeTimersTest, TickMayDestroyItsOwnTimer) {
  MemoryPlatform platform;
  int ticks = 0;
  std::unique_ptr<Timer> timer;
  timer = platform.timers.MakeTimer([&] {
    timer.reset();
    ++ticks;
  });
  timer->Start(10);
  platform.timers.Advance(100);
  EXPECT_EQ(ticks, 1);
}

TEST(FakeTimersTest, TicksMissedInASleepAreNotMadeUpFor) {
  MemoryPlatform platform;
  int ticks = 0;
  const auto timer = platform.timers.MakeTimer([&] { ++ticks; });
  timer->Start(1000);
  platform.clock.Sleep(10500);
  EXPECT_EQ(ticks, 0);
  platform.timers.ProcessMessages();
  EXPECT_EQ(ticks, 1);
  platform.timers.Advance(1000);
  EXPECT_EQ(ticks, 2);
}

TEST(FakeTimersTest, ProcessMessagesRunsTheQueueAndWhatIsDue) {
  MemoryPlatform platform;
  std::string order;
  const auto timer = platform.timers.MakeTimer([&] { order += 't'; });
  timer->StartOnce(0);
  platform.timers.Post([&] {
    order += 'p';
    platform.timers.Post([&] { order += 'q'; });
  });
  EXPECT_EQ(order, "");
  platform.timers.ProcessMessages();
  EXPECT_EQ(order, "pt");
  platform.timers.ProcessMessages();
  EXPECT_EQ(order, "ptq");
  EXPECT_EQ(platform.timers.ProcessMessagesCount(), 2);
}

TEST(FakeTimersTest, WhatWasPostedRunsBeforeTimePassesAndBehindEachTick) {
  MemoryPlatform platform;
  std::string order;
  const auto timer = platform.timers.MakeTimer([&] {
    order += 't';
    platform.timers.Post([&] { order += 'q' + std::to_string(platform.clock.MonotonicMs()); });
  });
  timer->Start(100);
  platform.timers.Post([&] { order += 'p' + std::to_string(platform.clock.MonotonicMs()); });
  platform.timers.Advance(200);
  EXPECT_EQ(order, "p0tq100tq200");
  platform.timers.Post([&] { order += '-'; });
  platform.timers.Advance(0);
  EXPECT_EQ(order, "p0tq100tq200-");
}

TEST(FakeTimersTest, TickMayReEnterTheLoop) {
  MemoryPlatform platform;
  std::string order;
  const auto inner = platform.timers.MakeTimer([&] { order += 'i'; });
  const auto outer = platform.timers.MakeTimer([&] {
    order += '(';
    platform.timers.Advance(500);
    order += ')';
  });
  outer->StartOnce(100);
  inner->Start(200);
  platform.timers.Advance(1000);
  EXPECT_EQ(order, "(iii)ii");
  EXPECT_EQ(platform.clock.MonotonicMs(), 1000);
}

TEST(ScriptedBoxesTest, QuestionsTakeTheirAnswersInOrderAndOkBoxesTakeNone) {
  MemoryPlatform platform;
  platform.message_boxes.Answer(BoxAnswer::kYes);
  platform.message_boxes.Answer(BoxAnswer::kNo);
  EXPECT_EQ(platform.message_boxes.Show({"t", "one", BoxIcon::kQuestion, BoxButtons::kYesNo}),
            BoxAnswer::kYes);
  EXPECT_EQ(platform.message_boxes.Show({"t", "told", BoxIcon::kStop, BoxButtons::kOk}), BoxAnswer::kOk);
  EXPECT_EQ(platform.message_boxes.Show({"t", "two", BoxIcon::kQuestion, BoxButtons::kYesNo}),
            BoxAnswer::kNo);
  EXPECT_THAT(platform.message_boxes.Texts(), ElementsAre("one", "told", "two"));
  EXPECT_EQ(platform.message_boxes.AnswersLeft(), 0U);
}

TEST(ScriptedBoxesTest, UnscriptedQuestionFailsTheTest) {
  MemoryPlatform platform;
  const BoxRequest question{"t", "sure?", BoxIcon::kQuestion, BoxButtons::kYesNo};
  EXPECT_THROW(platform.message_boxes.Show(question), std::logic_error);
  std::string seen;
  platform.message_boxes.on_unscripted = [&](const BoxRequest& request) { seen = request.text; };
  EXPECT_EQ(platform.message_boxes.Show(question), BoxAnswer::kNo);
  EXPECT_EQ(seen, "sure?");
}

TEST(ScriptedBoxesTest, TimersGoOnWhileABoxIsOpen) {
  MemoryPlatform platform;
  int ticks = 0;
  const auto timer = platform.timers.MakeTimer([&] {
    // A box under a box: the outer one is still open.
    if (++ticks == 1) platform.message_boxes.Show({"t", "inner", BoxIcon::kNone, BoxButtons::kOk});
  });
  timer->Start(1000);
  platform.message_boxes.StayOpenFor(2500);
  platform.message_boxes.Show({"t", "outer", BoxIcon::kNone, BoxButtons::kOk});
  EXPECT_EQ(ticks, 3);
  EXPECT_THAT(platform.message_boxes.Texts(), ElementsAre("outer", "inner"));
}

TEST(ScriptedFileDialogsTest, GivesTheChoicesThenCancels) {
  ScriptedFileDialogs dialogs;
  dialogs.Choose("/a");
  EXPECT_EQ(dialogs.Choose(FileRequest{"Open", "/", "", "", false}), "/a");
  EXPECT_EQ(dialogs.Choose(FileRequest{"Save", "/", "", "b", true}), "");
  ASSERT_EQ(dialogs.shown.size(), 2U);
  EXPECT_TRUE(dialogs.shown[1].saving);
}

TEST(ScriptedColourDialogsTest, GivesTheChoicesThenCancels) {
  ScriptedColourDialogs dialogs;
  int open = 0;
  dialogs.while_open = [&] { ++open; };
  dialogs.Choose(0x123456);
  dialogs.Choose(std::nullopt);
  dialogs.Choose(0);
  EXPECT_EQ(dialogs.Choose(ColourRequest{"Color", 7}), 0x123456U);
  EXPECT_EQ(dialogs.Choose(ColourRequest{}), std::nullopt);
  EXPECT_EQ(dialogs.Choose(ColourRequest{}), 0U);
  EXPECT_EQ(dialogs.Choose(ColourRequest{}), std::nullopt);
  ASSERT_EQ(dialogs.shown.size(), 4U);
  EXPECT_EQ(dialogs.shown[0].title, "Color");
  EXPECT_EQ(dialogs.shown[0].colour, 7U);
  EXPECT_EQ(open, 4);
}

TEST(FakeServiceManagerTest, StatesFollowTheMethods) {
  FakeServiceManager services;
  EXPECT_EQ(services.Properties("ZENDRIX").error().kind, ErrorKind::kNotFound);
  EXPECT_EQ(services.Run("ZENDRIX", ServiceMethod::kStart).error().kind, ErrorKind::kNotFound);
  services.SetStopped("ZENDRIX");
  EXPECT_EQ(services.Run("zendrix", ServiceMethod::kStop).value(), 6);
  EXPECT_EQ(services.Run("ZENDRIX", ServiceMethod::kStart).value(), 0);
  EXPECT_EQ(services.Properties("ZENDRIX").value().state, "Running");
  EXPECT_EQ(services.Run("ZENDRIX", ServiceMethod::kStart).value(), 10);
  services.Script(ServiceMethod::kStop, 7);
  EXPECT_EQ(services.Run("ZENDRIX", ServiceMethod::kStop).value(), 7);
  EXPECT_EQ(services.Properties("ZENDRIX").value().state, "Running");
  EXPECT_EQ(services.Run("ZENDRIX", ServiceMethod::kStop).value(), 0);
  services.At("ZENDRIX").start_mode = "Disabled";
  EXPECT_EQ(services.Properties("ZENDRIX").value().start_mode, "Disabled");
  services.unavailable = true;
  EXPECT_EQ(services.Properties("ZENDRIX").error().kind, ErrorKind::kUnavailable);
  EXPECT_EQ(services.runs.size(), 6U);
}

TEST(MemoryInstanceLockTest, TwoProcessesContendForOneName) {
  const auto machine = std::make_shared<MemoryInstanceRegistry>();
  MemoryPlatform second(machine);
  {
    MemoryPlatform first(machine);
    EXPECT_TRUE(first.instance_lock.Acquire("Global\\zendrix"));
    EXPECT_TRUE(first.instance_lock.Acquire("Global\\zendrix"));
    EXPECT_FALSE(second.instance_lock.Acquire("Global\\zendrix"));
    int forward = 0;
    first.instance_lock.OnAskedToComeForward([&] { ++forward; });
    second.instance_lock.AskToComeForward("Global\\zendrix");
    EXPECT_EQ(forward, 0);
    first.timers.ProcessMessages();
    EXPECT_EQ(forward, 1);
    EXPECT_EQ(first.instance_lock.asked(), 1);
  }
  EXPECT_TRUE(second.instance_lock.Acquire("Global\\zendrix"));
  second.instance_lock.Release();
  EXPECT_EQ(second.instance_lock.held(), "");
}

TEST(RecordingShellTest, WritesDownAndRefusesWhenTold) {
  RecordingShell shell;
  EXPECT_TRUE(shell.Open("http://x/").ok());
  std::vector<std::string> seen;
  shell.on_run = [&](const std::vector<std::string>& arguments) { seen = arguments; };
  shell.fail = ErrorKind::kNotFound;
  EXPECT_EQ(shell.RunHidden({"NET", "START", "ZENDRIX"}).error().kind, ErrorKind::kNotFound);
  EXPECT_THAT(seen, ElementsAre("NET", "START", "ZENDRIX"));
  EXPECT_THAT(shell.opened, ElementsAre("http://x/"));
  EXPECT_EQ(shell.runs.size(), 1U);
  bool started = false;
  shell.on_installer = [&] { started = true; };
  EXPECT_FALSE(shell.OpenInstaller("/p/x.exe", "/silent").ok());
  EXPECT_TRUE(started);
  EXPECT_THAT(shell.installers, ElementsAre(std::pair<std::string, std::string>("/p/x.exe", "/silent")));
}

TEST(ThrowingProcessTest, EndIsAnExceptionOfItsOwn) {
  MemoryPlatform platform;
  const Seams seams = platform.seams();
  EXPECT_THROW(seams.process.End(3), ProcessEnded);
  EXPECT_EQ(platform.process.ended, 3);
}

TEST(MemoryPlatformTest, SeamsAreTheMembers) {
  MemoryPlatform platform;
  const Seams seams = platform.seams();
  EXPECT_EQ(&seams.files, &platform.files);
  EXPECT_EQ(static_cast<MessageLoop*>(&platform.timers), &seams.loop);
  EXPECT_EQ(static_cast<TimerMaker*>(&platform.timers), &seams.timers);
  EXPECT_EQ(seams.locale.Current().short_date, "MM/dd/yyyy");
  EXPECT_EQ(seams.host.ComputerName(), "TESTHOST");
}

}  // namespace
}  // namespace zendrix::platform
