// What reaches the program folder: nothing without --write, whole files with it, also when the process is
// killed.
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <random>
#include <thread>

#include "cli/inspector.h"

namespace zendrix::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class FolderTest : public InspectorTest {
 protected:
  void FillFolder() {
    WriteAlertHistory();
    Append(kMonitoring, "yesterday|1|2|x|y|z|0\r\n");
    WriteDescriptions();
    WriteHashed("KorvessaSMTPConfig.kvl", "Send Alerts To=x;SMTP Server=y:1;z");
    WriteSettings("[Misc]\r\nTTour=N\r\nSe=0\r\n");
    folder_.Write("KorvessaAlr.kvl", "1795225500\r\n");
    folder_.Write("KorvessaActivations.kvl", "AG,5,0\r\n");
    folder_.Write("KorvessaEventLog.kvl", "1795225500,Host,5,text\r\n");
    std::filesystem::create_directory(folder_.Path("Images"));
    folder_.Write("Images/undo.png", "picture");
  }
  std::vector<Arguments> EveryCommand() const {
    const std::string ini = folder_.Path("zendrix.ini");
    return {{"events"},
            {"follow"},
            {"log", folder_.Path("KorvessaEventLog.kvl")},
            {"desc", "2", "System Users,"},
            {"hash", folder_.Path("KorvessaEventLog.kvl")},
            {"hash", folder_.Path("KorvessaEventLog.kvl"), "store"},
            {"hash", folder_.Path("KorvessaDesc2.kvl"), "store"},
            {"risk", "0.5"},
            {"alerts"},
            {"alert", "6"},
            {"decide", "6", "block"},
            {"decide", "6", "allow"},
            {"act", "6", "do"},
            {"act", "6", "undo"},
            {"checked"},
            {"link", "System Users", "x"},
            {"portal", "feedback"},
            {"portal", "support"},
            {"portal", "newver"},
            {"portal", "survey"},
            {"portal", "tour"},
            {"settings"},
            {"settings", "save", "A", "b", "c"},
            {"settings", "check", "A", "b", "c"},
            {"ini", ini, "str", "A", "b", "c"},
            {"ini", ini, "int", "A", "b", "1"},
            {"ini", ini, "all", "Misc"},
            {"ini", ini, "sections"},
            {"ini", ini, "save", "A", "b", "c"},
            {"ini", folder_.Path("new.ini"), "save", "A", "b", "c"},
            {"ini", ini, "saveint", "A", "b", "1"},
            {"ini", ini, "delete", "Misc", "Se"},
            {"smtp"},
            {"smtp", "save", "a", "b", "25"},
            {"valid", "email", "a@b.c"},
            {"valid", "server", "a.b.c"},
            {"token", "a=1", "a"}};
  }
  void ExpectNothingChanges(const Arguments& arguments, const std::map<std::string, std::string>& before) {
    const Ended ended = Run(arguments, "\n\n");
    EXPECT_EQ(ended.status, 0) << ::testing::PrintToString(arguments) << ended.err;
    EXPECT_EQ(Listing(folder_.path()), before) << ::testing::PrintToString(arguments);
  }
};

TEST_F(FolderTest, NoCommandChangesTheFolderUnlessToldTo) {
  FillFolder();
  const auto before = Listing(folder_.path());
  for (const auto& arguments : EveryCommand()) {
    for (const char* edition : {"Home", "Administrator"}) {
      Arguments all{"--edition", edition};
      all.insert(all.end(), arguments.begin(), arguments.end());
      ExpectNothingChanges(all, before);
    }
  }
}

TEST_F(FolderTest, NoCommandChangesAFolderWhoseFilesDoNotVerify) {
  FillFolder();
  for (const char* name : {"zendrix.ini", "KorvessaSMTPConfig.kvl", "KorvessaDesc2.kvl"}) Append(name, "x");
  const auto before = Listing(folder_.path());
  for (const auto& arguments : EveryCommand()) ExpectNothingChanges(arguments, before);
}

TEST_F(FolderTest, FatalPathChangesNothingEither) {
  WriteHistory("|1|1|text|r|c|0\r\n");
  const auto before = Listing(folder_.path());
  for (const char* command : {"events", "follow", "alerts"}) EXPECT_EQ(Run({command}).status, 1);
  EXPECT_EQ(Listing(folder_.path()), before);
}

TEST_F(FolderTest, EveryDocumentHasMessagesAndALog) {
  FillFolder();
  for (const auto& arguments : EveryCommand()) {
    const Json document = Document(arguments);
    EXPECT_TRUE(document["messages"].is_array()) << ::testing::PrintToString(arguments);
    EXPECT_TRUE(document["log"].is_array()) << ::testing::PrintToString(arguments);
    for (const auto& box : document["messages"])
      EXPECT_THAT(KeysOf(box), ElementsAre("title", "text", "icon", "buttons"));
  }
}

TEST_F(FolderTest, CommandSeesItsOwnChanges) {
  WriteHistory(Event(0, "System Users", "a"));
  const Json document = Document({"alerts"});
  // The second reading of the settings verifies: what the start wrote is seen, and the box comes only once.
  EXPECT_THAT(BoxTexts(document), ElementsAre("Invalid configuration file. Loading default values"));
}

TEST_F(FolderTest, StartRegistersTheMonitorsInTheSettings) {
  WriteHistory(Event(0, "System Users", "a") + Event(1, "Aggregation", "b", "0.5"));
  WriteSettings("[Monitors]\r\nAggregation=0\r\n[Misc]\r\nTTour=Y\r\n");
  DocumentWriting({"alerts"});
  const Json values = Document({"settings"})["values"];
  EXPECT_EQ(values["Monitors"], Json::parse(R"([["Aggregation", "0"], ["System Users", "1"]])"));
  EXPECT_THAT(FilesIn(folder_.path()),
              ElementsAre("KorvessaAdministratorEventLog.kvl", kMonitoring, "zendrix.ini", "zendrix.kvh"));
}

