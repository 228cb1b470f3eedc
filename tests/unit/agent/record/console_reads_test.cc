// What the Agent writes, read by the console's own reader and alert logic.
#include <sstream>

#include "agent/agent.h"
#include "agent/host/text.h"
#include "agent/score/identity.h"
#include "alerts/activations.h"
#include "alerts/risk.h"
#include "support/alert_fixture.h"
#include "unit/agent/eager_scorer.h"
#include "unit/agent/fake_host.h"

namespace zendrix::agent {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::SizeIs;
using ::testing::UnorderedElementsAre;

class ConsoleReads : public test::AlertFixture {
 protected:
  ConsoleReads() {
    platform().clock.SetUtc(1700000000);
    platform().files.Put(world_.InFolder("zendrix.ini"), "");
    host.texts["/etc/passwd"] = "root:x:0:0::/root:/bin/bash\n";
    host.AddProcess(10, "sshd", "/usr/sbin/sshd");
  }

  platform::MemoryPlatform& platform() { return world_.platform; }

  // `act` is called at every second of the run.
  void Record(std::int64_t seconds, std::function<void(std::int64_t)> act = {}) {
    Options options;
    options.folder = world_.state.ProgramFolder;
    options.interval_seconds = 1;
    options.for_seconds = seconds;
    const std::int64_t start = platform().clock.MonotonicMs();
    std::int64_t told = -1;
    AgentParts parts{host, platform().files, platform().clock, *scorer, errors, {}, "vm", 42};
    parts.stop_requested = [&] {
      const std::int64_t now = (platform().clock.MonotonicMs() - start) / 1000;
      if (act && now > told) act(told = now);
      return false;
    };
    EXPECT_EQ(Agent(std::move(parts), options).Run(), 0) << errors.str();
  }

  void LoadRecording() { reader_.InitClass(EventsPath()); }
  std::string EventsPath() const { return world_.InFolder("KorvessaMonitoring.kvl"); }

  // IDs of the rows of a monitor.
  std::vector<int> RowsOf(const std::string& name) {
    std::vector<int> ids;
    auto cursor = reader_.EventTable->Clone();
    cursor.SetFilter("Monitor = '" + name + "' ");
    for (cursor.MoveFirst(); !cursor.Eof(); cursor.MoveNext()) ids.push_back(cursor.ID());
    return ids;
  }

  std::vector<std::string> DescriptionsOf(const std::string& name) {
    std::vector<std::string> texts;
    auto cursor = reader_.EventTable->Clone();
    cursor.SetFilter("Monitor = '" + name + "' ");
    for (cursor.MoveFirst(); !cursor.Eof(); cursor.MoveNext())
      texts.emplace_back(cursor.Text(store::kDescription));
    return texts;
  }

