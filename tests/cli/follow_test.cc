// follow: the test changes the file while the inspector follows it.
#include <signal.h>

#include <filesystem>

#include "cli/inspector.h"

namespace zendrix::test {
namespace {

using ::testing::ElementsAre;

class FollowTest : public InspectorTest {
 protected:
  std::unique_ptr<Running> Follow(const Arguments& more = {}) {
    Arguments arguments{"follow"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return std::make_unique<Running>(OnFolder(arguments), environment_);
  }
  static Json Tick(Running& running) {
    running.Line();
    return running.Document();
  }
  // IDs of the rows that a document adds.
  static std::vector<int> Added(const Json& document) {
    std::vector<int> ids;
    for (const auto& row : document.at("added")) ids.push_back(row.at(0));
    return ids;
  }
};

TEST_F(FollowTest, FullLoadIsTickZero) {
  WriteHistory(Event(0, "System Users", "a") + Event(1, "System Users", "b"));
  const auto running = Follow();
  const Json document = running->Document();
  EXPECT_THAT(KeysOf(document), ElementsAre("tick", "newAlert", "ReloadedFlag", "rows", "LastBookmark",
                                            "added", "MonitorList", "reader", "messages", "log"));
  EXPECT_EQ(document["tick"], 0);
  EXPECT_EQ(document["newAlert"], false);
  EXPECT_EQ(document["ReloadedFlag"], true);
  EXPECT_EQ(document["rows"], 2);
  EXPECT_TRUE(document["LastBookmark"].is_null());
  EXPECT_THAT(Added(document), ElementsAre(1, 2));
  EXPECT_EQ(document["MonitorList"], Json::parse(R"([{"key": "System Users", "item": "System Users"}])"));
  EXPECT_THAT(KeysOf(document["reader"]),
              ElementsAre("LastLineNumber", "LastFileSize", "LastDateUTC", "ReloadedFlag", "ReaderFilePath"));
  running->EndInput();
  EXPECT_EQ(running->Wait(), 0);
}

TEST_F(FollowTest, NothingIsAddedWhileNothingChanges) {
  WriteHistory(Event(0, "System Users", "a"));
  const auto running = Follow();
  running->Document();
  for (int tick = 1; tick <= 2; ++tick) {
    const Json document = Tick(*running);
    EXPECT_EQ(document["tick"], tick);
    EXPECT_EQ(document["newAlert"], false);
    EXPECT_EQ(document["ReloadedFlag"], false);
    EXPECT_EQ(document["rows"], 1);
    EXPECT_EQ(document["added"], Json::array());
  }
}

TEST_F(FollowTest, AppendedRowsStandBehindTheBookmark) {
  WriteHistory(Event(0, "System Users", "a") + Event(1, "System Users", "b"));
  const auto running = Follow();
  running->Document();
  Append(kMonitoring, Event(2, "Running Processes", "c * d"));
  Json document = Tick(*running);
  EXPECT_EQ(document["newAlert"], true);
  EXPECT_EQ(document["ReloadedFlag"], false);
  EXPECT_EQ(document["rows"], 4);
  EXPECT_EQ(document["LastBookmark"], 2);
  EXPECT_THAT(Added(document), ElementsAre(3, 4));
  EXPECT_EQ(document["added"][1], Json::parse(R"([4, "1795225502", "11/21/2026 01:45:02 AM", "HOST", "7",
      "Running Processes", "1.0000000000000000", "1.0000000000000000", "d", "", "C,1"])"));
  EXPECT_EQ(document["MonitorList"][1], Json::parse(R"({"key": "Running Processes", "item": "7"})"));
  Append(kMonitoring, Event(3, "System Users", "e"));
  document = Tick(*running);
  EXPECT_EQ(document["LastBookmark"], 4);
  EXPECT_THAT(Added(document), ElementsAre(6));
}

TEST_F(FollowTest, QuietTickAfterRowsAddsNothing) {
  WriteHistory(Event(0, "System Users", "a"));
  const auto running = Follow();
  running->Document();
  Append(kMonitoring, Event(1, "System Users", "b"));
  EXPECT_THAT(Added(Tick(*running)), ElementsAre(2));
  const Json document = Tick(*running);
  EXPECT_EQ(document["newAlert"], false);
  EXPECT_EQ(document["LastBookmark"], 1);
  EXPECT_EQ(document["added"], Json::array());
}

TEST_F(FollowTest, ShortLinesAloneAreAnAlertWithoutRows) {
  WriteHistory(Event(0, "System Users", "a"));
  const auto running = Follow();
  running->Document();
  Append(kMonitoring, "1795225509,x\r\n");
  const Json document = Tick(*running);
  EXPECT_EQ(document["newAlert"], true);
  EXPECT_EQ(document["LastBookmark"], 1);
  EXPECT_EQ(document["added"], Json::array());
  EXPECT_EQ(document["reader"]["LastLineNumber"], 2);
}

TEST_F(FollowTest, FirstRowsOfAFileThatWasEmptyAreAllNew) {
  WriteHistory("");
  const auto running = Follow();
  EXPECT_EQ(running->Document()["rows"], 0);
  Append(kMonitoring, Event(1, "System Users", "b"));
  const Json document = Tick(*running);
  EXPECT_TRUE(document["LastBookmark"].is_null());
  EXPECT_THAT(Added(document), ElementsAre(1));
}

TEST_F(FollowTest, ShrunkFileIsReloaded) {
  WriteHistory(Event(0, "System Users", "a") + Event(1, "System Users", "b"));
  const auto running = Follow();
  running->Document();
  WriteHistory(Event(5, "Memory Utilization", "c"));
  const Json document = Tick(*running);
  EXPECT_EQ(document["newAlert"], true);
  EXPECT_EQ(document["ReloadedFlag"], true);
  EXPECT_TRUE(document["LastBookmark"].is_null());
  EXPECT_EQ(document["rows"], 1);
  EXPECT_THAT(Added(document), ElementsAre(1));
  EXPECT_EQ(document["MonitorList"],
            Json::parse(R"([{"key": "Memory Utilization", "item": "Memory Utilization"}])"));
}

TEST_F(FollowTest, FileShrunkToNothingIsAnEmptyTable) {
  WriteHistory(Event(0, "System Users", "a"));
  const auto running = Follow();
  running->Document();
  WriteHistory("");
  const Json document = Tick(*running);
  EXPECT_EQ(document["newAlert"], true);
  EXPECT_EQ(document["ReloadedFlag"], true);
  EXPECT_EQ(document["rows"], 0);
  EXPECT_EQ(document["reader"]["LastFileSize"], 0);
}

TEST_F(FollowTest, RewrittenFileOfTheSameSizeIsNotRead) {
  WriteHistory(Event(0, "System Users", "a"));
  const auto running = Follow();
  running->Document();
  WriteHistory(Event(9, "System Users", "b"));
  const Json document = Tick(*running);
  EXPECT_EQ(document["newAlert"], false);
  EXPECT_EQ(document["reader"]["LastDateUTC"], "1795225500");
}

TEST_F(FollowTest, RemovedFileKeepsItsRowsUntilASmallerOneComes) {
  WriteHistory(Event(0, "System Users", "a") + Event(1, "System Users", "b"));
  const auto running = Follow();
  running->Document();
  std::filesystem::remove(folder_.Path(kMonitoring));
  Json document = Tick(*running);
  EXPECT_EQ(document["newAlert"], false);
  EXPECT_EQ(document["rows"], 2);
  WriteHistory(Event(3, "System Users", "c"));
  document = Tick(*running);
  EXPECT_EQ(document["ReloadedFlag"], true);
  EXPECT_EQ(document["rows"], 1);
}

TEST_F(FollowTest, LargerReplacementIsReadFromTheOldOffset) {
  WriteHistory(Event(0, "System Users", "a"));
  const auto running = Follow();
  running->Document();
  std::filesystem::remove(folder_.Path(kMonitoring));
  WriteHistory(Event(5, "System Users", "x") + Event(0, "System Users", "y") + Event(6, "System Users", "z"));
  const Json document = Tick(*running);
  EXPECT_EQ(document["ReloadedFlag"], false);
  EXPECT_EQ(document["rows"], 2);
  EXPECT_EQ(document["added"][0][8], "z");
}

TEST_F(FollowTest, FileThatComesLaterIsNotFollowed) {
  const auto running = Follow();
  EXPECT_EQ(running->Document()["reader"]["ReaderFilePath"], "");
  WriteHistory(Event(0, "System Users", "a"));
  EXPECT_EQ(Tick(*running)["rows"], 0);
}

TEST_F(FollowTest, LineWithoutCommaIsFatalAndTheLastDocumentSaysSo) {
  WriteHistory(Event(0, "System Users", "a"));
  const auto running = Follow();
  running->Document();
  Append(kMonitoring, "no comma here\r\n");
  const Json document = Tick(*running);
  EXPECT_EQ(document["fatal"], Json::parse(R"({"procedure": "CMkvlf:loadNewEvents (0).", "number": 5,
                                               "description": "Invalid procedure call or argument"})"));
  EXPECT_THAT(KeysOf(document), ElementsAre("fatal", "messages", "log"));
  EXPECT_EQ(running->Wait(), 1);
}

TEST_F(FollowTest, EachDocumentTellsTheLogOfItsOwnTick) {
  WriteHistory("x|1|1|a|r|c|0\r\n");
  const auto running = Follow();
  EXPECT_THAT(LogLines(running->Document()), ElementsAre("'CMkvlf_InitClass': Error in line: x|1|1|a|r|c|0"));
  EXPECT_EQ(Tick(*running)["log"], Json::array());
  Append(kMonitoring, "y,H|1|1|b|r|c|0\r\n");
  EXPECT_THAT(LogLines(Tick(*running)),
              ElementsAre("'CMkvlf_LoadNewEvents': Error in line: y,H|1|1|b|r|c|0"));
}

TEST_F(FollowTest, WholeInputAtOnceGivesADocumentForEachLine) {
  WriteHistory(Event(0, "System Users", "a"));
  const Ended ended = Run({"follow"}, "a\n\nc");
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(std::count(ended.out.begin(), ended.out.end(), '\n'), 4);
}

TEST_F(FollowTest, LiveTicksByTheReadersTimerUntilInterrupted) {
  WriteHistory(Event(0, "System Users", "a"));
  const auto running = Follow({"--live"});
  EXPECT_EQ(running->Document()["tick"], 0);
  Append(kMonitoring, Event(1, "System Users", "b"));
  // A tick or more may have come before the line did.
  int tick = 0;
  Json document;
  do {
    document = running->Document();
    ASSERT_TRUE(document.is_object());
    EXPECT_EQ(document["tick"], ++tick);
  } while (document["newAlert"] == false);
  EXPECT_EQ(document["LastBookmark"], 1);
  EXPECT_THAT(Added(document), ElementsAre(2));
  document = running->Document();
  EXPECT_EQ(document["tick"], ++tick);
  EXPECT_EQ(document["newAlert"], false);
  EXPECT_EQ(document["added"], Json::array());
  running->Signal(SIGINT);
  EXPECT_EQ(running->Wait(), 0);
}

TEST_F(FollowTest, LiveEndsOnAnInterruptWithoutAFurtherDocument) {
  for (const int signal : {SIGINT, SIGTERM}) {
    const auto running = Follow({"--live"});
    running->Document();
    running->Signal(signal);
    EXPECT_EQ(running->Wait(), 0);
    // Nothing but ticks, where the interrupt came later than the first.
    while (!running->Silent()) ASSERT_TRUE(running->Document().contains("tick"));
  }
}

TEST_F(FollowTest, LiveEndsOnTheFatalPath) {
  WriteHistory(Event(0, "System Users", "a"));
  const auto running = Follow({"--live"});
  running->Document();
  Append(kMonitoring, "no comma here\r\n");
  Json document = running->Document();
  while (document.contains("tick")) document = running->Document();
  ASSERT_TRUE(document.is_object());
  EXPECT_EQ(document["fatal"]["number"], 5);
  EXPECT_EQ(running->Wait(), 1);
}

}  // namespace
}  // namespace zendrix::test
