// events, log, desc, hash: the store's documents.
#include <regex>

#include "cli/inspector.h"

namespace zendrix::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

using EventsTest = InspectorTest;

TEST_F(EventsTest, DocumentHasTheseKeysInThisOrder) {
  const Json document = Document({"events"});
  EXPECT_THAT(KeysOf(document), ElementsAre("columns", "rows", "reader", "MonitorList", "HostList",
                                            "OriginalList", "progress", "messages", "log"));
  EXPECT_THAT(KeysOf(document["reader"]),
              ElementsAre("LastLineNumber", "LastFileSize", "LastDateUTC", "ReloadedFlag", "ReaderFilePath"));
}

TEST_F(EventsTest, MissingFileGivesAnEmptyTable) {
  const Json document = Document({"events"});
  EXPECT_EQ(document["columns"],
            Json::parse(R"(["ID", "DateUTC", "DateTime", "Hostname", "ThreadID", "Monitor",
      "Original", "Change", "Description", "Reaction", "Code"])"));
  EXPECT_EQ(document["rows"], Json::array());
  EXPECT_EQ(document["reader"], Json::parse(R"({"LastLineNumber": 0, "LastFileSize": 0, "LastDateUTC": "",
                                                "ReloadedFlag": true, "ReaderFilePath": ""})"));
}

TEST_F(EventsTest, RowsHaveANumberAndTexts) {
  WriteHistory(
      "1795225500,HOST,7,System Users|1|-2.5|a \x80 b * c|r|x,1|0|ten\r\n"
      "1795225501,OTHER,8,Aggregation|0|0.99|A=1 * 2;B=3|||0|ten|eleven\r\n");
  const Json document = Document({"events"});
  EXPECT_EQ(document["columns"].size(), 12U);
  EXPECT_EQ(document["columns"][11], "Descr10");
  EXPECT_EQ(document["rows"], Json::parse(R"([
      [1, "1795225500", "11/21/2026 01:45:00 AM", "HOST", "7", "System Users", "1.0000000000000000",
       "-2.5000000000000000", "a € b * c", "r", "x,1", "ten"],
      [2, "1795225501", "11/21/2026 01:45:01 AM", "OTHER", "8", "Aggregation", "0.0000000000000000",
       "0.9900000000000000", "A=1;A=2;B=3", "", "", "ten"]])"));
  EXPECT_TRUE(document["rows"][0][0].is_number_integer());
  EXPECT_EQ(document["reader"], Json({{"LastLineNumber", 2},
                                      {"LastFileSize", 127},
                                      {"LastDateUTC", "1795225501"},
                                      {"ReloadedFlag", true},
                                      {"ReaderFilePath", folder_.Path(kMonitoring)}}));
}

// Rows are printed one at a time, which must leave the document as if it were printed in one piece.
TEST_F(EventsTest, DocumentsWithRowsAreOrdinaryDocuments) {
  WriteHistory(Event(0, "System Users", "null", "2") + Event(1, "System Users", "\"rows\":[null]", "2") +
               Event(2, "System Users", "\"rows\": [ null ] \\n \xE4", "2"));
  folder_.Write("KorvessaEventLog.kvl", "1,h,t,null\r\n2,h,\"rows\":[null],\xE4\r\n");
  for (const Arguments& command : {Arguments{"events"}, Arguments{"log", "KorvessaEventLog.kvl"}}) {
    const Ended plain = Run(command);
    EXPECT_GE(plain.document()["rows"].size(), 2U);
    EXPECT_EQ(plain.out, plain.document().dump() + "\n");
    Arguments with_option = command;
    with_option.insert(with_option.begin(), "--pretty");
    const Ended pretty = Run(with_option);
    EXPECT_EQ(pretty.out, plain.document().dump(2) + "\n");
  }
}

TEST_F(EventsTest, ListsKeepKeysAndItemsInTheOrderMet) {
  WriteHistory(Event(0, "System Users", "a", "2") + Event(1, "Aggregation", "b", "1") +
               Event(2, "SYSTEM users", "c", "2"));
  const Json document = Document({"events"});
  EXPECT_EQ(document["MonitorList"], Json::parse(R"([{"key": "System Users", "item": "System Users"},
                                                     {"key": "Aggregation", "item": "Aggregation"}])"));
  EXPECT_EQ(document["HostList"], Json::parse(R"([{"key": "HOST", "item": "HOST"}])"));
  EXPECT_EQ(document["OriginalList"],
            Json::parse(R"([{"key": "2", "item": "2"}, {"key": "1", "item": "1"}])"));
}

