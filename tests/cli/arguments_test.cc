// The command line itself: where options stand, what is wrong usage, and the exit statuses.
#include <algorithm>
#include <filesystem>
#include <fstream>

#include "cli/inspector.h"

namespace zendrix::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

class ArgumentsTest : public InspectorTest {
 protected:
  void ExpectWrongUsage(const Arguments& arguments) {
    const Ended ended = Run(arguments);
    const std::string shown = ::testing::PrintToString(arguments);
    EXPECT_EQ(ended.status, 2) << shown;
    EXPECT_EQ(ended.out, "") << shown;
    EXPECT_TRUE(ended.err.ends_with('\n')) << shown;
    EXPECT_EQ(std::count(ended.err.begin(), ended.err.end(), '\n'), 1) << shown << ended.err;
  }
};

TEST_F(ArgumentsTest, WrongUsageIsOneLineOnStandardErrorAndNoDocument) {
  const std::vector<Arguments> wrong = {
      {},
      {"nonsense"},
      {"--nonsense", "events"},
      {"events", "--nonsense"},
      {"events", "--live"},
      {"--agent", "sleeping", "events"},
      {"status", "now"},
      {"--answer", "maybe", "events"},
      {"--edition", "Office", "events"},
      {"--agent"},
      {"events", "more"},
      {"follow", "fast"},
      {"follow", "--live", "more"},
      {"log"},
      {"log", "a", "b"},
      {"desc", "2"},
      {"desc", "two", "key"},
      {"desc", "11", "key"},
      {"desc", "", "key"},
      {"hash"},
      {"hash", "a", "forget"},
      {"risk"},
      {"risk", "-x"},
      {"risk", "--1"},
      {"-1"},
      {"alerts", "more"},
      {"alert"},
      {"alert", "1", "2"},
      {"decide", "1"},
      {"decide", "1", "maybe"},
      {"act", "1"},
      {"act", "1", "redo"},
      {"checked", "more"},
      {"link", "Running Processes"},
      {"portal"},
      {"portal", "elsewhere"},
      {"settings", "save"},
      {"settings", "save", "A", "B"},
      {"settings", "load", "A", "B", "C"},
      {"ini"},
      {"ini", "file"},
      {"ini", "file", "wipe"},
      {"ini", "file", "str", "A", "B"},
      {"ini", "file", "int", "A", "B", "many"},
      {"ini", "file", "int", "A", "B", "32768"},
      {"ini", "file", "int", "A", "B", "1 "},
      {"ini", "file", "sections", "A"},
      {"ini", "file", "saveint", "A", "B", "1.5"},
      {"smtp", "load"},
      {"smtp", "save", "a"},
      {"valid", "email"},
      {"valid", "phone", "1"},
      {"token", "a=1"},
  };
  for (const auto& arguments : wrong) ExpectWrongUsage(arguments);
}

TEST_F(ArgumentsTest, NumberWithASignIsAValue) {
  const Json risks = Document({"risk", "-1", "0.5", "-.5"})["risks"];
  ASSERT_EQ(risks.size(), 3U);
  EXPECT_EQ(risks[0]["value"], "-1");
  EXPECT_EQ(risks[0]["level"], "Intrusion");
  EXPECT_EQ(risks[2]["value"], "-.5");
  EXPECT_EQ(Document({"ini", "x.ini", "int", "S", "K", "-5"})["value"], -5);
}

TEST_F(ArgumentsTest, ArgumentsBehindTwoDashesAreNeverOptions) {
  EXPECT_EQ(Document({"risk", "--", "-1"})["risks"][0]["value"], "-1");
  EXPECT_EQ(Document({"risk", "0", "--", "-1", "--", "x"})["risks"].size(), 4U);
  EXPECT_EQ(Document({"--", "risk", "-1"})["risks"][0]["value"], "-1");
  EXPECT_EQ(Document({"token", "--", "--pretty=1;b=2", "--pretty"})["value"], "1");
  EXPECT_EQ(Document({"valid", "email", "--", "--write"})["valid"], false);
}

TEST_F(ArgumentsTest, OneDashAndBracketsAreOrdinaryArguments) {
  EXPECT_EQ(Document({"token", "a=1;-=5", "-"})["value"], "5");
  EXPECT_EQ(Document({"settings", "save", "[a,b]", "{}", "[1,2]"})["verified"], true);
  EXPECT_EQ(Document({"token", "[a,b]=[1,2]", "[a,b]"})["value"], "[1,2]");
  EXPECT_EQ(Document({"token", "++=%%", "++"})["value"], "%%");
}

