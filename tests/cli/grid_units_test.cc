// grid filter, find, replay, state and slots: each against a small file whose results are worked out by hand.
#include "cli/inspector.h"

namespace zendrix::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class GridUnitsTest : public InspectorTest {
 protected:
  // Row 1 is the newest of these lines.
  GridUnitsTest() {
    WriteSettings(
        "[Misc]\r\nTTour=Y\r\n[Monitors]\r\nSystem=1\r\nTcp Port=1\r\nSystem Users=1\r\nHidden=0\r\n");
    DocumentWriting({"settings"});
    WriteHashed("zendrix.ini", folder_.Read("zendrix.ini"));
    WriteHistory(Line(0, "system", "B", "Begin Session Refresh.") +            // row 9
                 Line(10, "tcp port", "B", "** Start baseline **") +           // row 8
                 Line(10, "tcp port", "A", "80") +                             // row 7
                 Line(10, "tcp port", "A", "443") +                            // row 6
                 Line(11, "tcp port", "B", "** End baseline **") +             // row 5
                 Line(60, "system", "B", "Begin Session Refresh.", "OTHER") +  // row 4
                 Line(70, "tcp port", "R", "80") +                             // row 3
                 Line(125, "tcp port", "A", "8080") +                          // row 2
                 Line(130, "system", "N", "a new port"));                      // row 1
  }
  static std::string Line(int second, const std::string& monitor, const std::string& code,
                          const std::string& description, const std::string& host = "HOST") {
    return std::to_string(kStart + second) + "," + host + "," + monitor + "," + code + "," + description +
           "\r\n";
  }
  std::vector<std::string> Filtered(Arguments options) {
    options.insert(options.begin(), {"grid", "filter"});
    const Json document = Document(options);
    EXPECT_THAT(KeysOf(document), ElementsAre("order", "RecCnt", "messages", "log"));
    count_ = document["RecCnt"];
    return document["order"];
  }
  Json Hits(Arguments words) {
    words.insert(words.begin(), {"grid", "find"});
    const Json document = Document(words);
    EXPECT_THAT(KeysOf(document), ElementsAre("hits", "messages", "log"));
    return document["hits"];
  }

  std::string count_;
};

TEST_F(GridUnitsTest, FilterTakesEachCriterion) {
  EXPECT_THAT(Filtered({"--host", "OTHER"}), ElementsAre("6"));
  EXPECT_EQ(count_, "1 records selected (Filtered)");
  EXPECT_THAT(Filtered({"--monitor", "system"}), ElementsAre("9", "6", "1"));
  EXPECT_THAT(Filtered({"--change", "r"}), ElementsAre("7"));
  EXPECT_THAT(Filtered({"--desc", "begin*refresh?"}), ElementsAre("6", "1"));
  EXPECT_THAT(Filtered({"--from", "11/21/2026 01:46:00 AM"}), ElementsAre("6"));
  EXPECT_THAT(Filtered({"--from", "11/21/2026 01:46:00 AM", "--to", "11/21/2026 01:47:05 AM"}),
              ElementsAre("8", "7", "6"));
  EXPECT_THAT(Filtered({"--to=11/21/2026 01:45:11 AM"}), ElementsAre("5"));
}

TEST_F(GridUnitsTest, FilterTakesSeveralCriteriaTogether) {
  EXPECT_THAT(Filtered({"--monitor", "Tcp Port", "--change", "A", "--desc", "80"}), ElementsAre("8", "3"));
  EXPECT_EQ(count_, "2 records selected (Filtered)");
}

TEST_F(GridUnitsTest, FilterThatNothingPassesSaysSo) {
  EXPECT_THAT(Filtered({"--desc", "nowhere"}), IsEmpty());
  EXPECT_EQ(count_, " (Filtered)");
  EXPECT_THAT(Filtered({"--host", "UNKNOWN"}), IsEmpty());
  EXPECT_EQ(count_, " (Filtered)");
}

TEST_F(GridUnitsTest, FilterWithoutACriterionFiltersNothing) {
  EXPECT_THAT(Filtered({}), IsEmpty());
  EXPECT_EQ(count_, "9 records");
}

TEST_F(GridUnitsTest, DateThatIsNoneIsWrongUsage) {
  EXPECT_EQ(Run({"grid", "filter", "--from", "soon"}).status, 2);
}

TEST_F(GridUnitsTest, FindGoesOnBehindEachHitAndBeginsAnewBehindAMiss) {
  EXPECT_EQ(Hits({"80", "--times", "5"}), Json::parse("[[2, 8], [2, 8], [3, 8], [7, 8], null]"));
  EXPECT_EQ(Hits({"PORT", "--times", "2"}), Json::parse("[[1, 8], [2, 3]]"));
  EXPECT_EQ(Hits({"PORT", "--match-case"}), Json::parse("[null]"));
  EXPECT_EQ(Hits({"Tcp Port", "--match-case"}), Json::parse("[[2, 3]]"));
  EXPECT_EQ(Hits({"nowhere", "--times", "2"}), Json::parse("[null, null]"));
  EXPECT_EQ(Hits({"--", "--times"}), Json::parse("[null]"));
}

TEST_F(GridUnitsTest, SearchThatMissesSaysSo) {
  EXPECT_THAT(BoxTexts(Document({"grid", "find", "nowhere"})), ElementsAre("\"nowhere\"  Not Found."));
}

