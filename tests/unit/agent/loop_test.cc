// The Agent's loop with sources that play what a test gives them.
#include "agent/sources/memory/recorded_source.h"
#include "platform/memory/faulty_files.h"
#include "platform/process.h"
#include "unit/agent/agent_fixture.h"

namespace zendrix::agent {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr std::int64_t kNow = 1700000000;

Item Process(const std::string& program, std::uint64_t pid, RuleSet rules = {}) {
  return MakeItem(monitor::kProcesses, program + ":" + std::to_string(pid), rules, program);
}

Item Unusual(const std::string& program, std::uint64_t pid) {
  return Process(program, pid, {Rule::kProgramInTemporaryFolder});
}

class LoopTest : public AgentFixture {
 protected:
  // Runs for so many milliseconds; `act` is called at every turn with the milliseconds since the start.
  int Run(std::int64_t milliseconds, std::function<void(std::int64_t)> act = {}) {
    return RunOn(files, milliseconds, std::move(act));
  }

  int RunOn(platform::Files& on, std::int64_t milliseconds, std::function<void(std::int64_t)> act = {}) {
    const std::int64_t start = clock.MonotonicMs();
    std::int64_t told = -1;
    AgentParts parts = Parts(on);
    parts.stop_requested = [&, act, start] {
      const std::int64_t passed = clock.MonotonicMs() - start;
      if (act && passed > told) act(told = passed);
      return passed >= milliseconds;
    };
    parts.sources = {&source};
    parts.wait = waits;
    parts.boot_ms = [this] { return clock.MonotonicMs() + slept_ms; };
    return Agent(std::move(parts), options).Run();
  }

