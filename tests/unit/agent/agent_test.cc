#include "agent/agent.h"

#include <utility>

#include "unit/agent/agent_fixture.h"

namespace zendrix::agent {
namespace {

class AgentTest : public AgentFixture {
 protected:
  AgentTest() {
    host.texts["/etc/passwd"] = "root:x:0:0::/root:/bin/bash\n";
    host.texts["/proc/meminfo"] = "MemTotal: 1000 kB\nMemAvailable: 900 kB\n";
    host.AddProcess(10, "sshd", "/usr/sbin/sshd");
  }

  // Runs with `act` called before each rest; it gets the number of seconds since the start.
  int Run(std::function<void(std::int64_t)> act = {}) {
    const std::int64_t start = clock.MonotonicMs();
    std::int64_t told = -1;
    AgentParts parts = Parts(files);
    parts.stop_requested = [&, act, start] {
      const std::int64_t seconds = (clock.MonotonicMs() - start) / 1000;
      if (act && seconds > told) act(told = seconds);
      return stop;
    };
    return Agent(parts, options).Run();
  }

  bool stop = false;
};

TEST_F(AgentTest, OneLookWritesASession) {
  options.once = true;
  EXPECT_EQ(Run(), 0);
  EXPECT_EQ(files.Get(kEvents),
            "1700000000,vm,42,System|0|0|Begin Session Refresh.|observed|SY,900,1|0\r\n"
            "1700000000,vm,42,Monitoring Agent|1|0|System Users - a look every 5 s * "
            "Logged-On Users - a look every 5 s * Autorun Registry - a look every 5 s * "
            "Windows Folder - a look every 5 s * "
            "Running Processes - a look every 5 s - programs of other users cannot be told * "
            "Listening Ports - a look every 5 s - programs of other users cannot be told * "
            "TCP Connections - a look every 5 s - programs of other users cannot be told * "
            "Memory Utilization - a look every 5 s * Network Transmission Rate - a look every 5 s * "
            "System (kernel modules) - not watched - the list of loaded modules cannot be read * "
            "System (failed logins) - not watched - the record of failed logins cannot be seen"
            "|observed|MA,950,1|0\r\n"
            "1700000000,vm,42,System Users|1|0|root|observed|SU,500,1|0\r\n"
            "1700000000,vm,42,Running Processes|1|0|/usr/sbin/sshd:10|observed|RP,100,1|0\r\n"
            "1700000000,vm,42,Memory Utilization|10|0|10.00:sshd|observed|MU,700,1|0\r\n");
  EXPECT_EQ(errors.str(), "");
}

// A console that started an Agent on a full disk said that the computer is watched.
// A trigger that fires when the test says so.
class ScriptedTrigger : public PressureTrigger {
 public:
  explicit ScriptedTrigger(bool& fires) : fires_(fires) {}
  platform::Result<bool> Fired() override { return std::exchange(fires_, false); }

