#include "platform/linux/process_lock.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "child_process.h"
#include "support/temporary_folder.h"

namespace zendrix::platform {
namespace {

using test::ChildProcess;

class ProcessLockTest : public ::testing::Test {
 protected:
  std::string Path() const { return folder_.Path("lock"); }
  // A process that takes the lock, says how that went, and makes itself ready when it hears a byte.
  ChildProcess Child() const {
    return ChildProcess([path = Path()](const ChildProcess::Line& parent) {
      ProcessLock lock;
      parent.Tell(static_cast<char>('0' + static_cast<int>(lock.Acquire(path))));
      parent.Hear();
      lock.SetReady();
      parent.Tell('r');
      parent.Hear();
      return 0;
    });
  }
  static constexpr char kHeld = '0' + static_cast<char>(LockOutcome::kHeld);
  static constexpr char kTaken = '0' + static_cast<char>(LockOutcome::kTaken);

  test::TemporaryFolder folder_;
};

TEST_F(ProcessLockTest, HolderIsNamedUntilItEnds) {
  EXPECT_FALSE(HolderOf(Path()));
  ChildProcess holder = Child();
  ASSERT_EQ(holder.Hear(), kHeld);
  ASSERT_TRUE(HolderOf(Path()));
  EXPECT_EQ(HolderOf(Path())->process, holder.pid());
  EXPECT_FALSE(HolderOf(Path())->ready);
  holder.Tell('g');
  ASSERT_EQ(holder.Hear(), 'r');
  EXPECT_TRUE(HolderOf(Path())->ready);
  holder.Tell('g');
  holder.Wait();
  EXPECT_FALSE(HolderOf(Path()));
}

TEST_F(ProcessLockTest, OnlyOneProcessGetsIt) {
  ChildProcess first = Child();
  ASSERT_EQ(first.Hear(), kHeld);
  ChildProcess second = Child();
  EXPECT_EQ(second.Hear(), kTaken);
  EXPECT_EQ(HolderOf(Path())->process, first.pid());
}

TEST_F(ProcessLockTest, FileOfAKilledHolderLocksNobodyOut) {
  {
    ChildProcess killed = Child();
    ASSERT_EQ(killed.Hear(), kHeld);
    killed.Kill();
  }
  EXPECT_FALSE(HolderOf(Path()));
  ChildProcess next = Child();
  EXPECT_EQ(next.Hear(), kHeld);
}

// A number in the file would have said that the holder of another folder holds this one too.
TEST_F(ProcessLockTest, CopyOfAHeldFileIsHeldByNobody) {
  ChildProcess holder = Child();
  ASSERT_EQ(holder.Hear(), kHeld);
  folder_.Write("copy", folder_.Read("lock"));
  EXPECT_FALSE(HolderOf(folder_.Path("copy")));
}

TEST_F(ProcessLockTest, LinksAndForeignThingsAreUnusable) {
  folder_.Write("victim", "");
  ASSERT_EQ(symlink(folder_.Path("victim").c_str(), Path().c_str()), 0);
  EXPECT_EQ(ProcessLock().Acquire(Path()), LockOutcome::kUnusable);
  ASSERT_EQ(unlink(Path().c_str()), 0);
  ASSERT_EQ(link(folder_.Path("victim").c_str(), Path().c_str()), 0);
  EXPECT_EQ(ProcessLock().Acquire(Path()), LockOutcome::kUnusable);
  ASSERT_EQ(unlink(Path().c_str()), 0);
  ASSERT_EQ(mkfifo(Path().c_str(), 0600), 0);
  EXPECT_EQ(ProcessLock().Acquire(Path()), LockOutcome::kUnusable);
  EXPECT_FALSE(HolderOf(Path()));
  EXPECT_EQ(ProcessLock().Acquire(folder_.Path("no/folder")), LockOutcome::kUnusable);
  EXPECT_EQ(ProcessLock().Acquire(std::string("a\0b", 3)), LockOutcome::kUnusable);
  EXPECT_FALSE(HolderOf(std::string("a\0b", 3)));
}

TEST_F(ProcessLockTest, FileIsItsOwnersAlone) {
  ProcessLock lock;
  ASSERT_EQ(lock.Acquire(Path()), LockOutcome::kHeld);
  struct stat status {};
  ASSERT_EQ(stat(Path().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0600U);
}

TEST_F(ProcessLockTest, RemovedFileCannotBeFound) {
  ProcessLock lock;
  ASSERT_EQ(lock.Acquire(Path()), LockOutcome::kHeld);
  EXPECT_TRUE(lock.CanBeFound());
  ASSERT_EQ(unlink(Path().c_str()), 0);
  EXPECT_FALSE(lock.CanBeFound());
}

// Somebody of the group may know that the Agent runs, but not open its lock, which he could then take.
TEST_F(ProcessLockTest, HolderOfAFileThatMayNotBeReadIsToldByTheKernel) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can become somebody else";
  ChildProcess holder = Child();
  ASSERT_EQ(holder.Hear(), kHeld);
  ASSERT_EQ(chmod(folder_.path().c_str(), 0711), 0);
  ChildProcess viewer([path = Path()](const ChildProcess::Line& parent) {
    constexpr uid_t kNobody = 65534;
    if (setgid(kNobody) != 0 || setuid(kNobody) != 0) return 1;
    while (parent.Hear() == 'l') {
      const auto found = HolderOf(path);
      parent.Tell(!found ? '-' : found->ready ? 'r' : found->process == 0 ? '0' : 'h');
    }
    return 0;
  });
  viewer.Tell('l');
  EXPECT_EQ(viewer.Hear(), 'h');
  holder.Tell('g');
  ASSERT_EQ(holder.Hear(), 'r');
  viewer.Tell('l');
  EXPECT_EQ(viewer.Hear(), 'r');
  holder.Tell('g');
  holder.Wait();
  viewer.Tell('l');
  EXPECT_EQ(viewer.Hear(), '-');
  viewer.Tell('e');
  viewer.Wait();
}

TEST(LockTableTest, OnlyARecordOfThisFileThatIsHeldForWritingIsTheLock) {
  const std::string_view table =
      "1: POSIX  ADVISORY  WRITE 10 fe:00:5 0 0\n"
      "1: -> POSIX  ADVISORY  WRITE 11 fe:00:7 0 0\n"
      "2: FLOCK  ADVISORY  WRITE 12 fe:00:7 0 EOF\n"
      "3: POSIX  ADVISORY  READ 13 fe:00:7 0 0\n"
      "4: POSIX  ADVISORY  WRITE 14 fe:00:7 1 1\n"
      "rubbish\n"
      "5: POSIX  ADVISORY  WRITE 15 fe:00:7 0 0\n"
      "6: POSIX  ADVISORY  WRITE 16 fe:00:8 0 1\n"
      "7: POSIX  ADVISORY  WRITE -1 fe:00:9 0 0\n";
  ASSERT_TRUE(HolderInTable(table, "fe:00:7"));
  EXPECT_EQ(HolderInTable(table, "fe:00:7")->process, 15);
  EXPECT_FALSE(HolderInTable(table, "fe:00:7")->ready);
  EXPECT_TRUE(HolderInTable(table, "fe:00:8")->ready);
  EXPECT_EQ(HolderInTable(table, "fe:00:9")->process, 0);
  EXPECT_FALSE(HolderInTable(table, "fe:00:70"));
  EXPECT_FALSE(HolderInTable("", "fe:00:7"));
}

}  // namespace
}  // namespace zendrix::platform