  RecordedSource source{{monitor::kProcesses, monitor::kSystem}, {Level::kEvents, "test", ""}};
  std::int64_t slept_ms = 0;
  std::function<void(std::int64_t)> waits;  // in place of the clock's sleep
};

TEST_F(LoopTest, NewsStandsInTheFileWithinTheFifthOfASecond) {
  std::int64_t seen_at = -1;
  Run(4000, [&](std::int64_t passed) {
    if (passed == 1500) source.Came(Process("/bin/new", 7));
    if (seen_at < 0 && !Lines(kEvents, "/bin/new:7").empty()) seen_at = passed;
  });
  EXPECT_GE(seen_at, 1500);
  EXPECT_LE(seen_at, 1700);
}

TEST_F(LoopTest, RestsLongWhenNothingWaitsAndShortWhileARowOrAnAlertDoes) {
  std::vector<std::int64_t> rests;
  source.SetTimes(kQuietRestMs, kGatherMs);
  waits = [&](std::int64_t most) {
    rests.push_back(most);
    clock.Advance(most);
  };
  Run(5000);
  EXPECT_EQ(rests.back(), kQuietRestMs);
  eager.is_waiting = true;
  rests.clear();
  Run(1000);
  EXPECT_EQ(*std::max_element(rests.begin(), rests.end()), kDrainMs);
  eager.is_waiting = false;
  files.FailNext(platform::FileOp::kAppend, kEvents, platform::ErrorKind::kNoSpace, 100);
  rests.clear();
  Run(1000);
  EXPECT_EQ(*std::max_element(rests.begin(), rests.end()), kDrainMs);
}

TEST_F(LoopTest, ThreePiecesOfNewsOfOneSecondNeedNotWaitForTheNext) {
  std::vector<std::int64_t> told;
  Run(4000, [&](std::int64_t passed) {
    if (passed >= 2000 && passed % 200 == 0 && passed < 2600)
      source.Came(Process("/bin/" + std::to_string(passed), static_cast<std::uint64_t>(passed)));
    if (Lines(kEvents, "|0|1|/bin/").size() > told.size()) told.push_back(passed);
  });
  ASSERT_THAT(told, SizeIs(3));
  for (std::size_t i = 0; i < 3; ++i) EXPECT_LE(told[i], 2200 + 200 * static_cast<std::int64_t>(i));
}

TEST_F(LoopTest, WhatIsNoNewsDoesNotRunAheadOfTheClock) {
  source.Came(Process("/bin/a", 1));
  Run(20000, [&](std::int64_t passed) {
    if (passed % 250 == 0) source.Came(Process("/bin/a", 100 + static_cast<std::uint64_t>(passed)));
    const auto lines = Lines(kEvents);
    if (!lines.empty()) {
      EXPECT_LE(std::stoll(lines.back()), clock.NowUtc()) << lines.back();
    }
  });
  EXPECT_GT(Lines(kEvents, "|0|1|/bin/a:").size(), 10U);
}

TEST_F(LoopTest, KnownProgramsAreWrittenAfterFiveSecondsOrCounted) {
  source.Came(Process("/bin/a", 1));
  Run(70000, [&](std::int64_t passed) {
    if (passed == 1000) {
      source.Came(Process("/bin/a", 2));
      source.Came(Process("/bin/a", 3));
      source.Went(Process("/bin/a", 3));
    }
    if (passed == 9000) source.Went(Process("/bin/a", 2));
  });
  EXPECT_THAT(Lines(kEvents, "/bin/a:2"),
              ElementsAre("1700000006,vm,42,Running Processes|0|1|/bin/a:2|observed|RP,100,1|0",
                          "1700000009,vm,42,Running Processes|1|-1|/bin/a:2|observed|RP,100,1|0"));
  EXPECT_THAT(Lines(kEvents, "/bin/a:3"), IsEmpty());
  EXPECT_THAT(Lines(kEvents, "counted and not listed - 1 known that ended within 5 seconds"), SizeIs(1));
}

TEST_F(LoopTest, ProgramThatEndsAtOnceIsToldComingThenGoing) {
  Run(5000, [&](std::int64_t passed) {
    if (passed != 1000) return;
    source.Came(Unusual("/tmp/x", 7));
    source.Went(Unusual("/tmp/x", 7));
  });
  const auto lines = Lines(kEvents, "/tmp/x:7");
  ASSERT_THAT(lines, SizeIs(4));
  EXPECT_THAT(lines[0], HasSubstr("|0|1|/tmp/x:7|"));
  EXPECT_THAT(lines[1], HasSubstr(",Aggregation|"));
  EXPECT_THAT(lines[2], HasSubstr(",Aggregation|")) << "goes ahead of itself, see lines.cc";
  EXPECT_THAT(lines[3], HasSubstr("|1|-1|/tmp/x:7|")) << "an alert's lookup goes backward";
}

TEST_F(LoopTest, ServiceWritesBothFormsWithTheSameAlerts) {
  files.Put("/s/home/x", "");
  files.Put("/s/admin/x", "");
  options.folder.clear();
  options.state = "/s";
  EXPECT_EQ(Run(5000,
                [&](std::int64_t passed) {
                  if (passed == 1000) source.Came(Unusual("/tmp/x", 7));
                }),
            0);
  EXPECT_THAT(Lines("/s/home/KorvessaMonitoring.kvl", ",Community|"), SizeIs(1));
  EXPECT_THAT(Lines("/s/admin/KorvessaMonitoring.kvl", ",Monitor Analysis Agent #1,N,Risk "), SizeIs(1));
  EXPECT_THAT(Lines("/s/admin/KorvessaMonitoring.kvl", ",Running Processes,A,/tmp/x:7"), SizeIs(1));
  EXPECT_THAT(Lines("/s/home/KorvessaEventLog.kvl", "form home"), SizeIs(1));
  EXPECT_THAT(Lines("/s/admin/KorvessaEventLog.kvl", "form admin"), SizeIs(1));
  EXPECT_TRUE(files.Has("/s/zendrix-agent.status"));
}

// What lies in the folder of the form is a desktop user's word; a service goes by what the helper filed.
TEST_F(LoopTest, ServiceFollowsTheDecisionsInTheirOwnFolderAlone) {
  const std::string too_large(2 << 20, '\n');
  options.folder.clear();
  options.state = "/s";
  files.Put("/s/admin/x", "");
  files.Put("/s/home/KorvessaActivations.kvl", too_large);
  EXPECT_EQ(Run(5000, [](std::int64_t) {}), 0);
  EXPECT_THAT(Lines("/s/home/KorvessaEventLog.kvl", "Decisions cannot be kept"), IsEmpty());
  files.Put("/s/decisions/KorvessaActivations.kvl", too_large);
  EXPECT_EQ(Run(5000, [](std::int64_t) {}), 0);
  EXPECT_THAT(Lines("/s/home/KorvessaEventLog.kvl", "Decisions cannot be kept"), SizeIs(1));
}

TEST_F(LoopTest, FormThatCannotBeWrittenDoesNotHoldUpTheOther) {
  files.Put("/s/home/x", "");
  files.Put("/s/admin/x", "");
  options.folder.clear();
  options.state = "/s";
  const std::string home = "/s/home/KorvessaMonitoring.kvl";
  files.FailNext(platform::FileOp::kAppend, home, platform::ErrorKind::kNoSpace, 3);
  EXPECT_EQ(Run(9000,
                [&](std::int64_t passed) {
                  if (passed == 1000) source.Came(Unusual("/tmp/x", 7));
                  if (passed == 2000) {
                    EXPECT_THAT(Lines("/s/admin/KorvessaMonitoring.kvl", "/tmp/x:7"), Not(IsEmpty()));
                  }
                }),
            0);
  EXPECT_THAT(Lines(home, ",Community|"), SizeIs(1));
}

TEST_F(LoopTest, WhatALookLeftOutIsToldAsThatAndAtMostOnceAMinute) {
  Observation left_out;
  left_out.kind = Observation::Kind::kLost;
  left_out.lost = 3;
  left_out.left_out = true;
  Run(70'000, [&](std::int64_t passed) {
    if (passed == 1000 || passed == 2000) source.Play({left_out});
  });
  EXPECT_THAT(Lines(kEvents, "|0|3|3 entries were not looked at - too many - or they may not be read|"),
              SizeIs(2));
  EXPECT_THAT(Lines(kEvents, "events were lost"), IsEmpty());
}