 private:
  bool& fires_;
};

TEST_F(AgentTest, MemoryThatRunsShortIsLookedAtInThatMoment) {
  bool fires = false;
  Numbers numbers{std::unique_ptr<PressureTrigger>(std::make_unique<ScriptedTrigger>(fires)),
                  platform::Error{platform::ErrorKind::kOther, "none here"}};
  options.interval_seconds = 600;
  AgentParts parts = Parts(files);
  parts.numbers = &numbers;
  int turns = 0;
  parts.stop_requested = [&] {
    if (++turns == 100) {
      host.texts["/proc/meminfo"] = "MemTotal: 1000 kB\nMemAvailable: 50 kB\n";
      fires = true;
    }
    return turns > 200;
  };
  EXPECT_EQ(Agent(parts, options).Run(), 0);
  EXPECT_EQ(Lines(kEvents, "Memory Utilization|10|85|95.00:sshd").size(), 1U);
  EXPECT_EQ(Lines(kEvents, "a look every 600 s and at once when memory runs short").size(), 1U);
  EXPECT_EQ(Lines(kEvents, "no rtnetlink").size(), 1U);
}

TEST_F(AgentTest, RowsOfNumbersAreBounded) {
  int seconds = 0;
  options.for_seconds = 3600;
  const int status = Run([&](std::int64_t) {
    host.texts["/proc/meminfo"] = ++seconds / 5 % 2 == 0 ? "MemTotal: 1000 kB\nMemAvailable: 900 kB\n"
                                                         : "MemTotal: 1000 kB\nMemAvailable: 600 kB\n";
  });
  EXPECT_EQ(status, 0);
  const std::size_t rows = Lines(kEvents, "Memory Utilization|").size();
  EXPECT_LE(rows, 215U);
  EXPECT_GE(rows, 100U);
  EXPECT_GE(Lines(kEvents, "too many to list - mostly Memory Utilization").size(), 10U);
}

TEST_F(AgentTest, FirstLookIsToldOnceAndNotBeforeItIsWritten) {
  std::vector<std::string> at;
  AgentParts parts = Parts(files);
  parts.stop_requested = [&] { return clock.NowUtc() > 1700000020; };
  parts.on_first_look = [&] { at.push_back(files.Get(kEvents)); };
  files.FailNext(platform::FileOp::kAppend, kEvents, platform::ErrorKind::kNoSpace);
  EXPECT_EQ(Agent(parts, options).Run(), 0);
  ASSERT_EQ(at.size(), 1u);
  EXPECT_TRUE(at[0].starts_with("1700000001,vm,42,System|0|0|Begin Session Refresh.")) << at[0];
}

TEST_F(AgentTest, LogHasNumericSecondsHostThreadAndAMessageWithoutCommas) {
  options.once = true;
  Run();
  EXPECT_THAT(Lines(kLog),
              ::testing::ElementsAre("1700000000,vm,42,Agent started; form home; it only observes",
                                     ::testing::HasSubstr("and Windows Folder and Memory Utilization and"),
                                     ::testing::HasSubstr("programs of other users cannot be told"),
                                     ::testing::HasSubstr("System (kernel modules) - not watched"),
                                     ::testing::HasSubstr("System (failed logins) - not watched"),
                                     "1700000000,vm,42,Session began; 2 items; 0 alerts",
                                     "1700000000,vm,42,Agent stopped"));
}

TEST_F(AgentTest, OnlyTheTwoFilesAndTheStatusAreWritten) {
  options.once = true;
  Run();
  EXPECT_THAT(files.Paths(), ::testing::ElementsAre(kLog, kEvents, kStatus, "/z/zendrix.ini"));
}

TEST_F(AgentTest, NewProgramInATemporaryFolderBecomesAnEventAndAnAlert) {
  options.for_seconds = 11;
  Run([&](std::int64_t seconds) {
    if (seconds == 2) host.AddProcess(11, "x", "/tmp/x");
    if (seconds == 6) host.RemoveProcess(11);
  });
  const auto lines = Lines(kEvents, "/tmp/x");
  ASSERT_EQ(lines.size(), 4U);
  EXPECT_EQ(lines[0], "1700000005,vm,42,Running Processes|0|1|/tmp/x:11|observed|RP,101,1|0");
  EXPECT_TRUE(lines[1].starts_with("1700000005,vm,42,Aggregation|0.9200|0.9200")) << lines[1];
  EXPECT_NE(lines[1].find("|Running Processes=/tmp/x:11;|program runs from a temporary folder|AG,"),
            std::string::npos)
      << lines[1];
  EXPECT_EQ(lines[2], lines[1]) << "ahead of itself";
  EXPECT_EQ(lines[3], "1700000010,vm,42,Running Processes|1|-1|/tmp/x:11|observed|RP,101,1|0");
}

TEST_F(AgentTest, QuietHostWritesNothingAfterTheSession) {
  options.for_seconds = 60;
  Run();
  EXPECT_EQ(Lines(kEvents).size(), 5U);
  EXPECT_EQ(clock.MonotonicMs(), 60000);
}

TEST_F(AgentTest, EveryBatchBeginsInASecondOfItsOwn) {
  options.for_seconds = 20;
  options.interval_seconds = 1;
  Run([&](std::int64_t seconds) {
    host.AddProcess(100 + static_cast<std::uint64_t>(seconds), "x", "/tmp/x");
  });
  std::string last;
  std::size_t appended = 0;
  for (const std::string& line : Lines(kEvents)) {
    const std::string second = line.substr(0, line.find(','));
    EXPECT_GE(second, last);
    appended += second > last ? 1 : 0;
    last = second;
  }
  EXPECT_EQ(appended, 21U);
}

TEST_F(AgentTest, EventsBehindManyAlertsStillHaveTheTimeOfTheirLook) {
  options.for_seconds = 20;
  options.interval_seconds = 1;
  for (std::uint64_t i = 100; i < 105; ++i) host.AddProcess(i, "x", "/home/x" + std::to_string(i));
  Run([&](std::int64_t seconds) {
    if (seconds == 8) host.AddProcess(200, "y", "/usr/bin/y");
  });
  EXPECT_EQ(Lines(kEvents, "1699999996,vm,42,Community|").size(), 1U) << "the first alert";
  EXPECT_EQ(Lines(kEvents, "1700000000,vm,42,Community|").size(), 1U) << "the fifth";
  EXPECT_THAT(
      Lines(kEvents, "/usr/bin/y"),
      ::testing::ElementsAre("1700000008,vm,42,Running Processes|0|1|/usr/bin/y:200|observed|RP,100,1|0"));
}

TEST_F(AgentTest, RequestToStopEndsTheRunWithAnEndLine) {
  Run([&](std::int64_t seconds) { stop = seconds >= 3; });
  EXPECT_EQ(clock.MonotonicMs(), 3000);
  EXPECT_TRUE(files.Get(kLog).ends_with("Agent stopped\r\n"));
  EXPECT_TRUE(files.Get(kEvents).ends_with("\r\n"));
}

TEST_F(AgentTest, MissingFolderIsToldInOneLine) {
  options.folder = "/none";
  EXPECT_EQ(Run(), 1);
  EXPECT_EQ(errors.str(), "zendrix-agent: no such folder: /none\n");
  EXPECT_THAT(files.Paths(), ::testing::ElementsAre("/z/zendrix.ini"));
}

TEST_F(AgentTest, FileOfTheOtherFormIsLeftAlone) {
  files.Put(kEvents, "1600000000,h,M,A,d\r\n");
  EXPECT_EQ(Run(), 1);
  EXPECT_EQ(files.Get(kEvents), "1600000000,h,M,A,d\r\n");
  EXPECT_EQ(errors.str(),
            "zendrix-agent: cannot take up KorvessaMonitoring.kvl: it holds lines of the other form\n");
}

TEST_F(AgentTest, BatchThatCouldNotBeWrittenIsToldAgainASecondLater) {
  options.for_seconds = 12;
  files.FailNext(platform::FileOp::kAppend, kEvents, platform::ErrorKind::kNoSpace, 2);
  EXPECT_EQ(Run(), 0);
  EXPECT_EQ(Lines(kEvents, "Begin Session Refresh.").size(), 1U);
  EXPECT_TRUE(files.Get(kEvents).starts_with("1700000002,"));
  const std::string told = errors.str();
  EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), 1) << told;
}

