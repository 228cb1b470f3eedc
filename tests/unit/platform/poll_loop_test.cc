#include "platform/linux/poll_loop.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <ctime>

#include "child_process.h"
#include "platform/linux/linux_clock.h"
#include "platform/linux/linux_host_info.h"
#include "platform/linux/linux_process.h"
#include "support/environment.h"
#include "support/temporary_folder.h"

namespace zendrix::platform {
namespace {

struct Pipe {
  Pipe() { EXPECT_EQ(pipe(ends), 0); }
  ~Pipe() {
    close(ends[0]);
    close(ends[1]);
  }
  void Write(char c) const { EXPECT_EQ(write(ends[1], &c, 1), 1); }
  char Read() const {
    char c = 0;
    EXPECT_EQ(read(ends[0], &c, 1), 1);
    return c;
  }
  int ends[2];
};

TEST(PollLoopTest, TimersFireInTheirOrderAndNotBeforeTheirTime) {
  PollLoop loop;
  LinuxClock clock;
  const std::int64_t start = clock.MonotonicMs();
  std::string order;
  const auto late = loop.MakeTimer([&] {
    order += 'l';
    loop.Quit();
  });
  const auto early = loop.MakeTimer([&] { order += 'e'; });
  late->StartOnce(30);
  early->StartOnce(10);
  loop.Run();
  EXPECT_EQ(order, "el");
  EXPECT_GE(clock.MonotonicMs() - start, 30);
  EXPECT_FALSE(early->Running());
}

TEST(PollLoopTest, RepeatingTimerGoesOnUntilItIsStopped) {
  PollLoop loop;
  int ticks = 0;
  std::unique_ptr<Timer> timer;
  timer = loop.MakeTimer([&] {
    if (++ticks < 4) return;
    timer.reset();
    loop.Quit();
  });
  timer->Start(2);
  loop.Run();
  EXPECT_EQ(ticks, 4);
}

TEST(PollLoopTest, ProcessMessagesReturnsAtOnceWhenNothingWaits) {
  PollLoop loop;
  int ticks = 0;
  const auto timer = loop.MakeTimer([&] { ++ticks; });
  timer->StartOnce(1000000);
  loop.ProcessMessages();
  EXPECT_EQ(ticks, 0);
  timer->StartOnce(0);
  loop.ProcessMessages();
  loop.ProcessMessages();
  EXPECT_EQ(ticks, 1);
}

TEST(PollLoopTest, WaitForMessagesEndsWithADueTimerOrWithItsTime) {
  PollLoop loop;
  int ticks = 0;
  const auto timer = loop.MakeTimer([&] { ++ticks; });
  for (const int delay : {0, 1}) {
    timer->StartOnce(delay);
    // The longest is far beyond what the test may take.
    while (timer->Running()) loop.WaitForMessages(1000000);
  }
  EXPECT_EQ(ticks, 2);
  loop.WaitForMessages(1);
  EXPECT_EQ(ticks, 2);
}

TEST(PollLoopTest, ReadableDescriptorsAreAnnouncedUntilTheyAreNotWatched) {
  PollLoop loop;
  const Pipe pipe;
  std::string heard;
  loop.WatchReadable(pipe.ends[0], [&] {
    heard += pipe.Read();
    if (heard.size() == 2) loop.Quit();
  });
  loop.ProcessMessages();
  EXPECT_EQ(heard, "");
  pipe.Write('a');
  pipe.Write('b');
  loop.Run();
  EXPECT_EQ(heard, "ab");
  loop.StopWatching(pipe.ends[0]);
  pipe.Write('c');
  loop.ProcessMessages();
  EXPECT_EQ(heard, "ab");
}

TEST(PollLoopTest, HandlerMayStopTheWatchingOfItselfAndOthers) {
  PollLoop loop;
  const Pipe one;
  const Pipe two;
  int calls = 0;
  const auto only_once = [&] {
    ++calls;
    loop.StopWatching(one.ends[0]);
    loop.StopWatching(two.ends[0]);
  };
  loop.WatchReadable(one.ends[0], only_once);
  loop.WatchReadable(two.ends[0], only_once);
  one.Write('x');
  two.Write('x');
  loop.ProcessMessages();
  loop.ProcessMessages();
  EXPECT_EQ(calls, 1);
}

TEST(PollLoopTest, DescriptorThatWasClosedDoesNotKeepTheLoopBusy) {
  PollLoop loop;
  int calls = 0;
  {
    const Pipe pipe;
    loop.WatchReadable(pipe.ends[0], [&] { ++calls; });
  }
  loop.ProcessMessages();
  const auto timer = loop.MakeTimer([&] { loop.Quit(); });
  timer->StartOnce(5);
  loop.Run();
  EXPECT_EQ(calls, 0);
}

TEST(PollLoopTest, QuitBeforeRunEndsItAtOnceAndOnlyOnce) {
  PollLoop loop;
  loop.Quit();
  loop.Run();
  int ticks = 0;
  const auto timer = loop.MakeTimer([&] {
    ++ticks;
    loop.Quit();
  });
  timer->StartOnce(1);
  loop.Run();
  EXPECT_EQ(ticks, 1);
}

PollLoop* interrupted = nullptr;

TEST(PollLoopTest, SignalHandlerMayQuit) {
  test::ChildProcess child([](const test::ChildProcess::Line& parent) {
    PollLoop loop;
    interrupted = &loop;
    signal(SIGTERM, [](int) { interrupted->Quit(); });
    parent.Tell('r');
    loop.Run();
    return 7;
  });
  ASSERT_EQ(child.Hear(), 'r');
  kill(child.pid(), SIGTERM);
  EXPECT_EQ(child.Wait(), 7);
}

TEST(LinuxClockTest, ClocksGoForwardAndSleepIsAsLongAsAsked) {
  LinuxClock clock;
  const std::int64_t before = time(nullptr);
  const std::int64_t now = clock.NowUtc();
  EXPECT_GE(now, before);
  EXPECT_LE(now, static_cast<std::int64_t>(time(nullptr)) + 1);
  const std::int64_t start = clock.MonotonicMs();
  clock.Sleep(5);
  EXPECT_GE(clock.MonotonicMs() - start, 5);
  clock.Sleep(0);
  clock.Sleep(-5);
}

TEST(LinuxProcessTest, EndsWithItsStatusAfterTheOutputIsWritten) {
  const test::TemporaryFolder folder;
  test::ChildProcess child([&](const auto&) -> int {
    if (!freopen(folder.Path("out").c_str(), "w", stdout)) return 1;
    std::fputs("last words", stdout);
    LinuxProcess().End(42);
  });
  EXPECT_EQ(child.Wait(), 42);
  EXPECT_EQ(folder.Read("out"), "last words");
}

TEST(LinuxHostInfoTest, ComputerNameIsTheHostName) {
  char name[256] = {};
  ASSERT_EQ(gethostname(name, sizeof name - 1), 0);
  EXPECT_EQ(LinuxHostInfo().ComputerName(), name);
}

TEST(LinuxHostInfoTest, RootIsTheEffectiveUserZero) {
  EXPECT_EQ(LinuxHostInfo().RunsAsRoot(), geteuid() == 0);
  test::ChildProcess child([](const auto&) -> int {
    if (geteuid() == 0 && seteuid(65534) != 0) return 2;
    return LinuxHostInfo().RunsAsRoot() ? 1 : 0;
  });
  EXPECT_EQ(child.Wait(), 0);
}

TEST(LinuxHostInfoTest, SystemInformationToolIsTheFirstOfTheListOnPath) {
  const test::TemporaryFolder folder;
  const test::EnvironmentVariable path("PATH", "relative:" + folder.path());
  LinuxHostInfo host;
  EXPECT_EQ(host.SystemInformationTool(), "");
  folder.Write("hardinfo", "not executable");
  EXPECT_EQ(host.SystemInformationTool(), "");
  for (const char* name : {"lshw-gtk", "kinfocenter"}) {
    folder.Write(name, "#!/bin/sh\n");
    ASSERT_EQ(chmod(folder.Path(name).c_str(), 0755), 0);
  }
  EXPECT_EQ(host.SystemInformationTool(), folder.Path("kinfocenter"));
}

}  // namespace
}  // namespace zendrix::platform