TEST_F(EventsTest, ProgressTellsThePercentageAtEveryFiftiethLine) {
  std::string lines;
  for (int i = 0; i < 120; ++i) lines += Event(100 + i, "System Users", "user");
  WriteHistory(lines);
  EXPECT_EQ(Document({"events"})["progress"], Json::parse("[41, 83]"));
}

TEST_F(EventsTest, ThreeShortLinesAndOneFullLineLoadAsEmpty) {
  WriteHistory("a\r\nb\r\nc\r\n" + Event(0, "System Users", "d"));
  const Json document = Document({"events"});
  EXPECT_EQ(document["rows"], Json::array());
  EXPECT_EQ(document["reader"]["LastLineNumber"], 0);
  EXPECT_EQ(document["reader"]["ReloadedFlag"], false);
}

TEST_F(EventsTest, DateThatIsNoNumberStandsAsItIsAndIsLogged) {
  WriteHistory("yesterday|1|2|x|y|z|0\r\n");
  const Json document = Document({"events"});
  EXPECT_EQ(document["rows"][0][2], "yesterday");
  EXPECT_EQ(document["rows"][0][3], "Hostname N/A");
  EXPECT_EQ(document["rows"][0][1], document["reader"]["LastDateUTC"]);
  EXPECT_THAT(LogLines(document), ElementsAre("'CMkvlf_InitClass': Error in line: yesterday|1|2|x|y|z|0"));
}

TEST_F(EventsTest, LogLinesReachTheFolderOnlyWhenWriting) {
  WriteHistory("yesterday|1|2|x|y|z|0\r\n");
  Document({"events"});
  EXPECT_THAT(FilesIn(folder_.path()), ElementsAre(kMonitoring));
  DocumentWriting({"events"});
  EXPECT_THAT(FilesIn(folder_.path()), ElementsAre("KorvessaAdministratorEventLog.kvl", kMonitoring));
  const std::regex line(R"(\d\d/\d\d/\d{4} \d\d:\d\d:\d\d [AP]M,[^,]*,0,'CMkvlf_InitClass': )"
                        R"(Error in line: yesterday\|1\|2\|x\|y\|z\|0\r\n)");
  EXPECT_TRUE(std::regex_match(folder_.Read("KorvessaAdministratorEventLog.kvl"), line));
}

TEST_F(EventsTest, BytesOfTheCodePageThatMeanNothingStillGiveADocument) {
  WriteHistory(Event(0, "System Users", "\x81\x8D\x8F\x90\x9D\xFF\x7F"));
  EXPECT_EQ(Document({"events"})["rows"][0][8], "\xC2\x81\xC2\x8D\xC2\x8F\xC2\x90\xC2\x9D\xC3\xBF\x7F");
}

class LogTest : public InspectorTest {
 protected:
  void SetUp() override {
    folder_.Write("KorvessaEventLog.kvl",
                  "11/21/2026 1:45:00 AM,Host,0,'a': b,c\r\n"
                  "1795225500,Host,5,second\r\n"
                  "short,line\r\n"
                  "never,Host,6\r\n");
  }
};

TEST_F(LogTest, NewestLineIsTheFirstRow) {
  const Json document = Document({"log", folder_.Path("KorvessaEventLog.kvl")});
  EXPECT_THAT(KeysOf(document), ElementsAre("columns", "rows", "messages", "log"));
  EXPECT_EQ(document["columns"],
            Json::parse(R"(["ID", "Date_Time", "Host", "TID", "Description", "Descr5"])"));
  EXPECT_EQ(document["rows"], Json::parse(R"([
      [4, "", "Host", "6", "", ""],
      [2, "11/21/2026 01:45:00 AM", "Host", "5", "second", ""],
      [1, "11/21/2026 01:45:00 AM", "Host", "0", "'a': b", "c"]])"));
}

TEST_F(LogTest, NameAloneIsFoundInTheProgramFolder) {
  EXPECT_EQ(Document({"log", "KorvessaEventLog.kvl"})["rows"].size(), 3U);
}

TEST_F(LogTest, MissingAndEmptyFilesHaveNoTable) {
  folder_.Write("empty.kvl", "");
  folder_.Write("bad.kvl", "never,Host,6,text\r\n");
  for (const char* name : {"missing.kvl", "empty.kvl", "bad.kvl"}) {
    const Json document = Document({"log", folder_.Path(name)});
    EXPECT_THAT(KeysOf(document), ElementsAre("table", "messages", "log")) << name;
    EXPECT_TRUE(document["table"].is_null()) << name;
  }
}

class DescTest : public InspectorTest {
 protected:
  Json TextOf(const std::string& number, const std::string& key) {
    return Document({"desc", number, key})["text"];
  }
};