TEST_F(GridUnitsTest, ReplayMovesTheCursorByEachKeyAndEachClick) {
  const Json document =
      Document({"grid", "replay", "Back", "Back", "Step", "row:8", "Nxt", "Prev", "Prev", "Notable"});
  EXPECT_THAT(KeysOf(document), ElementsAre("steps", "messages", "log"));
  std::vector<int> rows;
  for (const Json& step : document["steps"]) rows.push_back(step["CurrentRow"]);
  EXPECT_THAT(rows, ElementsAre(1, 2, 3, 2, 8, 4, 9, 9, 1));
  // The notable event names the port monitor, whose last event stands below it.
  EXPECT_EQ(document["steps"][0]["RelatedRow"], Json::parse(R"({"Tcp Port": 2})"));
  EXPECT_EQ(document["steps"][1]["RelatedRow"], Json::object());
}

TEST_F(GridUnitsTest, StepOfNoKindIsWrongUsageAndARowThatIsNotThereIsTold) {
  EXPECT_EQ(Run({"grid", "replay", "Play"}).status, 2);
  EXPECT_EQ(DocumentOf(3, {"grid", "replay", "row:10"})["error"], "Row 10 not found.");
}

TEST_F(GridUnitsTest, StateIsTheTreeOfTheRow) {
  Json document = Document({"grid", "state", "1"});
  EXPECT_THAT(KeysOf(document), ElementsAre("root", "monitors", "messages", "log"));
  EXPECT_EQ(document["root"], "System State @ 11/21/2026 01:47:10 AM");
  EXPECT_EQ(document["monitors"], Json::parse(R"([{"name": "Tcp Port", "items": ["8080", "443"]}])"));
  document = Document({"grid", "state", "4"});
  EXPECT_EQ(document["monitors"], Json::parse(R"([{"name": "Tcp Port", "items": ["443", "80"]}])"));
  EXPECT_EQ(DocumentOf(3, {"grid", "state", "10"})["error"], "Row 10 not found.");
}

TEST_F(GridUnitsTest, SlotsAreCountedBackFromTheNewestEvent) {
  const Json document = Document({"grid", "slots", "--nslots", "3", "--tslots", "1", "--tchart", "D"});
  EXPECT_THAT(KeysOf(document),
              ElementsAre("SlotCounts", "SlotTotals", "SlotLabels", "chart", "messages", "log"));
  // The newest event is at 130 s: rows 1 and 2 lie in slot 0, 3 to 5 in slot 1, the rest in slot 2.
  EXPECT_EQ(document["SlotCounts"], Json::parse(R"([{"monitor": "System", "slots": [1, 1, null]},
                                                    {"monitor": "Tcp Port", "slots": [1, 2, null]},
                                                    {"monitor": "System Users", "slots": [null, null, null]}])"));
  EXPECT_EQ(document["SlotLabels"], Json::parse(R"(["01:47 AM", " ", " "])"));
  EXPECT_EQ(document["chart"],
            Json::parse(R"([["\"3\"", 0, 0, 0], ["\"2\"", 1, 2, 0], ["\"1\"", 1, 1, 0]])"));
}

TEST_F(GridUnitsTest, SlotsOfTheSettingsAreTakenWithoutOptions) {
  const Json document = Document({"grid", "slots"});
  EXPECT_THAT(document["chart"], SizeIs(30));
  EXPECT_THAT(document["SlotLabels"], SizeIs(30));
}

TEST_F(GridUnitsTest, TotalsAreThoseOfTheReplayedState) {
  const Json document = Document({"grid", "slots", "--nslots", "2", "--tchart", "T"});
  // The count ends at row 3, in slot 1; at the row below it there were two ports. Then one goes, and one and
  // the notable event come.
  EXPECT_EQ(document["SlotTotals"], Json::parse(R"([{"monitor": "System", "slots": [1, 0]},
                                                    {"monitor": "Tcp Port", "slots": [2, 1]},
                                                    {"monitor": "System Users", "slots": [0, 0]}])"));
  EXPECT_EQ(document["chart"], Json::parse(R"([["\"2\"", 0, 1, 0], ["\"1\"", 1, 2, 0]])"));
}

TEST_F(GridUnitsTest, WrongOptionsAreWrongUsage) {
  for (const Arguments& words : {Arguments{"grid", "slots", "--nslots", "51"},
                                 {"grid", "slots", "--nslots", "0"},
                                 {"grid", "slots", "--tchart", "X"},
                                 {"grid", "slots", "--tslots", "x"},
                                 {"grid", "find"},
                                 {"grid", "find", "x", "--times", "0"},
                                 {"grid", "state"},
                                 {"grid", "filter", "x"}})
    EXPECT_EQ(Run(words).status, 2) << words.back();
}

TEST_F(GridUnitsTest, NothingInTheFolderChanges) {
  const auto before = Listing(folder_.path());
  Document({"grid", "slots", "--nslots", "3"});
  Document({"grid", "filter", "--desc", "80"});
  Document({"grid", "find", "80"});
  Document({"grid", "replay", "Back"});
  EXPECT_EQ(Listing(folder_.path()), before);
}

}  // namespace
}  // namespace zendrix::test