TEST_F(LoopTest, LevelThatChangesIsARowInBothDirectionsAndALineOfTheLog) {
  Run(5000, [&](std::int64_t passed) {
    if (passed == 2000) source.SetLevel({Level::kNone, "test", "it broke: no ring"});
  });
  EXPECT_THAT(Lines(kEvents, "Monitoring Agent|1|-1|Running Processes - every event is told by test"),
              SizeIs(1));
  EXPECT_THAT(Lines(kEvents, "Monitoring Agent|0|1|Running Processes - a look every 5 s - "), SizeIs(1));
  EXPECT_THAT(Lines(kLog, "Running Processes - a look every 5 s - "), SizeIs(1));
  EXPECT_THAT(files.Get(kStatus), HasSubstr("no test: it broke: no ring"));
}

TEST_F(LoopTest, LossesAreToldAtOnceAndThenOnceAMinute) {
  Run(130000, [&](std::int64_t passed) {
    if (passed >= 1000 && passed < 31000 && passed % 1000 == 0) source.Lost(2);
  });
  EXPECT_THAT(Lines(kEvents, " events were lost"),
              ElementsAre(HasSubstr("1700000001,vm,42,Monitoring Agent|0|2|2 events were lost - "),
                          HasSubstr("1700000061,vm,42,Monitoring Agent|0|58|58 events were lost - ")));
  EXPECT_THAT(Lines(kLog, " events were lost"), SizeIs(2));
}

TEST_F(LoopTest, SleepOfTheComputerIsARow) {
  Run(3000, [&](std::int64_t passed) {
    if (passed == 1000) {
      slept_ms = 7200000;
      clock.SetUtc(kNow + 7201);
    }
  });
  EXPECT_THAT(Lines(kEvents, "the computer slept for 2 h"), SizeIs(1));
  EXPECT_THAT(Lines(kEvents, "the clock was set"), IsEmpty());
}

TEST_F(LoopTest, ClockThatIsPutBackIsToldAndHidesNothing) {
  Run(9000, [&](std::int64_t passed) {
    if (passed == 3000) clock.SetUtc(kNow - 3600);
    if (passed == 5000) source.Came(Unusual("/tmp/x", 7));
  });
  EXPECT_THAT(Lines(kEvents, "the clock was set back by 1 h"), SizeIs(1));
  EXPECT_THAT(Lines(kEvents, ",Community|"), SizeIs(1));
  std::int64_t before = 0;
  for (const std::string& line : Lines(kEvents)) {
    EXPECT_GE(std::stoll(line), before) << line;
    before = std::stoll(line);
  }
}

TEST_F(LoopTest, TimeInWhichTheAgentDidNotRunIsTold) {
  Run(1000);
  clock.Advance(600000);
  Run(1000);
  EXPECT_THAT(Lines(kEvents, "the Agent did not run for 10 min"), SizeIs(1));
  clock.Advance(5000);
  Run(1000);
  EXPECT_THAT(Lines(kEvents, "the Agent did not run"), SizeIs(1)) << "a start anew is no gap";
}

