// What the superuser may take for somebody who gave his consent, and what a caller learns of a refusal for
// want of rights.
#include "family/intermediate/korvessa_intermediate_types.h"
#include "unit/quarantine/quarantine_fixture.h"

namespace zendrix::family {
namespace {

class ConsentTest : public QuarantineTest {
 protected:
  static Event Of(const std::string& path) {
    return {"Windows Folder", path, time(nullptr) + kAnHour, "", true};
  }
  // Whether the refusal was one for want of rights.
  bool WantsRights(const Event& event) {
    try {
      quarantine_.SetOutside(outside_);
      quarantine_.PutAway(event);
    } catch (const Refused& refused) {
      return refused.for_want_of_rights;
    }
    ADD_FAILURE() << "was taken";
    return false;
  }
};

TEST_F(ConsentTest, WithConsentAFileOfAnybodyGoesAndComesBackAsItWas) {
  const std::string path = Make("tool");
  if (geteuid() == 0) {
    ASSERT_EQ(chown(path.c_str(), test::kNobody, test::kNobody), 0);
  }
  ClickAs(geteuid() == 0 ? 0 : geteuid() + 1);
  ExpectRefused(PutAway(Of(path)), "belongs to somebody else");
  outside_.any_owner = true;
  ExpectGoesAndComesBack(path, Of(path));
}

TEST_F(ConsentTest, TheSystemsFoldersStayInSpiteOfConsent) {
  const std::string path = system_ + "/tool";
  std::ofstream(path) << kContents;
  chmod(path.c_str(), 0755);
  ClickAs(0);
  outside_.any_owner = true;
  ExpectRefused(PutAway(Of(path)), "lies in a folder of the system");
}

TEST_F(ConsentTest, OnlyTheContentsThatWereMeantAreTaken) {
  const std::string path = Make("tool");
  Event event = Of(path);
  event.sha256 = std::string(64, '0');
  ExpectRefused(PutAway(event), "has other contents than were meant");
  EXPECT_TRUE(LookAt(path).there);
  EXPECT_FALSE(quarantine_.taken().has_value());
  event.sha256.clear();
  EXPECT_TRUE(PutAway(event).done);
  const auto& taken = quarantine_.taken();
  ASSERT_TRUE(taken.has_value());
  EXPECT_EQ(taken->manifest.path, path);
  event.sha256 = taken->manifest.sha256;
  EXPECT_TRUE(PutBack(event).done);
  EXPECT_TRUE(PutAway(event).done);
}

TEST_F(ConsentTest, WhatWasTakenIsTheFileThatWasThere) {
  const std::string path = Make("tool");
  struct stat status = {};
  ASSERT_EQ(stat(path.c_str(), &status), 0);
  ASSERT_TRUE(PutAway(Of(path)).done);
  EXPECT_EQ(quarantine_.taken()->device, status.st_dev);
  EXPECT_EQ(quarantine_.taken()->number, status.st_ino);
}

TEST_F(ConsentTest, AFileOfAnotherIsRefusedForWantOfRightsAndAMissingOneIsNot) {
  ClickAs(geteuid() + 1);
  EXPECT_TRUE(WantsRights(Of(Make("tool"))));
  EXPECT_FALSE(WantsRights(Of(Path("none"))));
  ClickAs(geteuid());
  EXPECT_FALSE(WantsRights(Of(Make("text", "x", 0644))));
}

TEST_F(ConsentTest, AFileInAFolderThatMayNotBeEnteredIsRefusedForWantOfRights) {
  GiveToNobody();
  std::filesystem::create_directories(Path("shut/in"));
  const std::string path = Make("shut/tool"), inner = Make("shut/in/tool");
  chmod(Path("shut").c_str(), 0);
  const std::string said = test::AsNobody([&] {
    return std::string(WantsRights(Of(path)) ? "wants" : "not") + (WantsRights(Of(inner)) ? "wants" : "not");
  });
  chmod(Path("shut").c_str(), 0700);
  EXPECT_EQ(said, "wantswants");
}

TEST_F(ConsentTest, TheFlatFunctionTellsWantOfRightsByItsNumber) {
  ConfigureExport(program_.c_str(), 1);
  std::string message(256, ' ');
  const auto ask = [&](const char* path) { return QuarantineExport(path, message.data(), 256); };
  EXPECT_EQ(ask("/nothing/here"), kRefused);
  std::string others = "/usr/share/common-licenses/GPL-3";
  if (geteuid() == 0) {
    others = Make("tool");
    ASSERT_EQ(chown(others.c_str(), test::kNobody, test::kNobody), 0);
  }
  EXPECT_EQ(ask(others.c_str()), kForWantOfRights);
}

TEST_F(ConsentTest, ForAnotherUserHisAutostartPlacesCountToo) {
  const Outside own = ThisComputer(), for_nobody = ThisComputerFor(geteuid());
  EXPECT_FALSE(own.any_owner);
  EXPECT_TRUE(for_nobody.any_owner);
  EXPECT_GT(for_nobody.autostart_places.size(), own.autostart_places.size());
  EXPECT_EQ(for_nobody.system_places, own.system_places);
}

}  // namespace
}  // namespace zendrix::family
