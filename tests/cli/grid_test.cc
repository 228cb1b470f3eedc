// grid and what stands behind it.
#include "cli/inspector.h"

namespace zendrix::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class GridCommandTest : public InspectorTest {
 protected:
  // With all defaults in their place, as they are behind the first start: nothing is written back.
  GridCommandTest() {
    WriteSettings("[Misc]\r\nTTour=Y\r\n[Monitors]\r\nSystem=1\r\nTcp Port=1\r\nHidden=0\r\n");
    DocumentWriting({"settings"});
    WriteHashed("zendrix.ini", folder_.Read("zendrix.ini"));
  }

  static std::string Event(int second, const std::string& monitor, const std::string& description,
                           const std::string& code = "A", const std::string& host = "HOST") {
    return std::to_string(kStart + second) + "," + host + "," + monitor + "," + code + "," + description +
           "\r\n";
  }
  static std::vector<std::string> Strings(const Json& list) { return list.get<std::vector<std::string>>(); }
  std::unique_ptr<Running> Follow() {
    return std::make_unique<Running>(OnFolder({"grid", "follow"}), environment_);
  }
  static Json Tick(Running& running) {
    running.Line();
    return running.Document();
  }
};

TEST_F(GridCommandTest, RowsAreThoseOfTheGridNewestFirst) {
  WriteHistory(Event(0, "system", "one") + Event(1, "tcp port", "a,b", "R") + Event(2, "hidden", "x") +
               "1,2,3\r\n" + Event(4, "SYSTEM", "J\x80rg", "?", "OTHER"));
  const Json document = Document({"grid"});
  EXPECT_THAT(KeysOf(document),
              ElementsAre("rows", "GridLineCount", "GridFileSize", "RecCnt", "GridMonitorList",
                          "GridHostList", "GridChangeList", "GridDescList", "messages", "log"));
  ASSERT_THAT(document["rows"], SizeIs(3));
  EXPECT_EQ(document["rows"][0],
            Json::parse(R"({"cells": ["5", "11/21/2026 01:45:04 AM", "OTHER", "     System",
      "", "?", "J€rg", "1795225504"], "picture3": 5, "picture4": 0})"));
  EXPECT_EQ(document["rows"][1]["cells"][6], "a");
  EXPECT_EQ(document["rows"][1]["picture4"], 2);
  EXPECT_EQ(document["rows"][2]["cells"][0], "1");
  EXPECT_EQ(document["GridLineCount"], 5);
  EXPECT_EQ(document["GridFileSize"], 129);
  EXPECT_EQ(document["RecCnt"], "5 records");
  EXPECT_THAT(Strings(document["GridMonitorList"]), ElementsAre("System", "Tcp Port", "Hidden"));
  EXPECT_THAT(Strings(document["GridHostList"]), ElementsAre("HOST", "OTHER"));
  EXPECT_THAT(Strings(document["GridChangeList"]), ElementsAre("A", "R", "?"));
  EXPECT_THAT(Strings(document["GridDescList"]), ElementsAre("one", "a", "x", "J€rg"));
  EXPECT_THAT(BoxTexts(document), IsEmpty());
}

TEST_F(GridCommandTest, AnotherFileIsShownWithoutAWordAboutTheFoldersOwn) {
  folder_.Write("other.kvl", Event(0, "system", "elsewhere"));
  for (const std::string& file : {folder_.Path("other.kvl"), std::string("other.kvl")}) {
    const Json document = Document({"grid", "--file", file});
    ASSERT_THAT(document["rows"], SizeIs(1));
    EXPECT_EQ(document["rows"][0]["cells"][6], "elsewhere");
    EXPECT_EQ(document["RecCnt"], "1 record");
    EXPECT_THAT(BoxTexts(document), IsEmpty());
  }
  EXPECT_EQ(Document({"grid", "sort", "--file=other.kvl", "1"})["order"], Json::array({"1"}));
}

TEST_F(GridCommandTest, FolderWithoutAHistorySaysSoAndHasNoRows) {
  const Json document = Document({"grid"});
  EXPECT_EQ(document["rows"], Json::array());
  EXPECT_THAT(BoxTexts(document),
              ElementsAre("No Zendrix Data Found.  Please ensure that the Zendrix Product "
                          "is properly installed."));
}