TEST_F(AgentTest, RunWhoseLastBatchIsLostEndsWithOne) {
  options.once = true;
  files.FailNext(platform::FileOp::kAppend, kEvents, platform::ErrorKind::kNoSpace, 2);
  EXPECT_EQ(Run(), 1);
}

TEST_F(AgentTest, FileThatTheConsoleDeletedBeginsWithANewSession) {
  options.for_seconds = 6;
  Run([&](std::int64_t seconds) {
    if (seconds == 2) files.Vanish(kEvents);
  });
  EXPECT_TRUE(files.Get(kEvents).starts_with("1700000002,vm,42,System|0|0|Begin Session Refresh."));
  EXPECT_EQ(Lines(kEvents).size(), 5U);
}

TEST_F(AgentTest, FullFileIsPutAsideAndTheNewOneBeginsWithASession) {
  options.once = true;
  std::string line = "1600000000,h,1,M|0|0|p";
  for (std::size_t i = 1; i < EventFile::kMostRows; ++i) line += " * p";
  files.Put(kEvents, line + "|r|c|0\r\n");
  EXPECT_EQ(Run(), 0);
  EXPECT_EQ(Lines(kEvents).size(), 6U);
  EXPECT_EQ(Lines(kEvents, "the Agent did not run for 27777 h 46 min").size(), 1U);
  EXPECT_TRUE(files.Has("/z/KorvessaMonitoring-1700000000.kvl"));
  EXPECT_EQ(Lines(kLog, "nearly full").size(), 1U);
}

TEST_F(AgentTest, AdminFormBeginsWithASessionMarkerAndKeepsFiveFields) {
  options.once = true;
  options.form = Form::kAdmin;
  host.AddProcess(11, "x", "/tmp/a,b");
  Run();
  const auto lines = Lines(kEvents);
  EXPECT_EQ(lines[0], "1700000000,vm,System,B,Begin Session Refresh.");
  for (const std::string& line : lines) EXPECT_EQ(SplitFields(line, ',').size(), 5U) << line;
  EXPECT_EQ(Lines(kEvents, "Running Processes,A,/tmp/a_b~4863e23ed9ce:11").size(), 1U);
  EXPECT_EQ(Lines(kEvents, "Memory Utilization,A,10.00 percent").size(), 1U);
}

TEST_F(AgentTest, LookThatTakesLongerThanTheIntervalDoesNotPileUp) {
  options.for_seconds = 30;
  options.interval_seconds = 1;
  int looks = 0;
  files.before = [&](platform::FileOp op, const std::string& path) {
    if (op != platform::FileOp::kAppend || path != kEvents) return;
    ++looks;
    clock.Advance(10000);
  };
  Run([&](std::int64_t seconds) {
    host.AddProcess(100 + static_cast<std::uint64_t>(seconds), "x", "/usr/bin/x");
  });
  EXPECT_LE(looks, 4);
}

TEST_F(AgentTest, NoMoreThanFiftyAlertsOfOneLook) {
  options.once = true;
  for (std::uint64_t i = 100; i < 160; ++i) host.AddProcess(i, "x", "/home/x" + std::to_string(i));
  host.AddProcess(200, "y", "/tmp/y");
  Run();
  EXPECT_EQ(Lines(kEvents, ",Community|").size(), 50U);
  EXPECT_EQ(Lines(kEvents, ",Aggregation|0.9200|").size(), 2U) << "the heaviest stay";
  EXPECT_EQ(Lines(kLog, "the lightest 11 were left out").size(), 1U);
}

}  // namespace
}  // namespace zendrix::agent
