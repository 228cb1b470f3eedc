#include "platform/linux/process_lock.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

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

}  // namespace
}  // namespace zendrix::platform