TEST_F(ArgumentsTest, EmptyArgumentsAreArguments) {
  EXPECT_EQ(Document({"valid", "email", ""})["valid"], true);
  EXPECT_EQ(Document({"risk", ""})["risks"], Json::parse(R"([{"value": "", "level": "Unknown"}])"));
}

TEST_F(ArgumentsTest, OwnOptionsMayStandBehindTheCommand) {
  const Ended ended = RunPlain({"checked", "--pretty", "--folder", folder_.path()});
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_EQ(ended.out, "{\n  \"checked\": [],\n  \"messages\": [],\n  \"log\": []\n}\n");
}

TEST_F(ArgumentsTest, PrettyPrintsTheSameDocument) {
  WriteAlertHistory();
  const Json plain = Document({"events"});
  const Ended pretty = Run({"--pretty", "events"});
  EXPECT_EQ(pretty.status, 0);
  EXPECT_GT(std::count(pretty.out.begin(), pretty.out.end(), '\n'), 10);
  EXPECT_EQ(Json::parse(pretty.out), plain);
}

TEST_F(ArgumentsTest, MissingFolderIsANamedThingThatDoesNotExist) {
  const Ended ended = RunPlain({"--folder", folder_.Path("elsewhere"), "events"});
  EXPECT_EQ(ended.status, 3);
  EXPECT_EQ(ended.err, "");
  const Json document = ended.document();
  EXPECT_THAT(KeysOf(document), ElementsAre("error", "messages", "log"));
  EXPECT_THAT(document["error"], HasSubstr(folder_.Path("elsewhere")));
}

TEST_F(ArgumentsTest, EmptyFolderIsNoFolder) {
  EXPECT_EQ(RunPlain({"--folder", "", "events"}).status, 3);
}

TEST_F(ArgumentsTest, FolderIsTheExecutablesUnlessGiven) {
  // A file beside the executable is found by its name alone, and the working folder does not have it.
  const std::string& program = InspectorPath();
  EXPECT_EQ(RunPlain({"hash", program.substr(program.rfind('/') + 1)}).status, 0);
}

TEST_F(ArgumentsTest, FolderWithLettersBeyondAsciiIsToldAsGiven) {
  const std::string name = folder_.Path("zürich€");
  std::filesystem::create_directory(name);
  std::ofstream(name + "/KorvessaMonitoring.kvl") << Event(0, "System Users", "u");
  EXPECT_EQ(RunPlain({"--folder", name, "events"}).document()["reader"]["ReaderFilePath"],
            name + "/KorvessaMonitoring.kvl");
  const Json document = RunPlain({"--folder", name, "--write", "settings"}).document();
  EXPECT_THAT(LogLines(document), ElementsAre(HasSubstr(" " + name + "/zendrix.ini. ")));
  EXPECT_THAT(FilesIn(name),
              ElementsAre("KorvessaAdministratorEventLog.kvl", "KorvessaMonitoring.kvl", "zendrix.ini"));
  // The log is single-byte text, and the folder's name stood in it in the terminal's encoding.
  EXPECT_THAT(folder_.Read("z\xC3\xBCrich\xE2\x82\xAC/KorvessaAdministratorEventLog.kvl"),
              HasSubstr("/z\xFCrich\x80/zendrix.ini. "));
}

TEST_F(ArgumentsTest, FolderWithLettersBeyondAsciiStandsInPagesAndMessagesAsGiven) {
  WriteAlertHistory();
  WriteDescriptions();
  Append("KorvessaDesc5.kvl", "no longer what was hashed");
  const std::string name = folder_.Path(
      "Gr\xC3\xBC\xC3\x9F"
      "e");
  const auto files = FilesIn(folder_.path());
  std::filesystem::create_directory(name);
  for (const auto& file : files) std::filesystem::copy_file(folder_.Path(file), name + "/" + file);
  const Json document = RunPlain({"--folder", name, "alert", "6"}).document();
  EXPECT_THAT(document["GetCurrDesc"]["short"].get<std::string>(),
              HasSubstr("<IMG SRC='" + name + "\\Images\\bug_red.png'"));
  EXPECT_THAT(document["GetCurrDesc"]["long"].get<std::string>(),
              HasSubstr("<IMG SRC='" + name + "\\Images\\undo.png'"));
  EXPECT_THAT(LogLines(document),
              Contains("'Initial:LoadDescArrays': Error: stored hash does not match for " + name +
                       "/KorvessaDesc5.kvl"));
}