TEST_F(GridCommandTest, FileThatIsNotThereIsTold) {
  EXPECT_EQ(DocumentOf(3, {"grid", "--file", "/nowhere.kvl"})["error"], "File /nowhere.kvl not found.");
}

TEST_F(GridCommandTest, WrongWordsAreWrongUsage) {
  WriteHistory(Event(0, "system", "one"));
  for (const Arguments& words : {Arguments{"grid", "nonsense"},
                                 {"grid", "sort"},
                                 {"grid", "sort", "5"},
                                 {"grid", "sort", "12"},
                                 {"grid", "--nonsense"},
                                 {"grid", "--file"},
                                 {"grid", "sort", "--match-case", "1"},
                                 {"grid", "save", "1", "2"},
                                 {"grid", "follow", "x"},
                                 {"grid", "-x"}}) {
    const Ended ended = Run(words);
    EXPECT_EQ(ended.status, 2) << words.back();
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(std::count(ended.err.begin(), ended.err.end(), '\n'), 1);
  }
}

TEST_F(GridCommandTest, HeadersAreClickedOneAfterTheOther) {
  WriteHistory(Event(0, "system", "b", "A", "beta") + Event(1, "tcp port", "a", "N", "alpha") +
               Event(2, "system", "c", "R", "gamma"));
  Json document = Document({"grid", "sort", "2"});
  EXPECT_THAT(KeysOf(document),
              ElementsAre("order", "SortColumn", "TimeSorted", "TimeDescending", "messages", "log"));
  EXPECT_THAT(Strings(document["order"]), ElementsAre("3", "1", "2")) << "the first click descends";
  EXPECT_EQ(document["SortColumn"], 2);
  EXPECT_EQ(document["TimeSorted"], false);
  EXPECT_EQ(document["TimeDescending"], false);
  document = Document({"grid", "sort", "2", "8"});
  EXPECT_THAT(Strings(document["order"]), ElementsAre("2", "1", "3"));
  EXPECT_EQ(document["SortColumn"], 6);
  document = Document({"grid", "sort", "4", "3", "1"});
  EXPECT_THAT(Strings(document["order"]), ElementsAre("3", "2", "1"));
  EXPECT_EQ(document["SortColumn"], 7);
  EXPECT_EQ(document["TimeSorted"], true);
  EXPECT_EQ(document["TimeDescending"], true);
}

TEST_F(GridCommandTest, SavedRowsAreOldestFirstWhicheverOfTheTwoIsHigher) {
  for (int i = 0; i < 8; ++i) Append(kMonitoring, Event(i, "tcp port", "event " + std::to_string(i)));
  for (const auto& [first, last] : {std::pair("5", "7"), std::pair("7", "5")}) {
    EXPECT_EQ(DocumentWriting({"grid", "save", first, last, folder_.Path("out.kvl")})["lines"], 3);
    EXPECT_EQ(folder_.Read("out.kvl"),
              "1795225501,HOST,     Tcp Port,A,event 1\r\n1795225502,HOST,     Tcp Port,A,event 2\r\n"
              "1795225503,HOST,     Tcp Port,A,event 3\r\n");
  }
  const Json again = Document({"grid", "--file", folder_.Path("out.kvl")});
  EXPECT_EQ(again["rows"][0]["cells"][3], "     Tcp Port");
  EXPECT_EQ(again["rows"][0]["cells"][6], "event 3");
}

TEST_F(GridCommandTest, NothingIsSavedWithoutBeingToldToWrite) {
  WriteHistory(Event(0, "system", "one"));
  const auto before = Listing(folder_.path());
  EXPECT_EQ(Document({"grid", "save", "1", "1", folder_.Path("out.kvl")})["lines"], 1);
  EXPECT_EQ(Listing(folder_.path()), before);
}

TEST_F(GridCommandTest, RowThatIsNotThereIsNotSaved) {
  WriteHistory(Event(0, "system", "one"));
  EXPECT_EQ(DocumentOf(3, {"grid", "save", "1", "2", "/tmp/out"})["error"], "Row 2 not found.");
  EXPECT_EQ(DocumentOf(3, {"grid", "save", "0", "1", "/tmp/out"})["error"], "Row 0 not found.");
  EXPECT_EQ(DocumentOf(3, {"grid", "save", "-1", "1", "/tmp/out"})["error"], "Row -1 not found.");
  EXPECT_EQ(DocumentOf(3, {"grid", "save", "one", "1", "/tmp/out"})["error"], "Row one not found.");
}