TEST_F(LoopTest, StatusTellsTheLastMinuteAndTheEnd) {
  Run(62000, [&](std::int64_t passed) {
    if (passed == 1000) source.Came(Process("/bin/new", 7));
    if (passed == 61000) {
      EXPECT_THAT(files.Get(kStatus), HasSubstr("\"running\": true"));
    }
  });
  EXPECT_THAT(files.Get(kStatus), HasSubstr("\"running\": false"));
  EXPECT_THAT(files.Get(kStatus), HasSubstr("\"events\": 1, "));
  EXPECT_EQ(AliveIn(files.Get(kStatus)), kNow + 62);
}

TEST_F(LoopTest, FullDiskCostsNothingThatFitsIntoTheWaiting) {
  files.FailNext(platform::FileOp::kAppend, kEvents, platform::ErrorKind::kNoSpace, 10);
  Run(30000, [&](std::int64_t passed) {
    if (passed == 1000) source.Came(Unusual("/tmp/x", 7));
    if (passed == 2000) source.Went(Unusual("/tmp/x", 7));
    if (passed == 3000) source.Happened(MakeItem(monitor::kSystem, "kernel module x"));
  });
  for (const char* text : {"|0|1|/tmp/x:7|", "|1|-1|/tmp/x:7|", "|kernel module x|", ",Community|"})
    EXPECT_THAT(Lines(kEvents, text), SizeIs(1)) << text;
  EXPECT_THAT(Lines(kLog, "Monitoring file cannot be written"), SizeIs(1));
  EXPECT_THAT(Lines(kLog, "Monitoring file can be written again"), SizeIs(1));
}

TEST_F(LoopTest, FullDiskForLongEndsInASessionThatSaysHowMuchWasGivenUp) {
  files.FailNext(platform::FileOp::kAppend, kEvents, platform::ErrorKind::kNoSpace, 60);
  std::uint64_t pid = 1;
  Run(90000, [&](std::int64_t passed) {
    if (passed > 40000) return;
    for (int i = 0; i < 50; ++i, ++pid) {
      const Item port = MakeItem(monitor::kSystem, "module " + std::to_string(pid));
      source.Happened(port);
      source.Came(Process("/bin/" + std::to_string(pid), pid));
    }
  });
  EXPECT_LE(Lines(kEvents).size(), 32000U);
  EXPECT_TRUE(files.Get(kEvents).find("Begin Session Refresh.") < 100);
}

TEST_F(LoopTest, HundredThousandStartsInTenSecondsAreCounted) {
  std::uint64_t pid = 1;
  Run(75000, [&](std::int64_t passed) {
    if (passed < 1000 || passed >= 11000) return;
    for (int i = 0; i < 500; ++i, ++pid) {
      const std::string program = "/tmp/" + std::to_string(pid);
      source.Came(Unusual(program, pid));
      source.Went(Unusual(program, pid));
    }
  });
  EXPECT_EQ(pid, 100001U);
  EXPECT_LT(Lines(kEvents).size(), 12000U);
  EXPECT_THAT(Lines(kEvents, " - 95000 too many to list - "), SizeIs(1));
}

// Raises what it is told to, once.
class ToldScorer : public Scorer {
 public:
  std::vector<Alert> due;
  std::vector<std::int64_t> seconds;
  std::size_t handed = 0;
  bool IsKnown(const Item& item) const override { return item.subject == "/bin/known"; }
  std::vector<Alert> Weigh(const std::vector<Event>& events, Moment) override {
    handed += events.size();
    return due;
  }
  std::vector<Alert> Rest(Moment) override { return {}; }
  void Raised(const std::vector<Alert>& alerts, std::int64_t first_second, Moment) override {
    if (alerts.empty()) return;
    seconds.push_back(first_second);
    due.clear();
  }
  void BeginFile() override {}
};

