// What the family library cannot do for want of rights is asked of the helper, and nothing else is.
#include <gtest/gtest.h>

#include "platform/linux/linux_family.h"
#include "platform/memory/memory_act_helper.h"

namespace zendrix::platform {
namespace {

const std::string kEntry(32, '7');

class FamilyHelperTest : public ::testing::Test {
 protected:
  FamilyHelperTest() { family_.SetHelper(&helper_); }

  std::string Said() const { return message_.substr(0, message_.find('\0')); }
  static QuarantineEvent Of(const std::string& description) {
    return {"Running Processes", description, "17", "42"};
  }
  // An entry of the helper's quarantine, as the library writes lists.
  static std::string Line(const std::string& name, const std::string& path, const std::string& alert) {
    return name + "\t9\t" + std::string(64, 'e') + "\t1795225501\t0\t" + alert + "\t" + path + "\n";
  }

  MemoryActHelper helper_;
  LinuxFamily family_{ZENDRIX_TEST_LIBRARIES "/whole"};
  std::string message_;
};

TEST_F(FamilyHelperTest, WantOfRightsGoesToTheHelperAndItsSentenceToTheUser) {
  helper_.block = ActAnswer{true, "moved"};
  ASSERT_TRUE(family_.QuarantineExport(Of("/others:4"), message_).ok());
  EXPECT_EQ(helper_.asked, std::vector<std::string>{"Block Running Processes /others:4 17 42"});
  EXPECT_EQ(Said(), "moved");
  EXPECT_EQ(message_.size(), 256U);
}

TEST_F(FamilyHelperTest, WhereItIsPreferredItPutsAwayTheUsersOwnFiles) {
  family_.PreferHelper();
  helper_.block = ActAnswer{true, "moved"};
  ASSERT_TRUE(family_.QuarantineExport(Of("/own:4"), message_).ok());
  EXPECT_EQ(helper_.asked, std::vector<std::string>{"Block Running Processes /own:4 17 42"});
  EXPECT_EQ(Said(), "moved");
}

TEST_F(FamilyHelperTest, APreferredHelperThatIsNotThereIsAskedOnceAndTheLibraryActs) {
  ASSERT_TRUE(family_.QuarantineExport(Of("/others:4"), message_).ok());
  const std::string without = Said();
  helper_.asked.clear();
  family_.PreferHelper();
  helper_.block = Error{ErrorKind::kUnavailable, "no bus"};
  ASSERT_TRUE(family_.QuarantineExport(Of("/others:4"), message_).ok());
  EXPECT_EQ(helper_.asked.size(), 1U);
  EXPECT_EQ(Said(), without);
}

TEST_F(FamilyHelperTest, APreferredHelperThatMayHaveActedIsNotActedBehind) {
  family_.PreferHelper();
  helper_.block = Error{ErrorKind::kOther, "no reply"};
  ASSERT_TRUE(family_.QuarantineExport(Of("/own:4"), message_).ok());
  EXPECT_TRUE(Said().starts_with("No answer came in time.")) << Said();
}

TEST_F(FamilyHelperTest, APreferredHelperIsNotAskedForAPretence) {
  family_.PreferHelper();
  family_.ConfigureQuarantine("/p", true);
  ASSERT_TRUE(family_.QuarantineExport(Of("/own:4"), message_).ok());
  EXPECT_TRUE(helper_.asked.empty());
}

TEST_F(FamilyHelperTest, ARefusalOfTheUsersIsTold) {
  helper_.block = ActAnswer{false, "The question for permission was closed. Nothing was changed."};
  ASSERT_TRUE(family_.QuarantineExport(Of("/others:4"), message_).ok());
  EXPECT_EQ(Said(), "The question for permission was closed. Nothing was changed.");
}

TEST_F(FamilyHelperTest, ASentenceBeyondTheBufferIsCutWithinIt) {
  helper_.block = ActAnswer{false, std::string(1000, 'x')};
  ASSERT_TRUE(family_.QuarantineExport(Of("/others:4"), message_).ok());
  EXPECT_EQ(Said().size(), 255U);
  EXPECT_EQ(message_.size(), 256U);
}

TEST_F(FamilyHelperTest, OtherRefusalsAreNotTheHelpers) {
  helper_.block = ActAnswer{true, "moved"};
  ASSERT_TRUE(family_.QuarantineExport(Of("/mine:4"), message_).ok());
  EXPECT_TRUE(helper_.asked.empty());
  EXPECT_EQ(Said(), "quarantined /mine:4 (256) of Running Processes at 17 for 42");
}

TEST_F(FamilyHelperTest, WithoutAHelperTheLibrarysWordStands) {
  ASSERT_TRUE(family_.QuarantineExport(Of("/others:4"), message_).ok());
  EXPECT_EQ(Said(), "quarantined /others:4 (256) of Running Processes at 17 for 42");
  family_.SetHelper(nullptr);
  ASSERT_TRUE(family_.QuarantineExport(Of("/others:4"), message_).ok());
  EXPECT_EQ(Said(), "quarantined /others:4 (256) of Running Processes at 17 for 42");
  EXPECT_EQ(helper_.asked.size(), 1U);
}

TEST_F(FamilyHelperTest, NoAnswerIsToldAsNotKnown) {
  helper_.block = Error{ErrorKind::kOther, "late"};
  ASSERT_TRUE(family_.QuarantineExport(Of("/others:4"), message_).ok());
  EXPECT_NE(Said().find("No answer came in time."), std::string::npos);
}

TEST_F(FamilyHelperTest, WhoeverOnlyPretendsAsksNobody) {
  helper_.block = helper_.allow = ActAnswer{true, "done"};
  helper_.list = ActAnswer{true, Line(kEntry, "/others", "42")};
  family_.ConfigureQuarantine("/", true);
  ASSERT_TRUE(family_.QuarantineExport(Of("/others:4"), message_).ok());
  ASSERT_TRUE(family_.UnquarantineExport(Of("/others:4"), message_).ok());
  EXPECT_FALSE(family_.RestoreExport(kEntry, message_).value());
  EXPECT_EQ(family_.QuarantineList().value().size(), 2U);
  EXPECT_TRUE(helper_.asked.empty());
}

// An installed user who had never had a file of his own put away was told that a folder cannot be found.
TEST_F(FamilyHelperTest, WhereItIsPreferredItsListIsToldWithoutAStoreOfTheUsersAndWithoutActing) {
  helper_.list = ActAnswer{true, Line(kEntry, "/others", "42")};
  family_.PreferHelper();
  family_.ConfigureQuarantine("/no/such/folder", true);
  const auto list = family_.QuarantineList();
  ASSERT_TRUE(list.ok()) << list.error().text;
  ASSERT_EQ(list.value().size(), 1U);
  EXPECT_EQ(list.value()[0].path, "/others");
  EXPECT_EQ(helper_.asked, std::vector<std::string>{"List"});
}

TEST_F(FamilyHelperTest, TheListHoldsBothQuarantinesTheNewestFirst) {
  helper_.list = ActAnswer{true, Line(kEntry, "/others", "42")};
  const auto list = family_.QuarantineListOf("42").value();
  ASSERT_EQ(list.size(), 2U);
  EXPECT_EQ(list[0].name, kEntry);
  EXPECT_EQ(list[1].name, std::string(32, 'a'));
  helper_.list = ActAnswer{false, "cannot be used"};
  EXPECT_EQ(family_.QuarantineListOf("42").value().size(), 1U);
}

TEST_F(FamilyHelperTest, AnEntryOfTheHelpersIsRestoredByIt) {
  helper_.list = ActAnswer{true, Line(kEntry, "/others", "42")};
  helper_.allow = ActAnswer{true, "back"};
  EXPECT_TRUE(family_.RestoreExport(kEntry, message_).value());
  EXPECT_EQ(Said(), "back");
  EXPECT_EQ(helper_.asked.back(), "Allow " + kEntry);
  helper_.allow = ActAnswer{false, "no"};
  EXPECT_FALSE(family_.RestoreExport(kEntry, message_).value());
  EXPECT_EQ(Said(), "no");
}

TEST_F(FamilyHelperTest, AnEntryOfNobodysIsTheLibrarysRefusal) {
  helper_.list = ActAnswer{true, Line(kEntry, "/others", "42")};
  helper_.allow = ActAnswer{true, "back"};
  EXPECT_FALSE(family_.RestoreExport(std::string(32, '8'), message_).value());
  EXPECT_EQ(Said(), "asked for " + std::string(32, '8'));
  EXPECT_EQ(helper_.asked, std::vector<std::string>{"List"});
  EXPECT_TRUE(family_.RestoreExport("abc", message_).value());
  EXPECT_EQ(helper_.asked.size(), 1U);
}

TEST_F(FamilyHelperTest, AllowBringsBackTheEntryOfItsAlertOrTheNewestOfItsPath) {
  const std::string older(32, '6');
  helper_.list = ActAnswer{true, Line(std::string(32, '5'), "/else", "42") + Line(kEntry, "/others", "50") +
                                     Line(older, "/others", "42")};
  helper_.allow = ActAnswer{true, "back"};
  ASSERT_TRUE(family_.UnquarantineExport(Of("/others:4"), message_).ok());
  EXPECT_EQ(helper_.asked.back(), "Allow " + older);
  EXPECT_EQ(Said(), "back");
  ASSERT_TRUE(family_.UnquarantineExport({"Running Processes", "/others:4", "17", "77"}, message_).ok());
  EXPECT_EQ(helper_.asked.back(), "Allow " + kEntry);
}

TEST_F(FamilyHelperTest, AllowOfWhatTheHelperHasNotIsTheLibrarysRefusal) {
  helper_.list = ActAnswer{true, Line(kEntry, "/else", "42")};
  ASSERT_TRUE(family_.UnquarantineExport(Of("/others:4"), message_).ok());
  EXPECT_EQ(Said(), "released /others:4 (256)");
  EXPECT_EQ(helper_.asked, std::vector<std::string>{"List"});
  ASSERT_TRUE(family_.UnquarantineExport(Of("/mine:4"), message_).ok());
  EXPECT_EQ(helper_.asked.size(), 1U);
}

}  // namespace
}  // namespace zendrix::platform
