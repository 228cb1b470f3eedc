#include "agent/record/recording.h"

#include <gmock/gmock.h>

#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <fstream>
#include <sstream>

#include "platform/memory/fake_clock.h"
#include "platform/memory/memory_files.h"
#include "support/temporary_folder.h"

namespace zendrix::agent {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;

class RecordingTest : public ::testing::Test {
 protected:
  platform::MemoryFiles files;
  platform::FakeClock clock;
  std::ostringstream errors;
  Recording recording{files, clock, errors, "/z", Form::kHome, {"vm", "42"}};
};

TEST_F(RecordingTest, LogBeginsAnewWhenItIsLargeAndTheOneBeforeIsKept) {
  const std::string full(Recording::kMostLogBytes, 'x');
  files.Put("/z/KorvessaEventLog-old.kvl", "older");
  files.Put("/z/KorvessaEventLog.kvl", full);
  recording.Log("one more");
  EXPECT_EQ(files.Get("/z/KorvessaEventLog-old.kvl"), full);
  EXPECT_THAT(files.Get("/z/KorvessaEventLog.kvl"), EndsWith(",vm,42,one more\r\n"));
  recording.Log("and another");
  EXPECT_EQ(files.Get("/z/KorvessaEventLog-old.kvl"), full);
}

// What the mailer told never came into the log again once the Agent had begun it anew.
TEST_F(RecordingTest, LogThatBeginsAnewHasTheRightsOfTheOneBefore) {
  std::vector<std::string> made;
  Recording with_rights(files, clock, errors, "/z", Form::kHome, {"vm", "42"},
                        [&](const std::string& path, const std::string& like) {
                          made.push_back(path + " like " + like);
                          EXPECT_FALSE(files.Has(path)) << "one that a kill left is in the way";
                          EXPECT_TRUE(files.Has(like));
                          files.Put(path, "the one with rights;");
                          return true;
                        });
  files.Put("/z/KorvessaEventLog-new.kvl", "left by a kill");
  const std::string full(Recording::kMostLogBytes, 'x');
  files.Put("/z/KorvessaEventLog.kvl", full);
  with_rights.Log("one more");
  EXPECT_THAT(made, ElementsAre("/z/KorvessaEventLog-new.kvl like /z/KorvessaEventLog.kvl"));
  EXPECT_TRUE(files.Get("/z/KorvessaEventLog.kvl").starts_with("the one with rights;"));
  EXPECT_EQ(files.Get("/z/KorvessaEventLog-old.kvl"), full);
  EXPECT_FALSE(files.Has("/z/KorvessaEventLog-new.kvl"));
}

TEST_F(RecordingTest, LogWhoseRightsCannotBeGivenBeginsAnewAllTheSame) {
  Recording without(files, clock, errors, "/z", Form::kHome, {"vm", "42"},
                    [](const std::string&, const std::string&) { return false; });
  files.Put("/z/KorvessaEventLog.kvl", std::string(Recording::kMostLogBytes, 'x'));
  without.Log("one more");
  EXPECT_THAT(files.Get("/z/KorvessaEventLog.kvl"), EndsWith(",vm,42,one more\r\n"));
  EXPECT_LT(files.Get("/z/KorvessaEventLog.kvl").size(), 100U);
}

class RightsTest : public ::testing::Test {
 protected:
  // Of the file, by its owner, for user 4711 "rw-"; see acl(5) and linux/posix_acl_xattr.h: version, then
  // tag, permissions and id of each entry.
  static std::string ListWithOneMore() {
    std::string list("\x02\0\0\0", 4);
    const auto entry = [&](std::uint16_t tag, std::uint16_t rights, std::uint32_t id) {
      for (const std::uint16_t half : {tag, rights}) list.append({static_cast<char>(half & 255U), '\0'});
      for (int i = 0; i < 4; ++i)
        list.push_back(static_cast<char>((id >> (8U * static_cast<unsigned>(i))) & 255U));
    };
    constexpr std::uint32_t kNobody = 0xFFFFFFFF;
    entry(1, 6, kNobody);
    entry(2, 6, 4711);
    entry(4, 4, kNobody);
    entry(16, 6, kNobody);
    entry(32, 0, kNobody);
    return list;
  }

  test::TemporaryFolder folder;
  const std::string like = folder.Path("like");
  const std::string made = folder.Path("made");
};

TEST_F(RightsTest, PermissionsAreThoseOfTheOther) {
  std::ofstream(like) << "text";
  ASSERT_EQ(chmod(like.c_str(), 0642), 0);
  ASSERT_TRUE(MakeFileLike(made, like));
  struct stat facts = {};
  ASSERT_EQ(stat(made.c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mode & 07777, 0642U);
  EXPECT_EQ(facts.st_size, 0);
  EXPECT_FALSE(MakeFileLike(made, like)) << "what is there is left as it is";
}

TEST_F(RightsTest, ListOfFurtherOnesIsThatOfTheOther) {
  std::ofstream(like) << "text";
  const std::string list = ListWithOneMore();
  if (setxattr(like.c_str(), "system.posix_acl_access", list.data(), list.size(), 0) != 0)
    GTEST_SKIP() << "this file system keeps no access lists";
  ASSERT_TRUE(MakeFileLike(made, like));
  std::string found(200, '\0');
  const ssize_t size = getxattr(made.c_str(), "system.posix_acl_access", found.data(), found.size());
  ASSERT_GT(size, 0);
  EXPECT_EQ(found.substr(0, static_cast<std::size_t>(size)), list);
}

TEST_F(RightsTest, LinksAreNotFollowed) {
  std::ofstream(folder.Path("target")) << "text";
  ASSERT_EQ(symlink(folder.Path("target").c_str(), like.c_str()), 0);
  EXPECT_FALSE(MakeFileLike(made, like));
  EXPECT_NE(access(made.c_str(), F_OK), 0);
}

}  // namespace
}  // namespace zendrix::agent
