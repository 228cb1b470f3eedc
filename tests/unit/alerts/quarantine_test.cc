#include "alerts/quarantine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

#include "platform/memory/memory_family.h"

namespace zendrix::alerts {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// A quarantine whose calls can fail one by one.
class FailingFamily : public platform::MemoryFamily {
 public:
  std::optional<platform::Error> list_error, restore_error;
  bool stays_away = false;

  platform::Result<std::vector<platform::QuarantineEntry>> QuarantineList() override {
    if (list_error) return *list_error;
    return MemoryFamily::QuarantineList();
  }
  platform::Result<bool> RestoreExport(const std::string& name, std::string& message) override {
    if (restore_error) return *restore_error;
    auto done = MemoryFamily::RestoreExport(name, message);
    if (stays_away) return false;
    return done;
  }
};

class QuarantineTest : public ::testing::Test {
 protected:
  QuarantineTest() {
    family_.quarantine_entries = {{"0002", "/home/u/two", 2, "beef", 20, 0, "200"},
                                  {"0001", "/home/u/one", 1, "cafe", 10, 0, "100"}};
  }
  FailingFamily family_;
};

TEST_F(QuarantineTest, EntriesAreTheLibrarysInItsOrder) {
  const QuarantineContents contents = ReadQuarantine(family_);
  EXPECT_EQ(contents.entries, family_.quarantine_entries);
  EXPECT_EQ(contents.failure, "");
}

TEST_F(QuarantineTest, ListThatCannotBeHadSaysWhyInTheLibrarysWordsOrItsOwn) {
  family_.list_error = platform::Error{platform::ErrorKind::kPermissionDenied, "Only root reads it."};
  EXPECT_EQ(ReadQuarantine(family_).failure, "Only root reads it.");
  EXPECT_THAT(ReadQuarantine(family_).entries, IsEmpty());
  family_.list_error = platform::Error{platform::ErrorKind::kPermissionDenied, ""};
  EXPECT_EQ(ReadQuarantine(family_).failure, "The quarantine cannot be read.");
}

TEST_F(QuarantineTest, EntryOfThisNameIsPutBackAndTheLibrarysSentenceTold) {
  family_.ScriptMessage("It is back.");
  const RestoreOutcome outcome = RestoreFromQuarantine(family_, "0001");
  EXPECT_TRUE(outcome.restored);
  EXPECT_EQ(outcome.path, "/home/u/one");
  EXPECT_EQ(outcome.told, "It is back.");
  EXPECT_THAT(family_.restore_calls, ElementsAre("0001"));
}

TEST_F(QuarantineTest, MessageThatTheLibraryDidNotEndIsNotTold) {
  const RestoreOutcome outcome = RestoreFromQuarantine(family_, "0002");
  EXPECT_TRUE(outcome.restored);
  EXPECT_EQ(outcome.path, "/home/u/two");
  EXPECT_EQ(outcome.told, "");
}

TEST_F(QuarantineTest, FileThatStaysAwayIsNotToldAsRestored) {
  family_.stays_away = true;
  family_.ScriptMessage("Another file is in its place.");
  const RestoreOutcome outcome = RestoreFromQuarantine(family_, "0001");
  EXPECT_FALSE(outcome.restored);
  EXPECT_EQ(outcome.told, "Another file is in its place.");
}

TEST_F(QuarantineTest, NameThatIsNotThereReachesTheLibraryNever) {
  const RestoreOutcome outcome = RestoreFromQuarantine(family_, "0003");
  EXPECT_FALSE(outcome.restored);
  EXPECT_EQ(outcome.path, "");
  EXPECT_EQ(outcome.told, "There is no such entry in quarantine.");
  EXPECT_THAT(family_.restore_calls, IsEmpty());
}

TEST_F(QuarantineTest, UnreadableQuarantinePutsNothingBackAndSaysWhy) {
  family_.list_error = platform::Error{platform::ErrorKind::kPermissionDenied, "Only root reads it."};
  const RestoreOutcome outcome = RestoreFromQuarantine(family_, "0001");
  EXPECT_FALSE(outcome.restored);
  EXPECT_EQ(outcome.told, "Only root reads it.");
  EXPECT_THAT(family_.restore_calls, IsEmpty());
}

TEST_F(QuarantineTest, CallThatFailsTellsItsReasonAndTheFile) {
  family_.restore_error = platform::Error{platform::ErrorKind::kPermissionDenied, "Not by this user."};
  const RestoreOutcome outcome = RestoreFromQuarantine(family_, "0001");
  EXPECT_FALSE(outcome.restored);
  EXPECT_EQ(outcome.path, "/home/u/one");
  EXPECT_EQ(outcome.told, "Not by this user.");
}

}  // namespace
}  // namespace zendrix::alerts
