#include "platform/linux/left_overs.h"

#include <fcntl.h>
#include <sys/file.h>

#include <filesystem>
#include <fstream>

#include "platform/linux/linux_files.h"
#include "platform/linux/posix.h"
#include "support/temporary_folder.h"

namespace zendrix::platform {
namespace {

class LeftOversTest : public ::testing::Test {
 protected:
  std::string Make(const std::string& name) {
    const std::string path = JoinPath(folder_, name);
    std::ofstream(path) << "half written";
    return path;
  }

  test::TemporaryFolder temporary_;
  const std::string folder_ = temporary_.path();
  LinuxFiles files_;
};

TEST_F(LeftOversTest, TheFirstWriteIntoAFolderTakesAwayTemporariesOfKilledProcesses) {
  const std::string left = Make(".zendrix-0123456789abcdef.tmp");
  ASSERT_TRUE(files_.WriteAll(JoinPath(folder_, "a.kvl"), "text").ok());
  EXPECT_FALSE(files_.Exists(left));
  EXPECT_EQ(files_.ReadAll(JoinPath(folder_, "a.kvl")).value(), "text");
}

TEST_F(LeftOversTest, ATemporaryThatAnotherProcessIsWritingStays) {
  const std::string path = Make(".zendrix-0123456789abcdef.tmp");
  const FileDescriptor writer(open(path.c_str(), O_WRONLY | O_CLOEXEC));
  ASSERT_TRUE(ClaimTemporary(writer.get()));
  SweepLeftOvers(folder_);
  EXPECT_TRUE(files_.Exists(path));
}

TEST_F(LeftOversTest, OtherFilesFoldersAndLinksStay) {
  const std::string target = Make("monitoring.kvl");
  Make(".zendrix-note");
  Make("zendrix-1.tmp");
  std::filesystem::create_directory(JoinPath(folder_, ".zendrix-folder.tmp"));
  std::filesystem::create_symlink(target, JoinPath(folder_, ".zendrix-link.tmp"));
  SweepLeftOvers(folder_);
  EXPECT_EQ(files_.List(folder_).value().size(), 5U);
  EXPECT_TRUE(files_.Exists(target));
}

TEST_F(LeftOversTest, ATemporaryThatWasSweptBeforeItWasClaimedIsNotUsed) {
  const std::string path = Make(".zendrix-0123456789abcdef.tmp");
  const FileDescriptor writer(open(path.c_str(), O_WRONLY | O_CLOEXEC));
  SweepLeftOvers(folder_);
  EXPECT_FALSE(files_.Exists(path));
  EXPECT_FALSE(ClaimTemporary(writer.get()));
}

TEST_F(LeftOversTest, AFolderThatCannotBeReadIsPassedOver) {
  SweepLeftOvers(JoinPath(folder_, "missing"));
  EXPECT_TRUE(files_.FolderExists(folder_));
}

}  // namespace
}  // namespace zendrix::platform
