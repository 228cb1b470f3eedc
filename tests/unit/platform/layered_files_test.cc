#include "platform/layered_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "platform/linux/linux_files.h"
#include "platform/linux/user_folders.h"
#include "platform/memory/memory_files.h"
#include "platform/memory/overlay_files.h"
#include "support/temporary_folder.h"

namespace zendrix::platform {
namespace {

using ::testing::ElementsAre;
using ::testing::UnorderedElementsAre;

const Layers kLayers = {"/var/agent", "/usr/data", "/user/config", "/user/state"};

class LayeredFilesTest : public ::testing::Test {
 protected:
  LayeredFilesTest() { below_.strict_folders = true; }

  // As a folder that somebody else has made.
  void PutUserFolders() {
    below_.Put("/user/config/x", "");
    below_.Put("/user/state/x", "");
    below_.Vanish("/user/config/x");
    below_.Vanish("/user/state/x");
  }

  MemoryFiles below_;
  std::vector<std::string> made_;
  LayeredFiles files_{below_, kLayers, [this](const std::string& folder) -> Status {
                        made_.push_back(folder);
                        PutUserFolders();
                        return Done{};
                      }};
};

TEST_F(LayeredFilesTest, EachNameHasTheLayerOfItsKind) {
  for (const char* name : {"KorvessaDesc0.kvl", "KorvessaDesc10.kvl", "KorvessaDesc4.kvh", "Images"})
    EXPECT_EQ(LayerOf(name), Layer::kData) << name;
  for (const char* name :
       {"KorvessaMonitoring.kvl", "KorvessaEventLog.kvl", "KorvessaAlr.kvl", "Zendrix Update.exe",
        "zendrix-agent.lock", "KorvessaMonitoring.kvh", "notes.txt", "", "ini"})
    EXPECT_EQ(LayerOf(name), Layer::kAgent) << name;
  for (const char* name :
       {"zendrix.ini", "zendrix.kvh", "zendrix.ini.pending", "other.ini", "KorvessaSMTPConfig.kvl",
        "KorvessaSMTPConfig.kvh", "KorvessaSMTPConfig.kvl.pending"})
    EXPECT_EQ(LayerOf(name), Layer::kSettings) << name;
  for (const char* name : {"KorvessaAdministratorEventLog.kvl", "KorvessaActivations.kvl"})
    EXPECT_EQ(LayerOf(name), Layer::kState) << name;
}

TEST_F(LayeredFilesTest, ReadsEachFileFromItsLayer) {
  below_.Put("/usr/data/KorvessaDesc0.kvl", "description");
  below_.Put("/usr/data/Images/h3/28.png", "picture");
  below_.Put("/var/agent/KorvessaMonitoring.kvl", "events");
  below_.Put("/var/agent/old/KorvessaDesc0.kvl", "old");
  below_.Put("/user/config/zendrix.ini", "settings");
  below_.Put("/user/state/KorvessaActivations.kvl", "decisions");
  EXPECT_EQ(files_.ReadAll("/var/agent/KorvessaDesc0.kvl").value(), "description");
  EXPECT_EQ(files_.ReadAll("/var/agent/Images/h3/28.png").value(), "picture");
  EXPECT_EQ(files_.ReadAll("/var/agent/KorvessaMonitoring.kvl").value(), "events");
  EXPECT_EQ(files_.ReadAll("/var/agent/old/KorvessaDesc0.kvl").value(), "old");
  EXPECT_EQ(files_.ReadAll("/var/agent//zendrix.ini").value(), "settings");
  EXPECT_EQ(files_.ReadAll("/var/agent/./KorvessaActivations.kvl").value(), "decisions");
  EXPECT_EQ(files_.Size("/var/agent/zendrix.ini").value(), 8);
  EXPECT_TRUE(files_.Exists("/var/agent/KorvessaDesc0.kvl"));
  EXPECT_TRUE(files_.FolderExists("/var/agent/Images"));
}

TEST_F(LayeredFilesTest, AFileInTheWrongLayerIsNotThere) {
  below_.Put("/user/config/KorvessaDesc0.kvl", "planted");
  below_.Put("/user/state/KorvessaMonitoring.kvl", "planted");
  below_.Put("/var/agent/zendrix.ini", "planted");
  for (const char* name : {"KorvessaDesc0.kvl", "KorvessaMonitoring.kvl", "zendrix.ini"})
    EXPECT_FALSE(files_.Exists(JoinPath("/var/agent", name))) << name;
  EXPECT_THAT(files_.List("/var/agent").value(), ElementsAre());
}

TEST_F(LayeredFilesTest, WhatThePackageAndTheAgentBroughtIsOnlyRead) {
  for (const std::string path : {"/usr/data/KorvessaDesc0.kvl", "/var/agent/KorvessaMonitoring.kvl"})
    below_.Put(path, "old");
  for (const std::string path : {"/var/agent/KorvessaDesc0.kvl", "/var/agent/KorvessaMonitoring.kvl"}) {
    EXPECT_EQ(files_.WriteAll(path, "new").error().kind, ErrorKind::kPermissionDenied);
    EXPECT_EQ(files_.Append(path, "new").error().kind, ErrorKind::kPermissionDenied);
    EXPECT_EQ(files_.Remove(path).error().kind, ErrorKind::kPermissionDenied);
    EXPECT_EQ(files_.Rename(path, "/var/agent/zendrix.ini").error().kind, ErrorKind::kPermissionDenied);
    EXPECT_EQ(files_.ReadAll(path).value(), "old");
  }
  EXPECT_EQ(files_.WriteAll("/var/agent/new", "").error().kind, ErrorKind::kPermissionDenied);
  EXPECT_EQ(files_.WriteAll("/var/agent/Images/new", "").error().kind, ErrorKind::kPermissionDenied);
  EXPECT_TRUE(made_.empty());
}

TEST_F(LayeredFilesTest, TheUsersFoldersAreMadeWhenTheyAreFirstWrittenTo) {
  EXPECT_EQ(files_.ReadAll("/var/agent/zendrix.ini").error().kind, ErrorKind::kNotFound);
  EXPECT_TRUE(made_.empty());
  ASSERT_TRUE(files_.WriteAll("/var/agent/zendrix.ini", "a").ok());
  ASSERT_TRUE(files_.Append("/var/agent/KorvessaAdministratorEventLog.kvl", "b").ok());
  EXPECT_THAT(made_, ElementsAre("/user/config"));
  EXPECT_EQ(below_.Get("/user/config/zendrix.ini"), "a");
  EXPECT_EQ(below_.Get("/user/state/KorvessaAdministratorEventLog.kvl"), "b");
}

TEST_F(LayeredFilesTest, AFolderThatCannotBeMadeIsTheErrorOfTheWrite) {
  LayeredFiles files(below_, kLayers, [](const std::string&) -> Status {
    return Error{ErrorKind::kNoSpace, "full"};
  });
  EXPECT_EQ(files.WriteAll("/var/agent/zendrix.ini", "a").error().kind, ErrorKind::kNoSpace);
  EXPECT_EQ(files.Append("/var/agent/KorvessaActivations.kvl", "a").error().kind, ErrorKind::kNoSpace);
  EXPECT_TRUE(below_.Paths().empty());
}

TEST_F(LayeredFilesTest, RenamesWithinALayerOnly) {
  below_.Put("/user/config/zendrix.ini.pending", "new");
  below_.Put("/user/state/KorvessaActivations.kvl", "decisions");
  ASSERT_TRUE(files_.Rename("/var/agent/zendrix.ini.pending", "/var/agent/zendrix.ini").ok());
  EXPECT_EQ(below_.Get("/user/config/zendrix.ini"), "new");
  EXPECT_EQ(files_.Rename("/var/agent/zendrix.ini", "/var/agent/KorvessaActivations.kvl").error().kind,
            ErrorKind::kOther);
  EXPECT_EQ(files_.Rename("/var/agent/zendrix.ini", "/var/agent/KorvessaAlr.kvl").error().kind,
            ErrorKind::kPermissionDenied);
  EXPECT_EQ(below_.Get("/user/state/KorvessaActivations.kvl"), "decisions");
}

TEST_F(LayeredFilesTest, AUsersFileCanBeTakenAway) {
  below_.Put("/user/config/KorvessaSMTPConfig.kvl", "");
  ASSERT_TRUE(files_.Remove("/var/agent/KorvessaSMTPConfig.kvl").ok());
  EXPECT_FALSE(below_.Has("/user/config/KorvessaSMTPConfig.kvl"));
  EXPECT_EQ(files_.Remove("/var/agent/KorvessaSMTPConfig.kvl").error().kind, ErrorKind::kNotFound);
}

TEST_F(LayeredFilesTest, OutsideOfTheProgramFolderPathsAreWhatTheyAre) {
  below_.Put("/var/agents/zendrix.ini", "another folder's");
  below_.Put("/elsewhere/KorvessaDesc0.kvl", "own");
  EXPECT_EQ(files_.ReadAll("/var/agents/zendrix.ini").value(), "another folder's");
  EXPECT_EQ(files_.ReadAll("/elsewhere/KorvessaDesc0.kvl").value(), "own");
  ASSERT_TRUE(files_.WriteAll("/elsewhere/KorvessaMonitoring.kvl", "copy").ok());
  ASSERT_TRUE(files_.Remove("/elsewhere/KorvessaDesc0.kvl").ok());
  EXPECT_EQ(below_.Get("/elsewhere/KorvessaMonitoring.kvl"), "copy");
  EXPECT_FALSE(files_.FolderExists("/nowhere"));
}

TEST_F(LayeredFilesTest, TheProgramFolderHasTheNamesOfAllLayers) {
  below_.Put("/usr/data/KorvessaDesc0.kvl", "");
  below_.Put("/usr/data/README", "");
  below_.Put("/var/agent/KorvessaMonitoring.kvl", "");
  below_.Put("/user/config/zendrix.ini", "");
  EXPECT_THAT(files_.List("/var/agent/").value(),
              UnorderedElementsAre("KorvessaDesc0.kvl", "KorvessaMonitoring.kvl", "zendrix.ini"));
  EXPECT_THAT(files_.List("/usr/data").value(), UnorderedElementsAre("KorvessaDesc0.kvl", "README"));
  below_.FailNext(FileOp::kList, "/var/agent", ErrorKind::kPermissionDenied);
  EXPECT_EQ(files_.List("/var/agent").error().kind, ErrorKind::kPermissionDenied);
}

TEST_F(LayeredFilesTest, TheProgramFolderIsThereWithoutAnAgent) {
  EXPECT_TRUE(files_.FolderExists("/var/agent"));
  EXPECT_TRUE(files_.List("/var/agent").value().empty());
}

TEST_F(LayeredFilesTest, AnOverlayAboveItKeepsEverythingInMemory) {
  below_.Put("/user/config/zendrix.ini", "old");
  OverlayFiles overlay(files_);
  ASSERT_TRUE(overlay.WriteAll("/var/agent/zendrix.ini", "new").ok());
  ASSERT_TRUE(overlay.Append("/var/agent/KorvessaAdministratorEventLog.kvl", "line").ok());
  EXPECT_EQ(overlay.ReadAll("/var/agent/zendrix.ini").value(), "new");
  EXPECT_EQ(below_.Get("/user/config/zendrix.ini"), "old");
  EXPECT_TRUE(made_.empty());
}

TEST_F(LayeredFilesTest, SettingsAreNewUntilAFileOfThemIsThere) {
  EXPECT_TRUE(files_.SettingsAreNew());
  PutUserFolders();
  EXPECT_TRUE(files_.SettingsAreNew());
  below_.Put("/user/config/zendrix.ini.pending", "of a save that was killed");
  below_.Put("/user/config/.zendrix-0123456789abcdef.tmp", "and what it was writing");
  EXPECT_TRUE(files_.SettingsAreNew());
  below_.Put("/user/config/KorvessaSMTPConfig.kvl", "");
  EXPECT_FALSE(files_.SettingsAreNew());
}

TEST_F(LayeredFilesTest, SettingsOfWhichOnlyTheSideFileIsLeftAreNotNew) {
  below_.Put("/user/config/zendrix.kvh", "");
  EXPECT_FALSE(files_.SettingsAreNew());
}

TEST_F(LayeredFilesTest, AFolderThatCannotBeLookedIntoIsNotNew) {
  PutUserFolders();
  below_.FailNext(FileOp::kList, "/user/config", ErrorKind::kPermissionDenied);
  EXPECT_FALSE(files_.SettingsAreNew());
}

TEST(LayeredFilesOnDiskTest, TheUsersFoldersAreHisAlone) {
  const test::TemporaryFolder root;
  const Layers layers = {root.path() + "/agent", root.path() + "/data", root.path() + "/home/a/b/config",
                         root.path() + "/home/a/state"};
  LinuxFiles disk;
  LayeredFiles files(disk, layers, MakePrivateFolder);
  EXPECT_TRUE(files.SettingsAreNew());
  ASSERT_TRUE(files.WriteAll(layers.program + "/zendrix.ini", "a").ok());
  ASSERT_TRUE(files.Append(layers.program + "/KorvessaActivations.kvl", "b").ok());
  for (const std::string& folder :
       {layers.settings, layers.state, root.path() + "/home", root.path() + "/home/a/b"}) {
    struct stat status = {};
    ASSERT_EQ(stat(folder.c_str(), &status), 0) << folder;
    EXPECT_EQ(status.st_mode & 07777U, 0700U) << folder;
  }
  EXPECT_EQ(disk.ReadAll(layers.settings + "/zendrix.ini").value(), "a");
  EXPECT_EQ(disk.ReadAll(layers.state + "/KorvessaActivations.kvl").value(), "b");
  EXPECT_FALSE(files.SettingsAreNew());
}

}  // namespace
}  // namespace zendrix::platform