TEST_F(GridCommandTest, GridWithoutRowsIsSavedAsAnEmptyFile) {
  WriteHistory("");
  EXPECT_EQ(DocumentWriting({"grid", "save", "1", "0", folder_.Path("out.kvl")})["lines"], 0);
  EXPECT_EQ(folder_.Read("out.kvl"), "");
}

TEST_F(GridCommandTest, FileThatCannotBeWrittenIsTold) {
  WriteHistory(Event(0, "system", "one"));
  const Json document = DocumentOf(3, {"--write", "grid", "save", "1", "1", folder_.Path("no/such/out.kvl")});
  EXPECT_THAT(document["error"].get<std::string>(), ::testing::HasSubstr("cannot be written"));
}

TEST_F(GridCommandTest, FollowTellsWhatEachTickBrings) {
  WriteHistory(Event(0, "system", "one"));
  const auto running = Follow();
  Json document = running->Document();
  EXPECT_THAT(KeysOf(document), ElementsAre("tick", "rows", "GridLineCount", "GridFileSize", "RecCnt", "top",
                                            "flash", "messages", "log"));
  EXPECT_EQ(document["tick"], 0);
  EXPECT_EQ(document["rows"], 1);
  EXPECT_EQ(document["top"][6], "one");
  EXPECT_EQ(document["flash"], false);
  Append(kMonitoring, Event(1, "tcp port", "two", "N") + Event(2, "hidden", "three"));
  document = Tick(*running);
  EXPECT_EQ(document["tick"], 1);
  EXPECT_EQ(document["rows"], 2);
  EXPECT_EQ(document["GridLineCount"], 3);
  EXPECT_EQ(document["RecCnt"], "3 records");
  EXPECT_THAT(document["top"], SizeIs(8));
  EXPECT_EQ(document["top"][6], "two");
  EXPECT_EQ(document["flash"], false);
  document = Tick(*running);
  EXPECT_EQ(document["tick"], 2);
  EXPECT_EQ(document["GridLineCount"], 3);
  running->EndInput();
  EXPECT_EQ(running->Wait(), 0);
}

TEST_F(GridCommandTest, FollowSaysWhichTickLetsTheIconFlash) {
  WriteHistory(Event(0, "monitoring agent", "one"));
  const auto running = Follow();
  EXPECT_EQ(running->Document()["flash"], false) << "what was there before";
  for (const char* monitor : {"monitoring AGENT", "Test Monitoring Agent", "Monitor Analysis Agent #1"}) {
    Append(kMonitoring, Event(1, monitor, "x", "N"));
    EXPECT_EQ(Tick(*running)["flash"], true) << monitor;
    EXPECT_EQ(Tick(*running)["flash"], false) << "nothing came";
  }
  Append(kMonitoring, Event(2, "system", "x", "N"));
  EXPECT_EQ(Tick(*running)["flash"], false);
}

TEST_F(GridCommandTest, FollowReloadsAFileThatHasShrunk) {
  WriteHistory(Event(0, "system", "one") + Event(1, "system", "two") + Event(2, "system", "three"));
  const auto running = Follow();
  EXPECT_EQ(running->Document()["rows"], 3);
  WriteHistory(Event(5, "system", "new"));
  Json document = Tick(*running);
  EXPECT_EQ(document["rows"], 1);
  EXPECT_EQ(document["GridLineCount"], 1);
  EXPECT_EQ(document["RecCnt"], "1 record");
  EXPECT_EQ(document["top"][6], "new");
  WriteHistory("");
  document = Tick(*running);
  EXPECT_EQ(document["rows"], 0);
  EXPECT_EQ(document["top"], Json::array());
}

TEST_F(GridCommandTest, NothingInTheFolderChanges) {
  WriteHistory(Event(0, "new monitor", "one"));
  const auto before = Listing(folder_.path());
  Document({"grid"});
  Document({"grid", "sort", "2"});
  EXPECT_EQ(Listing(folder_.path()), before);
}

}  // namespace
}  // namespace zendrix::test