TEST_F(DescTest, TextBehindTheKeyInTheFirstLineThatHasIt) {
  WriteHashed("KorvessaDesc9.kvl", "010,ten\r\nx020,twenty \x80\r\n020,other\r\n030,\r\n");
  EXPECT_EQ(TextOf("9", "010,"), "ten");
  EXPECT_EQ(TextOf("9", "020,"), "twenty €");
  EXPECT_EQ(TextOf("9", "twenty €"), "");
  EXPECT_EQ(TextOf("9", "030,"), "");
  EXPECT_TRUE(TextOf("9", "040,").is_null());
  EXPECT_TRUE(TextOf("9", "X020,").is_null());
  EXPECT_THAT(KeysOf(Document({"desc", "9", "010,"})), ElementsAre("text", "messages", "log"));
}

TEST_F(DescTest, MissingArraysAndThoseThatDoNotExistHaveNoText) {
  for (const char* number : {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9", "10"})
    EXPECT_TRUE(TextOf(number, "a").is_null()) << number;
  WriteHashed("KorvessaDesc3.kvl", "a,text\r\n");
  WriteHashed("KorvessaDesc8.kvl", "a,text\r\n");
  EXPECT_TRUE(TextOf("3", "a,").is_null());
  EXPECT_TRUE(TextOf("8", "a,").is_null());
}

TEST_F(DescTest, FileWithoutItsHashIsNotUsedAndIsLogged) {
  folder_.Write("KorvessaDesc2.kvl", "a,text\r\n");
  const Json document = Document({"desc", "2", "a,"});
  EXPECT_TRUE(document["text"].is_null());
  EXPECT_THAT(LogLines(document),
              ElementsAre("'Initial:LoadDescArrays': Error: stored hash does not match for " +
                          folder_.Path("KorvessaDesc2.kvl")));
}

class HashTest : public InspectorTest {
 protected:
  static constexpr char kHashOfAbc[] = "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad";

  void SetUp() override { folder_.Write("data.kvl", "abc"); }
};

TEST_F(HashTest, FileWithoutSideFile) {
  const Json document = Document({"hash", folder_.Path("data.kvl")});
  EXPECT_THAT(KeysOf(document), ElementsAre("hash", "stored", "verified", "messages", "log"));
  EXPECT_EQ(document["hash"], kHashOfAbc);
  EXPECT_EQ(document["stored"], "");
  EXPECT_EQ(document["verified"], false);
}

TEST_F(HashTest, StoringStaysInMemory) {
  const Json document = Document({"hash", folder_.Path("data.kvl"), "store"});
  EXPECT_EQ(document["stored"], kHashOfAbc);
  EXPECT_EQ(document["verified"], true);
  EXPECT_THAT(FilesIn(folder_.path()), ElementsAre("data.kvl"));
}

TEST_F(HashTest, StoringWritesTheSideFile) {
  DocumentWriting({"hash", folder_.Path("data.kvl"), "store"});
  EXPECT_THAT(FilesIn(folder_.path()), ElementsAre("data.kvh", "data.kvl"));
  EXPECT_EQ(folder_.Read("data.kvh"), std::string(kHashOfAbc) + "\r\n");
  EXPECT_EQ(Document({"hash", folder_.Path("data.kvl")})["verified"], true);
}

TEST_F(HashTest, ChangedFileDoesNotVerify) {
  WriteHashed("data.kvl", "abc");
  folder_.Write("data.kvl", "abd");
  const Json document = Document({"hash", folder_.Path("data.kvl")});
  EXPECT_EQ(document["stored"], kHashOfAbc);
  EXPECT_NE(document["hash"], kHashOfAbc);
  EXPECT_EQ(document["verified"], false);
}

TEST_F(HashTest, RelativePathIsThatOfTheWorkingFolderThenOfTheProgramFolder) {
  folder_.Write("data.kvh", std::string(kHashOfAbc) + "\r\n");
  EXPECT_EQ(Document({"hash", "data.kvl"})["verified"], true);
  const TemporaryFolder elsewhere;
  const Ended ended = RunPlain({"--folder", elsewhere.path(), "hash", "data.kvl"}, "", folder_.path());
  EXPECT_EQ(ended.document()["verified"], true);
}

TEST_F(HashTest, MissingFileIsStatusThree) {
  const Json document = DocumentOf(3, {"hash", folder_.Path("nothing.kvl"), "store"});
  EXPECT_THAT(KeysOf(document), ElementsAre("error", "messages", "log"));
  EXPECT_TRUE(document["error"].is_string());
}

}  // namespace
}  // namespace zendrix::test
