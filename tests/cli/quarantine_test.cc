// quarantine list, quarantine restore.
#include <gmock/gmock.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <ctime>

#include "cli/inspector.h"

namespace zendrix::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class QuarantineCommandTest : public InspectorTest {
 protected:
  QuarantineCommandTest() { WriteSettings(); }

  // A program of one's own outside the program folder, and an alert (ID 3) about it.
  void HaveProgram(const std::string& name) {
    elsewhere_.Write(name, "program");
    program_ = elsewhere_.Path(name);
    chmod(program_.c_str(), 0755);
    WriteHistory(Event(0, "Aggregation", "a", "0.99", "", "Q,1") + Event(1, "Windows Folder", program_) +
                 Event(2, "Aggregation", "Windows Folder=" + program_ + ";x", "0.99", "", "R,1") +
                 Event(3, "Community", "observed", "0", "Windows Folder=failed"));
  }
  // Whether the folder is on a disk: a store in memory is refused, and then that is what is seen.
  bool OnDisk() const {
    struct statfs system = {};
    EXPECT_EQ(statfs(folder_.path().c_str(), &system), 0);
    return system.f_type != TMPFS_MAGIC && system.f_type != RAMFS_MAGIC;
  }
  bool IsThere() const { return access(program_.c_str(), F_OK) == 0; }
  Json Block() { return DocumentWriting({"act", "3", "do"}); }

  const TemporaryFolder elsewhere_;
  std::string program_;
};

TEST_F(QuarantineCommandTest, NothingInQuarantineIsAnEmptyList) {
  const Json document = Document({"quarantine", "list"});
  EXPECT_THAT(KeysOf(document), ElementsAre("entries", "messages", "log"));
  EXPECT_EQ(document["entries"], Json::array());
  EXPECT_THAT(BoxTexts(document), IsEmpty());
}

TEST_F(QuarantineCommandTest, WhatWasBlockedIsListedWithAllThatIsKnownOfIt) {
  HaveProgram("t\xc3\xb6ol");
  const Json blocked = Block();
  ASSERT_EQ(BoxTexts(blocked).size(), 1U);
  if (!OnDisk()) {
    EXPECT_THAT(BoxTexts(blocked)[0], HasSubstr("would not outlive a restart"));
    EXPECT_TRUE(IsThere());
    return;
  }
  EXPECT_FALSE(IsThere()) << BoxTexts(blocked)[0];
  const Json entries = Document({"quarantine", "list"})["entries"];
  ASSERT_EQ(entries.size(), 1U);
  const Json& entry = entries[0];
  EXPECT_THAT(KeysOf(entry), ElementsAre("name", "path", "size", "sha256", "when", "owner", "alert"));
  EXPECT_EQ(entry["name"].get<std::string>().size(), 32U);
  EXPECT_EQ(entry["path"], program_);
  EXPECT_EQ(entry["size"], 7);
  EXPECT_EQ(entry["sha256"], "1310ca2c8932dbd118668bd97442558a3e1f546b5e15c69699dfbd6024f548d8");
  EXPECT_LE(entry["when"].get<std::int64_t>(), time(nullptr));
  EXPECT_EQ(entry["owner"], geteuid());
  EXPECT_EQ(entry["alert"], std::to_string(kStart + 2));
}

TEST_F(QuarantineCommandTest, RestoreMovesOnlyWhenWriting) {
  HaveProgram("tool");
  Block();
  const Json entries = Document({"quarantine", "list"})["entries"];
  ASSERT_EQ(entries.size(), OnDisk() ? 1U : 0U);
  if (!OnDisk()) return;
  const std::string name = entries[0]["name"];
  const auto before = Listing(folder_.path());
  const Json pretended = Document({"quarantine", "restore", name});
  EXPECT_EQ(pretended["restored"], program_);
  EXPECT_FALSE(IsThere());
  EXPECT_EQ(Listing(folder_.path()), before);
  const Json done = DocumentWriting({"quarantine", "restore", name});
  EXPECT_THAT(KeysOf(done), ElementsAre("restored", "messages", "log"));
  EXPECT_EQ(done["restored"], program_);
  EXPECT_EQ(elsewhere_.Read("tool"), "program");
  EXPECT_EQ(Document({"quarantine", "list"})["entries"], Json::array());
}

TEST_F(QuarantineCommandTest, WhatCannotBeRestoredIsAnErrorWithItsReason) {
  EXPECT_EQ(DocumentOf(3, {"quarantine", "restore", std::string(32, '0')})["error"],
            "There is no such entry in quarantine.");
  HaveProgram("tool");
  Block();
  const Json entries = Document({"quarantine", "list"})["entries"];
  ASSERT_EQ(entries.size(), OnDisk() ? 1U : 0U);
  if (!OnDisk()) return;
  elsewhere_.Write("tool", "another");
  const Json document = DocumentOf(3, {"--write", "quarantine", "restore", entries[0]["name"]});
  EXPECT_THAT(document["error"].get<std::string>(), HasSubstr("There is another file named"));
  EXPECT_EQ(elsewhere_.Read("tool"), "another");
}

TEST_F(QuarantineCommandTest, OtherWordsAreWrongUsage) {
  for (const Arguments& words :
       {Arguments{"quarantine"}, Arguments{"quarantine", "list", "x"}, Arguments{"quarantine", "restore"},
        Arguments{"quarantine", "restore", "a", "b"}, Arguments{"quarantine", "empty"}}) {
    const Ended ended = Run(words);
    EXPECT_EQ(ended.status, 2);
    EXPECT_EQ(ended.out, "");
    EXPECT_THAT(ended.err, HasSubstr("usage: quarantine list | quarantine restore NAME"));
  }
}

}  // namespace
}  // namespace zendrix::test