TEST_F(ArgumentsTest, UsageIsCheckedBeforeTheFolder) {
  EXPECT_EQ(RunPlain({"--folder", folder_.Path("elsewhere"), "nonsense"}).status, 2);
}

TEST_F(ArgumentsTest, RelativeFolderIsThatOfTheWorkingFolder) {
  WriteHistory(Event(0, "System Users", "one"));
  const std::string name = folder_.path().substr(folder_.path().rfind('/') + 1);
  const Ended ended =
      RunPlain({"--folder", name, "events"}, "", folder_.path().substr(0, folder_.path().rfind('/')));
  EXPECT_EQ(ended.document()["rows"].size(), 1U);
}

TEST_F(ArgumentsTest, ClosingSeparatorOfTheFolderDoesNotMatter) {
  WriteHistory(Event(0, "System Users", "one"));
  const Ended ended = RunPlain({"--folder", folder_.path() + "/", "events"});
  EXPECT_EQ(ended.document()["reader"]["ReaderFilePath"], folder_.Path(kMonitoring));
}

TEST_F(ArgumentsTest, HelpNamesTheCommands) {
  const Ended ended = RunPlain({"--help"});
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.err, "");
  for (const char* command :
       {"events", "follow", "log", "desc", "hash", "risk", "alerts", "alert", "decide", "act", "checked",
        "link", "portal", "settings", "ini", "smtp", "valid", "token"})
    EXPECT_THAT(ended.out, HasSubstr(command));
}

TEST_F(ArgumentsTest, EditionGivesTheBoxesTheirTitle) {
  EXPECT_EQ(Document({"settings"})["messages"][0]["title"], "Korvessa Zendrix Home Edition");
  EXPECT_EQ(Document({"--edition", "Administrator", "settings"})["messages"][0]["title"],
            "Korvessa Zendrix Administrator");
}

TEST_F(ArgumentsTest, FatalPathIsStatusOneWithTheErrorInTheDocument) {
  WriteHistory("|1|1|text|r|c|0\r\n");
  const Json document = DocumentOf(1, {"events"});
  EXPECT_THAT(KeysOf(document), ElementsAre("fatal", "messages", "log"));
  EXPECT_EQ(document["fatal"], Json::parse(R"({"procedure": "CMkvlf:InitClass (0).", "number": 9,
                                               "description": "Subscript out of range"})"));
  EXPECT_EQ(document["messages"], Json::parse(R"([{"title": "Korvessa Zendrix Home Edition",
      "text": "Unexpected Error. Zendrix is exiting.", "icon": "stop", "buttons": "ok"}])"));
  EXPECT_THAT(LogLines(document),
              ElementsAre("'CMkvlf_InitClass': Error in line: |1|1|text|r|c|0",
                          "An error has occurred in procedure 'CMkvlf:InitClass (0).'. Error 9: Subscript "
                          "out of range"));
}

TEST_F(ArgumentsTest, FatalPathOfTheSettings) {
  WriteHashed("zendrix.ini", "[Tline]\r\nNSlots=abc\r\n");
  const Json document = DocumentOf(1, {"settings"});
  EXPECT_EQ(document["fatal"], Json::parse(R"({"procedure": "RegIni:ReadRegInfo", "number": 13,
                                               "description": "Type mismatch"})"));
  EXPECT_EQ(DocumentOf(1, {"risk", "0.5"})["fatal"], document["fatal"]);
  EXPECT_EQ(DocumentOf(1, {"alerts"})["fatal"], document["fatal"]);
}

TEST_F(ArgumentsTest, ServiceLayerIsAskedWhenNothingIsSaid) {
  WriteSettings();
  environment_["DBUS_SYSTEM_BUS_ADDRESS"] = "unix:path=" + folder_.Path("no-bus");
  const Ended ended = RunPlain({"--folder", folder_.path(), "alerts"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_EQ(ended.document()["items"], Json::array());
}

}  // namespace
}  // namespace zendrix::test