TEST_F(LoopTest, EventThatWasHeldBackIsWrittenBeforeTheAlertThatNamesIt) {
  ToldScorer told;
  scorer = &told;
  Run(4000, [&](std::int64_t passed) {
    if (passed == 1000) source.Came(Process("/bin/known", 7));
    if (passed == 2000) {
      Alert alert;
      alert.subject = "/bin/known";
      alert.risk = 0.9;
      alert.has_forerunner = true;
      alert.members = {Process("/bin/known", 7)};
      told.due = {alert};
    }
  });
  const auto lines = Lines(kEvents, "/bin/known:7");
  ASSERT_THAT(lines, SizeIs(2));
  EXPECT_THAT(lines[0], HasSubstr("Running Processes|0|1|/bin/known:7|"));
  EXPECT_THAT(lines[1], HasSubstr(",Aggregation|"));
  EXPECT_THAT(told.seconds, ElementsAre(std::stoll(lines[1])));
}

TEST_F(LoopTest, ScorerIsHandedAlsoWhatIsNotWritten) {
  ToldScorer told;
  scorer = &told;
  source.Came(Process("/bin/known", 7));
  Run(4000, [&](std::int64_t passed) {
    if (passed != 1000) return;
    EXPECT_EQ(told.handed, 1U);
    source.Came(Process("/bin/known", 8));
    source.Went(Process("/bin/known", 8));
  });
  EXPECT_THAT(Lines(kEvents, "/bin/known:8"), IsEmpty());
  EXPECT_EQ(told.handed, 2U) << "what went is no evidence";
}

// On a busy computer the last batch met a folder that was on its way out, and the Agent ended as if it had
// lost something.
TEST_F(LoopTest, FolderThatIsTakenAwayIsNoFailure) {
  options.folder = "/gone";
  files.Put("/gone/x", "");
  files.strict_folders = true;
  const auto take_away = [&](std::int64_t passed) {
    if (passed != 1000) return;
    source.Came(Unusual("/tmp/x", 7));
    files.VanishFolder("/gone");
  };
  EXPECT_EQ(Run(2000, take_away), 0);
}

TEST_F(LoopTest, LastBatchThatIsRefusedIsAFailure) {
  EXPECT_EQ(Run(2000,
                [&](std::int64_t passed) {
                  if (passed != 1000) return;
                  files.FailNext(platform::FileOp::kAppend, kEvents, platform::ErrorKind::kNoSpace, 99);
                  source.Came(Unusual("/tmp/x", 7));
                }),
            1);
}

TEST_F(LoopTest, AlertThatAFullDiskRefusedIsRaisedOnceWithTheSecondOfItsLine) {
  ToldScorer told;
  scorer = &told;
  Run(9000, [&](std::int64_t passed) {
    if (passed != 2000) return;
    files.FailNext(platform::FileOp::kAppend, kEvents, platform::ErrorKind::kNoSpace, 3);
    Alert alert;
    alert.subject = "x";
    alert.has_forerunner = true;
    alert.members = {Process("/bin/known", 7)};
    told.due = {alert};
  });
  const auto lines = Lines(kEvents, ",Aggregation|");
  ASSERT_THAT(lines, SizeIs(1));
  EXPECT_THAT(told.seconds, ElementsAre(std::stoll(lines[0])));
}

// Everything that the Agent writes, with a kill before or within each write: what was in a file stays, no
// line runs into another, and every line begins with its second.
class KillTest : public LoopTest {
 protected:
  void Begin() {
    files = {};
    clock = {};
    clock.SetUtc(kNow);
    for (const char* form : {"home", "admin"}) files.Put(std::string("/s/") + form + "/x", "");
    options.folder.clear();
    options.state = "/s";
    // Nearly full, so that the run puts it aside.
    std::string full = "1600000000,h,1,System|0|0|Begin Session Refresh.|o|SY,900,1|0\r\n";
    full += "1600000000,h,1,M|0|0|p";
    for (std::size_t i = 3; i < EventFile::kMostRows; ++i) full += " * p";
    files.Put("/s/home/KorvessaMonitoring.kvl", full + "|r|c|0\r\n");
  }

  void RunLife(platform::Files& on) {
    std::uint64_t pid = 0;
    RunOn(on, 6000, [&](std::int64_t passed) {
      if (passed % 1000 != 0) return;
      ++pid;
      source.Came(Unusual("/tmp/x" + std::to_string(pid), pid));
      if (pid > 1) source.Went(Unusual("/tmp/x" + std::to_string(pid - 1), pid - 1));
    });
  }

  std::map<std::string, std::string> Written() {
    std::map<std::string, std::string> written;
    for (const std::string& path : files.Paths()) {
      if (path.find("KorvessaMonitoring") != std::string::npos) written[path] = files.Get(path);
    }
    return written;
  }

