#include "act/whose.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "family/intermediate/outside.h"
#include "support/temporary_folder.h"

namespace zendrix::act {
namespace {

class WhoseTest : public testing::Test {
 protected:
  WhoseTest() {
    for (const char* name : {"home/deep", "homes", "starts", "else"})
      std::filesystem::create_directories(folder_.Path(name));
  }
  bool Others(const std::string& name, uid_t owner) const {
    return IsOthers(folder_.Path(name), owner, caller_);
  }

  const test::TemporaryFolder folder_;
  const uid_t other_ = geteuid() + 1;
  Whose caller_{geteuid(), folder_.Path("home"), {folder_.Path("starts"), folder_.Path("missing")}};
};

TEST_F(WhoseTest, OwnFilesAndThoseBelowTheHomeAreTheCallers) {
  EXPECT_FALSE(Others("else/file", caller_.user));
  EXPECT_FALSE(Others("home/file", other_));
  EXPECT_FALSE(Others("home/deep/file", other_));
  EXPECT_TRUE(Others("else/file", other_));
  EXPECT_TRUE(Others("homes/file", other_)) << "only named like the home";
  EXPECT_TRUE(Others("home", other_)) << "not below itself";
}

TEST_F(WhoseTest, WhatStartsForEverybodyIsNobodysOwn) {
  EXPECT_TRUE(Others("starts/file", caller_.user));
  std::filesystem::create_directory_symlink("starts", folder_.Path("link"));
  caller_.shared_starts = {folder_.Path("link")};
  EXPECT_TRUE(Others("starts/file", caller_.user)) << "by another name";
  caller_.shared_starts = {folder_.Path("home/deep")};
  EXPECT_TRUE(Others("home/deep/file", caller_.user));
  EXPECT_FALSE(Others("home/file", caller_.user));
}

TEST_F(WhoseTest, AHomeThatIsSomebodyElsesGivesNothing) {
  caller_.user = other_;
  EXPECT_TRUE(Others("home/file", other_ + 1));
  EXPECT_FALSE(Others("home/file", other_));
  caller_.home = "";
  EXPECT_TRUE(Others("home/file", other_ + 1));
}

TEST_F(WhoseTest, TheComputersOwnStartsAreShared) {
  const auto places = family::SharedAutostartPlaces();
  for (const char* place : {"/etc/systemd/system", "/etc/xdg/autostart", "/etc/cron.d"})
    EXPECT_NE(std::find(places.begin(), places.end(), place), places.end()) << place;
}

}  // namespace
}  // namespace zendrix::act