  FakeHost host;
  std::ostringstream errors;
  std::unique_ptr<Scorer> scorer = std::make_unique<EagerScorer>();
};

TEST_F(ConsoleReads, EveryDescriptionIsARowOfItsOwn) {
  host.AddProcess(11, "cron", "/usr/sbin/cron");
  Record(1);
  LoadRecording();
  EXPECT_THAT(RowsOf("Running Processes"), SizeIs(2));
  EXPECT_THAT(RowsOf("System Users"), SizeIs(1));
}

TEST_F(ConsoleReads, AlertLeadsToItsEventsAndSaysThatNothingWasDone) {
  host.AddProcess(11, "x", "/tmp/x");
  host.links["/proc/11/fd/3"] = "socket:[77]";
  host.texts["/proc/net/tcp"] =
      "   0: 00000000:115C 00000000:0000 0A 00000000:00000000 00:00000000 00000000 0 0 77 1\n";
  Record(1);
  LoadRecording();
  const auto alerts = RowsOf("Aggregation");
  ASSERT_THAT(alerts, SizeIs(2)) << "the alert and the line that it sends ahead";
  LookUp(alerts[1]);
  EXPECT_THAT(Events(), UnorderedElementsAre("Running Processes=/tmp/x:11", "Listening Ports=4444:/tmp/x"));
  EXPECT_THAT(Found(1).Reaction, HasSubstr("failed"));
  EXPECT_THAT(Found(2).Reaction, HasSubstr("failed"));
  EXPECT_THAT(Found(0).Change, ::testing::MatchesRegex("0\\.9824[0-9]{10}00"));
  EXPECT_EQ(Found(0).Original, "0.9824000000000000");
}

TEST_F(ConsoleReads, AlertOfOneEventIsReadAsAListToo) {
  host.AddProcess(11, "x", "/tmp/x");
  Record(1);
  LoadRecording();
  LookUp(RowsOf("Aggregation").at(0));
  EXPECT_THAT(Events(), ElementsAre("Running Processes=/tmp/x:11"));
}

TEST_F(ConsoleReads, AutorunEntriesOfOneProgramEachFindTheirRow) {
  host.texts["/etc/xdg/autostart/a.desktop"] = "[Desktop Entry]\nExec=/tmp/x --k=v;w * z\n";
  host.texts["/etc/xdg/autostart/b.desktop"] = "[Desktop Entry]\nExec=/tmp/x\n";
  Record(1);
  LoadRecording();
  LookUp(RowsOf("Aggregation").at(0));
  EXPECT_THAT(Events(), ElementsAre("Autorun Registry=/etc/xdg/autostart/a.desktop=/tmp/x --k_v_w _ z",
                                    "Autorun Registry=/etc/xdg/autostart/b.desktop=/tmp/x"));
}

TEST_F(ConsoleReads, HostileNamesMakeNoRowsOfTheirOwnAndNoLookupFails) {
  const std::vector<std::string> names = {"a|b|c|d|e|f|g",
                                          "x\r\n1,h,1,Aggregation|0|0.99|Running Processes=y;|r|c|0",
                                          "p * q",
                                          "it's",
                                          "a=b;c=d",
                                          "1,2,3",
                                          "\xFF\xFE\x01",
                                          "\"\\\\\"",
                                          " ",
                                          std::string(4000, 'l'),
                                          "<description>"};
  std::uint64_t pid = 100;
  for (const std::string& name : names) host.AddProcess(pid++, name.substr(0, 15), "/tmp/" + name);
  Record(1);
  LoadRecording();
  EXPECT_THAT(RowsOf("Running Processes"), SizeIs(1 + names.size()));
  const auto alerts = RowsOf("Aggregation");
  EXPECT_THAT(alerts, SizeIs(2 * names.size()));
  for (const int id : alerts) {
    LookUp(id);
    ASSERT_THAT(Events(), SizeIs(1)) << Found(0).Description;
    EXPECT_THAT(Found(1).Reaction, HasSubstr("failed"));
  }
}

TEST_F(ConsoleReads, LongAlertFindsEveryEventItNames) {
  for (std::uint64_t pid = 100; pid < 200; ++pid) host.AddProcess(pid, "x", "/tmp/" + std::string(60, 'x'));
  Record(1);
  LoadRecording();
  LookUp(RowsOf("Aggregation").at(0));
  EXPECT_LE(Found(0).Description.size(), 1536U);
  const auto named = SplitFields(Found(0).Description, ';').size();
  EXPECT_GT(named, 10U);
  EXPECT_THAT(Events(), SizeIs(named));
}

TEST_F(ConsoleReads, AlertsHaveMomentsOfTheirOwnSoThatADecisionMeetsOnlyOne) {
  for (const char* name : {"/tmp/a", "/tmp/b", "/tmp/c"}) {
    host.AddProcess(100 + static_cast<std::uint64_t>(name[5]), "x", name);
  }
  Record(1);
  LoadRecording();
  std::set<std::string> moments;
  for (const int id : RowsOf("Aggregation")) {
    LookUp(id);
    moments.insert(Found(0).DateUTC);
    EXPECT_THAT(Events(), SizeIs(1));
    EXPECT_THAT(Found(1).Reaction, HasSubstr("failed"))
        << "the alert's own Community row is the first behind it";
  }
  EXPECT_THAT(moments, SizeIs(3));
}

class ConsoleDecides : public ConsoleReads {
 protected:
  // Of the alerts about this program the newest: the one that the console shows on top.
  int NewestAbout(const std::string& program) {
    int newest = 0;
    for (const int id : RowsOf("Aggregation")) {
      LookUp(id);
      if (Found(0).Description.find(program) != std::string::npos) newest = id;
    }
    return newest;
  }
  void Decide(alerts::Answer answer, const std::string& program) {
    world_.platform.message_boxes.Answer(platform::BoxAnswer::kYes);
    EXPECT_TRUE(alerts_.DecideFromMenu(answer, Listed(NewestAbout(program))));
  }
  std::vector<std::string> Filed() {
    const std::string text = platform().files.Get(world_.InFolder(alerts::kActivationsFile));
    std::vector<std::string> lines;
    for (const auto line : SplitLines(text)) lines.emplace_back(line);
    return lines;
  }
  std::string Code(const std::string& program) { return AlertCode("", program); }
};

// The console dropped the decision on the first alert of a program without a word.
TEST_F(ConsoleDecides, FirstDecisionOnAnAlertIsFiled) {
  host.AddProcess(11, "x", "/tmp/x");
  Record(1);
  LoadRecording();
  Decide(alerts::Answer::kBlock, "/tmp/x");
  EXPECT_THAT(Filed(), ElementsAre(Code("/tmp/x") + ",1"));
}

// Programs of one risk had one code: the decision on one was the decision on all.
TEST_F(ConsoleDecides, DecisionOnOneProgramHitsNoOtherOfTheSameRisk) {
  for (std::uint64_t i = 0; i < 20; ++i) host.AddProcess(100 + i, "x", "/tmp/x" + std::to_string(i));
  Record(1);
  LoadRecording();
  Decide(alerts::Answer::kBlock, "/tmp/x7:");
  Decide(alerts::Answer::kAllow, "/tmp/x12:");
  Decide(alerts::Answer::kBlock, "/tmp/x19:");
  Decide(alerts::Answer::kAllow, "/tmp/x7:");
  EXPECT_THAT(Filed(), ElementsAre(Code("/tmp/x7") + ",0", Code("/tmp/x12") + ",0", Code("/tmp/x19") + ",1"));
}

TEST_F(ConsoleDecides, LaterAlertOfTheSameProgramIsFiledUnderTheSameCode) {
  host.AddProcess(11, "x", "/tmp/x");
  Record(1500, [&](std::int64_t second) {
    if (second == 1000) host.AddProcess(12, "x", "/tmp/x");
  });
  LoadRecording();
  EXPECT_THAT(RowsOf("Aggregation"), SizeIs(3)) << "the first goes ahead of itself, the second need not";
  Decide(alerts::Answer::kBlock, "/tmp/x:12");
  EXPECT_THAT(Filed(), ElementsAre(Code("/tmp/x") + ",1"));
}

// The console forgot at its end what the user had said.
TEST_F(ConsoleDecides, DecisionsStandInTheConsolesListAtItsNextStart) {
  scorer = MakeBaselineScorer({host, "", 1700000000});
  host.AddProcess(11, "a", "/memfd:a (deleted)");
  host.AddProcess(12, "b", "/memfd:b (deleted)");
  host.AddProcess(13, "c", "/memfd:c (deleted)");
  Record(5);
  LoadRecording();
  Decide(alerts::Answer::kBlock, "memfd_a");
  Decide(alerts::Answer::kAllow, "memfd_b");
  const std::string blocked = Listed(NewestAbout("memfd_a")).date_utc;
  const std::string allowed = Listed(NewestAbout("memfd_b")).date_utc;
  const std::string undecided = Listed(NewestAbout("memfd_c")).date_utc;
  EXPECT_THAT(Filed(), SizeIs(2));
  Record(3);
  alerts_.LoadChkAlrColl();
  EXPECT_EQ(alerts_.Decision(blocked), blocked + "A");
  EXPECT_EQ(alerts_.Decision(allowed), allowed);
  EXPECT_EQ(alerts_.Decision(undecided), std::nullopt);
}

// What is stored and no alert is in no list, and no decision is filed under it.
TEST_F(ConsoleDecides, StoredLinesOfTheWeekOfLearningAreNoAlerts) {
  scorer = MakeBaselineScorer({host, "", 1700000000});
  Record(20, [&](std::int64_t second) {
    if (second == 3) host.AddProcess(11, "x", "/tmp/.hidden/x");
  });
  LoadRecording();
  const auto stored = RowsOf("Aggregation");
  ASSERT_THAT(stored, SizeIs(1));
  auto cursor = reader_.EventTable->Clone();
  cursor.SetFilter(alerts::kAlertFilter);
  EXPECT_EQ(cursor.RecordCount(), 0);
}

TEST_F(ConsoleReads, ReaderThatFollowsSeesWhatAFullLoadSees) {
  host.AddProcess(11, "x", "/tmp/x");
  bool loaded = false;
  Record(30, [&](std::int64_t second) {
    host.AddProcess(1000 + static_cast<std::uint64_t>(second), "y",
                    second % 7 == 0 ? "/tmp/y" : "/usr/bin/y");
    if (!platform().files.Has(EventsPath())) return;
    if (loaded) reader_.LoadNewEvents();
    if (!loaded) LoadRecording();
    loaded = true;
  });
  reader_.LoadNewEvents();
  const auto followed = reader_.EventTable->RowCount();
  EXPECT_GT(followed, 30U);
  LoadRecording();
  EXPECT_EQ(followed, reader_.EventTable->RowCount());
}

TEST_F(ConsoleReads, ReaderThatFollowsTakesTheNewFileWhenTheOldOneIsPutAside) {
  std::string line = "1600000000,h,1,M|0|0|p|r|c|0\r\n1600000000,h,1,M|0|0|p";
  for (std::size_t i = 3; i < EventFile::kMostRows; ++i) line += " * p";
  platform().files.Put(EventsPath(), line + "|r|c|0\r\n");
  LoadRecording();
  EXPECT_GT(reader_.EventTable->RowCount(), 29990U);
  Record(4, [&](std::int64_t second) {
    host.AddProcess(1000 + static_cast<std::uint64_t>(second), "y", "/usr/bin/y");
    reader_.LoadNewEvents();
  });
  EXPECT_LT(reader_.EventTable->RowCount(), 20U);
  EXPECT_GT(reader_.EventTable->RowCount(), 3U);
}

// A clock put back by more than a day hid every alert of that day from a console that was running.
TEST_F(ConsoleReads, ReaderThatFollowsSeesWhatComesAfterTheClockIsPutBackByDays) {
  bool loaded = false;
  Record(40, [&](std::int64_t second) {
    if (second == 10) platform().clock.SetUtc(1700000000 - 200000);
    if (second == 30) host.AddProcess(11, "x", "/tmp/x");
    if (second % 5 != 3 || !platform().files.Has(EventsPath())) return;
    if (loaded) reader_.LoadNewEvents();
    if (!loaded) LoadRecording();
    loaded = true;
  });
  reader_.LoadNewEvents();
  EXPECT_THAT(RowsOf("Aggregation"), SizeIs(2));
  EXPECT_THAT(DescriptionsOf("Monitoring Agent"), Contains(HasSubstr("a new file begins - the last time")));
  EXPECT_THAT(DescriptionsOf("Monitoring Agent"), Contains(HasSubstr("the clock was set back by 55 h")));
  EXPECT_THAT(platform().files.Get(world_.InFolder("KorvessaEventLog.kvl")),
              HasSubstr("Monitoring file is far ahead of the clock and is now "));
}

// What a full disk had taken of a batch made a console that follows pass over the rest when it was told
// again.
TEST_F(ConsoleReads, ReaderThatFollowsMissesNothingOfABatchThatAFullDiskTookAPartOf) {
  EventFile file(platform().files, platform().clock, EventsPath(), Form::kHome);
  const auto append = [&](const std::string& rest) {
    const std::string second = std::to_string(file.NextSecond());
    return file.Append({second + rest, std::stoll(second), 1});
  };
  ASSERT_TRUE(append(",vm,1,System|0|0|Begin|r|c|0\r\n").ok());
  LoadRecording();
  const std::string batch = ",vm,1,Running Processes|0|1|/bin/a:1|r|c|0\r\n";
  const std::string port =
      std::to_string(file.NextSecond()) + ",vm,1,Listening Ports|0|1|4444:/bin/a|r|c|0\r\n";
  platform().files.before = [&](platform::FileOp op, const std::string& path) {
    if (op == platform::FileOp::kAppend && path == EventsPath())
      platform().files.PutMore(path, (std::to_string(file.NextSecond()) + batch + port).substr(0, 90));
  };
  platform().files.FailNext(platform::FileOp::kAppend, EventsPath(), platform::ErrorKind::kNoSpace);
  EXPECT_FALSE(append(batch + port).ok());
  platform().files.before = {};
  reader_.LoadNewEvents();
  EXPECT_THAT(RowsOf("Running Processes"), SizeIs(1));
  ASSERT_TRUE(append(batch + std::to_string(file.NextSecond()) + port.substr(10)).ok());
  reader_.LoadNewEvents();
  EXPECT_THAT(RowsOf("Listening Ports"), SizeIs(1));
  EXPECT_THAT(RowsOf("Running Processes"), SizeIs(2));
}

}  // namespace
}  // namespace zendrix::agent