  void ExpectKept(const std::map<std::string, std::string>& before) {
    const auto after = Written();
    for (const auto& [path, bytes] : before) {
      const bool kept = std::any_of(after.begin(), after.end(), [&begin = bytes](const auto& entry) {
        return entry.second.starts_with(begin);
      });
      EXPECT_TRUE(kept) << path;
    }
  }

  void ExpectWholeLines() {
    for (const auto& [path, bytes] : Written()) {
      EXPECT_TRUE(bytes.ends_with("\r\n")) << path;
      int torn = 0;
      for (const auto line : SplitLines(bytes)) {
        const bool home = path.find("/home/") != std::string::npos;
        const std::size_t fields = home ? SplitFields(line, '|').size() : SplitFields(line, ',').size();
        const bool whole = fields == (home ? 7U : 5U) && line.substr(0, 2) >= "16";
        // A line that was cut is ended with a comma, which no whole one has.
        EXPECT_TRUE(whole || line.ends_with(",")) << path << ": " << line;
        torn += whole ? 0 : 1;
        EXPECT_EQ(line.find("1700000", 8), std::string_view::npos) << "a line ran into another: " << line;
      }
      EXPECT_LE(torn, 1) << path;
      // The console neither parts nor expands the first full line of a file.
      const auto first = SplitLines(bytes)[torn > 0 && SplitLines(bytes)[0].ends_with(",") ? 1 : 0];
      EXPECT_NE(first.find("Begin Session Refresh."), std::string_view::npos) << path << ": " << first;
    }
  }
};

TEST_F(KillTest, NothingWrittenIsLostAndNoLineTorn) {
  Begin();
  platform::FaultyFiles counting(files);
  RunLife(counting);
  EXPECT_GT(Written().size(), 2U) << "the full file was put aside";
  ExpectWholeLines();
  const int operations = counting.Operations();
  ASSERT_GT(operations, 30);
  for (int at = 1; at <= operations; ++at) {
    for (const std::size_t appended :
         {std::size_t{0}, std::size_t{1}, std::size_t{50}, std::size_t{100000}}) {
      SCOPED_TRACE("killed at " + std::to_string(at) + ", " + std::to_string(appended) + " bytes appended");
      Begin();
      platform::FaultyFiles faulty(files);
      faulty.KillAt(at, appended);
      EXPECT_THROW(RunLife(faulty), platform::ProcessEnded);
      source = RecordedSource({monitor::kProcesses, monitor::kSystem}, {Level::kEvents, "test", ""});
      const auto before = Written();
      clock.Advance(1000);
      RunLife(files);
      source = RecordedSource({monitor::kProcesses, monitor::kSystem}, {Level::kEvents, "test", ""});
      ExpectKept(before);
      ExpectWholeLines();
      if (testing::Test::HasFailure()) return;
    }
  }
}

TEST_F(KillTest, RefusalOfAnyWriteIsOutlived) {
  Begin();
  platform::FaultyFiles counting(files);
  RunLife(counting);
  const auto all = [&] {
    std::string text;
    for (const auto& [path, bytes] : Written()) text += bytes;
    return text;
  };
  for (int at = 1; at <= counting.Operations(); ++at) {
    SCOPED_TRACE("refused at " + std::to_string(at));
    Begin();
    platform::FaultyFiles faulty(files);
    faulty.FailAt(at, platform::ErrorKind::kNoSpace);
    RunLife(faulty);
    source = RecordedSource({monitor::kProcesses, monitor::kSystem}, {Level::kEvents, "test", ""});
    ExpectWholeLines();
    const std::string text = all();
    for (int pid = 1; pid <= 5; ++pid) {
      const std::string name = "/tmp/x" + std::to_string(pid) + ":" + std::to_string(pid);
      const auto lines = SplitLines(text);
      EXPECT_TRUE(std::any_of(lines.begin(), lines.end(), [&](std::string_view line) {
        const bool came = line.find("Running Processes|0|1|") != std::string_view::npos ||
                          line.find("Running Processes|1|0|") != std::string_view::npos;
        return came && line.find(name) != std::string_view::npos;
      })) << name;
      EXPECT_NE(text.find("Running Processes,A," + name), std::string::npos) << name;
    }
    if (testing::Test::HasFailure()) return;
  }
}

}  // namespace
}  // namespace zendrix::agent