// The settings file was written five times by each start, whatever stood in it.
TEST_F(FolderTest, UnchangedStartChangesNoFileButTheLog) {
  WriteAlertHistory();
  WriteDescriptions();
  DocumentWriting({"alerts"});
  auto before = Listing(folder_.path());
  const Json document = DocumentWriting({"alerts"});
  EXPECT_THAT(BoxTexts(document), IsEmpty());
  auto after = Listing(folder_.path());
  EXPECT_EQ(before.erase("KorvessaAdministratorEventLog.kvl"), 1U);
  EXPECT_EQ(after.erase("KorvessaAdministratorEventLog.kvl"), 1U);
  EXPECT_EQ(after, before);
}

// Each new name had the settings read and written by itself: 4,000 took 25 seconds.
TEST_F(FolderTest, ThousandsOfMonitorsAreToldAndNotStored) {
  std::string lines;
  for (int i = 0; i < 4000; ++i) lines += Event(i, "Monitor " + std::to_string(i), "x");
  WriteHistory(lines);
  WriteSettings("[Monitors]\r\nMonitor 7=0\r\n");
  const Json document = DocumentWriting({"alerts"});
  EXPECT_THAT(LogLines(document),
              Contains("'RegisterMonitors': 3999 new monitor names are more than 1000. They are not stored.")
                  .Times(1));
  const Json settings = Document({"settings"});
  EXPECT_THAT(BoxTexts(settings), IsEmpty());
  EXPECT_EQ(settings["values"]["Monitors"], Json::parse(R"([["Monitor 7", "0"]])"));
}

TEST_F(FolderTest, WritingNeverGoesThroughALink) {
  const TemporaryFolder elsewhere;
  elsewhere.Write("target.ini", "[A]\r\nb=1\r\n");
  std::filesystem::create_symlink(elsewhere.Path("target.ini"), folder_.Path("zendrix.ini"));
  Run({"--write", "settings", "save", "A", "b", "2"});
  EXPECT_EQ(elsewhere.Read("target.ini"), "[A]\r\nb=1\r\n");
}

class KilledWriterTest : public InspectorTest {
 protected:
  static constexpr int kKills = 60;

  // How long the command lives when nobody kills it.
  void Time(const Arguments& arguments) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(Run(arguments).status, 0);
    life_ = std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start);
  }

  // Starts the command and kills it at some moment of its life.
  void RunAndKill(const Arguments& arguments) {
    Running running(OnFolder(arguments), environment_);
    const auto moment =
        std::chrono::steady_clock::now() +
        std::chrono::microseconds(std::uniform_int_distribution<std::int64_t>(0, life_.count())(random_));
    while (std::chrono::steady_clock::now() < moment) std::this_thread::yield();
    running.Signal(SIGKILL);
    if (running.Wait() == 0) ++finished_;
  }

  std::mt19937 random_{20261121};
  std::chrono::microseconds life_{0};
  int finished_ = 0;
};

TEST_F(KilledWriterTest, SettingsAreTheOldOnesOrTheNewOnesAndVerify) {
  const std::string padding(100, 'p');
  WriteSettings("[Misc]\r\nTTour=Y\r\nother=" + padding + "\r\nldAlert=0\r\n");
  std::string last = "0";
  Time({"--write", "settings", "save", "Misc", "ldAlert", last});
  for (int i = 1; i <= kKills; ++i) {
    RunAndKill({"--write", "settings", "save", "Misc", "ldAlert", std::to_string(i)});
    const Json document = Document({"settings"});
    EXPECT_THAT(BoxTexts(document), IsEmpty()) << "killed at save " << i;
    const std::string now = document["values"]["Misc"]["ldAlert"];
    EXPECT_TRUE(now == last || now == std::to_string(i)) << now << " behind " << last << " at save " << i;
    EXPECT_NE(document["ini"].get<std::string>().find("other=" + padding), std::string::npos);
    last = now;
  }
  RecordProperty("finished", finished_);
  DocumentWriting({"settings", "save", "Misc", "ldAlert", "end"});
  EXPECT_THAT(FilesIn(folder_.path()), ElementsAre("zendrix.ini", "zendrix.kvh"));
}

TEST_F(KilledWriterTest, ActivationsAndSmtpFilesAreNeverHalf) {
  WriteAlertHistory();
  WriteSettings();
  std::string others;
  for (int i = 0; i < 200; ++i) others += "x" + std::to_string(i) + ",1\r\n";
  folder_.Write("KorvessaActivations.kvl", others + "AG,5,0\r\n");
  WriteHashed("KorvessaSMTPConfig.kvl", "Send Alerts To=0;SMTP Server=s:1;rest");
  Time({"--write", "decide", "6", "block"});
  for (int i = 1; i <= kKills / 2; ++i) {
    RunAndKill({"--write", "decide", "6", i % 2 ? "block" : "allow"});
    const std::string activations = folder_.Read("KorvessaActivations.kvl");
    EXPECT_TRUE(activations == others + "AG,5,0\r\n" || activations == others + "AG,5,1\r\n") << i;
    RunAndKill({"--write", "smtp", "save", std::to_string(i), "s", "1"});
    const Json document = Document({"smtp"});
    EXPECT_THAT(BoxTexts(document), IsEmpty()) << "killed at save " << i;
    EXPECT_EQ(document["Server"], "s");
  }
}

}  // namespace
}  // namespace zendrix::test
