#include "platform/program_places.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "platform/install_paths.h"
#include "platform/linux/user_folders.h"
#include "support/environment.h"
#include "support/temporary_folder.h"

namespace zendrix::platform {
namespace {

const InstalledRoots kRoots = {"/system/bin", "/system/share/zendrix", "/system/lib/zendrix",
                               "/var/services"};
const UserFolders kUser = {"/home/u/.config", "/home/u/.local/state"};

TEST(ProgramPlacesTest, InTheSystemsFolderEverythingHasItsOwnPlace) {
  const ProgramPlaces places = PlacesOf("/system/bin", std::nullopt, true, kRoots, kUser);
  EXPECT_TRUE(places.installed);
  EXPECT_EQ(places.folder, "/var/services/home");
  EXPECT_EQ(places.pictures, "/system/share/zendrix");
  EXPECT_EQ(places.libraries, "/system/lib/zendrix");
  EXPECT_EQ(places.quarantine, "/home/u/.local/state/zendrix");
  EXPECT_EQ(places.layers.program, places.folder);
  EXPECT_EQ(places.layers.data, "/system/share/zendrix");
  EXPECT_EQ(places.layers.settings, "/home/u/.config/zendrix");
  EXPECT_EQ(places.layers.state, "/home/u/.local/state/zendrix");
}

TEST(ProgramPlacesTest, TheAdministratorReadsTheOtherFormOfTheAgentsFile) {
  EXPECT_EQ(PlacesOf("/system/bin", std::nullopt, false, kRoots, kUser).folder, "/var/services/admin");
}

TEST(ProgramPlacesTest, AChosenFolderHoldsEverything) {
  const ProgramPlaces places = PlacesOf("/system/bin", "/my/folder", true, kRoots, kUser);
  EXPECT_FALSE(places.installed);
  EXPECT_EQ(places.folder, "/my/folder");
  EXPECT_EQ(places.pictures, "/my/folder");
  EXPECT_EQ(places.quarantine, "/my/folder");
  EXPECT_EQ(places.libraries, "/system/lib/zendrix");
}

TEST(ProgramPlacesTest, AnywhereElseTheExecutablesFolderHoldsEverything) {
  for (const char* folder : {"/build/bin", "/system/bin2", "/system"}) {
    const ProgramPlaces places = PlacesOf(folder, std::nullopt, true, kRoots, kUser);
    EXPECT_FALSE(places.installed);
    EXPECT_EQ(places.folder, folder);
    EXPECT_EQ(places.pictures, folder);
    EXPECT_EQ(places.libraries, folder);
    EXPECT_EQ(places.quarantine, folder);
  }
}

TEST(ProgramPlacesTest, TheSystemsFolderMayBeReachedThroughALink) {
  const test::TemporaryFolder root;
  std::filesystem::create_directory(root.path() + "/usr");
  std::filesystem::create_directory_symlink("usr", root.path() + "/link");
  InstalledRoots roots = kRoots;
  roots.programs = root.path() + "/link";
  const std::string real = std::filesystem::canonical(root.path()).string() + "/usr";
  EXPECT_TRUE(PlacesOf(real, std::nullopt, true, roots, kUser).installed);
}

TEST(ProgramPlacesTest, TheBuiltInRootsAreThoseOfTheInstallation) {
  EXPECT_EQ(BuiltInRoots().programs, kInstalledPrograms);
  EXPECT_TRUE(BuiltInRoots().data.ends_with("/share/zendrix"));
  EXPECT_EQ(BuiltInRoots().services, "/var/lib/zendrix");
}

TEST(UserFoldersTest, TheVariablesNameThem) {
  const test::EnvironmentVariable config("XDG_CONFIG_HOME", "/x/config//");
  const test::EnvironmentVariable state("XDG_STATE_HOME", "/x/state");
  EXPECT_EQ(FindUserFolders().config, "/x/config");
  EXPECT_EQ(FindUserFolders().state, "/x/state");
}

TEST(UserFoldersTest, UnsetEmptyAndRelativeVariablesCountAsTheirDefaults) {
  const test::EnvironmentVariable home("HOME", "/home/u");
  for (const std::optional<std::string>& value :
       std::vector<std::optional<std::string>>{std::nullopt, "", "config", "./config", "~/.config"}) {
    const test::EnvironmentVariable config("XDG_CONFIG_HOME", value);
    const test::EnvironmentVariable state("XDG_STATE_HOME", value);
    EXPECT_EQ(FindUserFolders().config, "/home/u/.config");
    EXPECT_EQ(FindUserFolders().state, "/home/u/.local/state");
  }
}

TEST(UserFoldersTest, WithoutAHomeInTheEnvironmentItIsTheAccounts) {
  const test::EnvironmentVariable config("XDG_CONFIG_HOME", std::nullopt);
  for (const std::optional<std::string>& value :
       std::vector<std::optional<std::string>>{std::nullopt, "", "relative"}) {
    const test::EnvironmentVariable home("HOME", value);
    EXPECT_TRUE(FindUserFolders().config.starts_with("/")) << FindUserFolders().config;
    EXPECT_TRUE(FindUserFolders().config.ends_with("/.config"));
    EXPECT_EQ(FindUserFolders().config.find("relative"), std::string::npos);
  }
}

TEST(UserFoldersTest, AFolderInWhosePlaceAFileLiesCannotBeMade) {
  const test::TemporaryFolder root;
  ASSERT_TRUE(MakePrivateFolder(root.path() + "/a/b").ok());
  ASSERT_TRUE(MakePrivateFolder(root.path() + "/a/b").ok());
  std::filesystem::copy_file("/proc/self/status", root.path() + "/file");
  EXPECT_FALSE(MakePrivateFolder(root.path() + "/file/below").ok());
}

}  // namespace
}  // namespace zendrix::platform
