#include "platform/linux/linux_instance_lock.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <vector>

#include "child_process.h"
#include "family/korvessa_crypto_services.h"
#include "platform/linux/local_socket.h"
#include "platform/linux/poll_loop.h"
#include "support/environment.h"
#include "support/temporary_folder.h"

namespace zendrix::platform {
namespace {

using test::ChildProcess;
using Folders = std::vector<RuntimeFolder>;

constexpr unsigned kOneUser = 65533;
constexpr unsigned kAnotherUser = 65532;

bool Readable(int fd) {
  pollfd waiting{fd, POLLIN, 0};
  return poll(&waiting, 1, 0) == 1;
}

// Runs `body` as that user, with the given exit status. Needs the administrator.
int AsUser(unsigned user, const std::function<int()>& body) {
  ChildProcess child(
      [&](const ChildProcess::Line&) { return setgid(user) != 0 || setuid(user) != 0 ? 97 : body(); });
  return child.Wait();
}

class LinuxInstanceLockTest : public ::testing::Test {
 protected:
  LinuxInstanceLock Lock() const { return LinuxInstanceLock(Folders{{runtime_.path(), false}}); }
  // A lock that shares no folder with the others, as one with another environment or of another user.
  static LinuxInstanceLock Elsewhere() { return LinuxInstanceLock(Folders{}); }

  std::string Stem() const {
    char hash[65];
    family::HashBytes(name_.data(), name_.size(), hash, sizeof hash);
    return std::string("zendrix-instance-") + hash;
  }
  std::string GlobalName(int number) const { return Stem() + "-" + std::to_string(number); }
  std::string LockFileName() const { return Stem() + ".lock"; }
  std::string SocketName() const { return Stem().substr(0, Stem().size() - 32); }
  bool IsInFolder(const std::string& name) const {
    return std::filesystem::exists(std::filesystem::symlink_status(runtime_.Path(name)));
  }

  // A process that runs another program by now and sits on the names across users.
  ChildProcess Squatter(int names) const {
    ChildProcess squatter([=, this](const ChildProcess::Line& parent) {
      std::vector<FileDescriptor> held;
      for (int i = 0; i < names; ++i) {
        bool taken = false;
        held.push_back(ListenAt(LocalAddress::OfName(GlobalName(i)), taken));
        if (!held.back()) return 1;
        fcntl(held.back().get(), F_SETFD, 0);
      }
      parent.Become("cat");
      return 2;
    });
    squatter.Tell('x');
    EXPECT_EQ(squatter.Hear(), 'x');
    return squatter;
  }
  // A process of that user that holds the lock without a folder. Needs the administrator.
  ChildProcess HolderOf(unsigned user) const {
    ChildProcess holder([=, this](const ChildProcess::Line& parent) {
      if (setgid(user) != 0 || setuid(user) != 0) return 97;
      LinuxInstanceLock lock = Elsewhere();
      parent.Tell(lock.Acquire(name_) ? 'y' : 'n');
      parent.Hear();
      return 0;
    });
    EXPECT_EQ(holder.Hear(), 'y');
    return holder;
  }
  // How often the holder is to come forward when the other asks once.
  int Asked(LinuxInstanceLock& holder, LinuxInstanceLock other) const {
    int forward = 0;
    holder.OnAskedToComeForward([&] { ++forward; });
    other.AskToComeForward(name_);
    holder.HandleRequests();
    holder.OnAskedToComeForward({});
    return forward;
  }

  test::TemporaryFolder runtime_;
  // A name that no other run of the tests has.
  const std::string name_ = std::string("Global\\") +
                            ::testing::UnitTest::GetInstance()->current_test_info()->name() +
                            std::to_string(getpid());
};

TEST_F(LinuxInstanceLockTest, SecondHolderIsRefusedUntilTheFirstLetsGo) {
  LinuxInstanceLock first = Lock();
  LinuxInstanceLock second = Lock();
  EXPECT_EQ(first.Descriptor(), -1);
  EXPECT_TRUE(first.Acquire(name_));
  EXPECT_GE(first.Descriptor(), 0);
  EXPECT_TRUE(first.Acquire(name_));
  EXPECT_FALSE(second.Acquire(name_));
  EXPECT_EQ(second.Descriptor(), -1);
  EXPECT_TRUE(second.Acquire(name_ + "x"));
  // Who is refused keeps what it has.
  EXPECT_FALSE(second.Acquire(name_));
  EXPECT_FALSE(first.Acquire(name_ + "x"));
  second.Release();
  first.Release();
  EXPECT_EQ(first.Descriptor(), -1);
  EXPECT_TRUE(second.Acquire(name_));
}

TEST_F(LinuxInstanceLockTest, AnotherNameTakesThePlaceOfTheFirst) {
  LinuxInstanceLock lock = Lock();
  ASSERT_TRUE(lock.Acquire(name_));
  ASSERT_TRUE(lock.Acquire(name_ + "x"));
  EXPECT_TRUE(Lock().Acquire(name_));
  EXPECT_TRUE(Elsewhere().Acquire(name_));
}

// Each lock alone is enough: the file where the names are gone, the names where the folders differ.
TEST_F(LinuxInstanceLockTest, HolderWithAnotherRuntimeFolderIsSeen) {
  LinuxInstanceLock holder = Lock();
  ASSERT_TRUE(holder.Acquire(name_));
  EXPECT_FALSE(Elsewhere().Acquire(name_));
  const test::TemporaryFolder other;
  EXPECT_FALSE(LinuxInstanceLock(Folders{{other.path(), false}}).Acquire(name_));
  holder.Release();
  LinuxInstanceLock homeless = Elsewhere();
  ASSERT_TRUE(homeless.Acquire(name_));
  EXPECT_FALSE(Lock().Acquire(name_));
}

TEST_F(LinuxInstanceLockTest, LockOfAKilledProcessIsFreeAtOnce) {
  for (int round = 0; round < 5; ++round) {
    ChildProcess holder([&](const ChildProcess::Line& parent) {
      LinuxInstanceLock lock = Lock();
      parent.Tell(lock.Acquire(name_) ? 'y' : 'n');
      parent.Hear();
      return 0;
    });
    ASSERT_EQ(holder.Hear(), 'y');
    LinuxInstanceLock lock = Lock();
    ASSERT_FALSE(lock.Acquire(name_));
    ASSERT_FALSE(Elsewhere().Acquire(name_));
    holder.Kill();
    // What the dead process left behind is in nobody's way, and requests find the new holder.
    ASSERT_TRUE(lock.Acquire(name_));
    Lock().AskToComeForward(name_);
    EXPECT_TRUE(Readable(lock.Descriptor()));
  }
}

TEST_F(LinuxInstanceLockTest, LockIsNotHandedDownToAStartedProgram) {
  LinuxInstanceLock lock = Lock();
  ASSERT_TRUE(lock.Acquire(name_));
  ChildProcess started([](const ChildProcess::Line& parent) {
    parent.Become("cat");
    return 1;
  });
  started.Tell('x');
  ASSERT_EQ(started.Hear(), 'x');
  lock.Release();
  EXPECT_TRUE(Lock().Acquire(name_));
}

// Any local user could take the name and keep everybody's console from starting.
TEST_F(LinuxInstanceLockTest, SquatterOfTheNameStopsNobody) {
  const ChildProcess squatter = Squatter(1);
  LinuxInstanceLock holder = Elsewhere();
  EXPECT_TRUE(holder.Acquire(name_));
  // The next name does what the first cannot.
  EXPECT_FALSE(Elsewhere().Acquire(name_));
  EXPECT_FALSE(Lock().Acquire(name_));
  // A request finds the console, not the squatter.
  EXPECT_EQ(Asked(holder, Elsewhere()), 1);
}

TEST_F(LinuxInstanceLockTest, SquatterOfAllNamesStopsNobodyEither) {
  const ChildProcess squatter = Squatter(8);
  EXPECT_TRUE(Elsewhere().Acquire(name_));
  LinuxInstanceLock holder = Lock();
  EXPECT_TRUE(holder.Acquire(name_));
  EXPECT_FALSE(Lock().Acquire(name_));
  // A squatter is never asked for anything either.
  EXPECT_EQ(Asked(holder, Lock()), 1);
}

TEST_F(LinuxInstanceLockTest, NameThatIsFreeAgainIsNotTheEndOfTheSearch) {
  LinuxInstanceLock holder = Elsewhere();
  {
    const ChildProcess squatter = Squatter(2);
    ASSERT_TRUE(holder.Acquire(name_));
  }
  EXPECT_FALSE(Elsewhere().Acquire(name_));
}

TEST_F(LinuxInstanceLockTest, FilesGoWithTheirHolder) {
  {
    LinuxInstanceLock lock = Lock();
    ASSERT_TRUE(lock.Acquire(name_));
    EXPECT_TRUE(IsInFolder(LockFileName()));
    EXPECT_TRUE(IsInFolder(SocketName()));
    EXPECT_FALSE(Lock().Acquire(name_));
  }
  EXPECT_TRUE(std::filesystem::is_empty(runtime_.path()));
  LinuxInstanceLock elsewhere = Elsewhere();
  ASSERT_TRUE(elsewhere.Acquire(name_));
  EXPECT_FALSE(Lock().Acquire(name_));
  EXPECT_TRUE(std::filesystem::is_empty(runtime_.path()));
}

// A lock on a file that its holder has just removed would be a lock on nothing.
TEST_F(LinuxInstanceLockTest, HoldersThatComeAndGoNeverHoldAtOnce) {
  const auto work = [&](const ChildProcess::Line&) {
    int held = 0;
    for (int i = 0; i < 3000 && held < 100; ++i) {
      LinuxInstanceLock lock = Lock();
      if (!lock.Acquire(name_)) continue;
      ++held;
      // Only one can make this folder at a time.
      if (mkdir(runtime_.Path("held").c_str(), 0700) != 0) return 2;
      rmdir(runtime_.Path("held").c_str());
    }
    return held > 0 ? 0 : 3;
  };
  ChildProcess one(work);
  ChildProcess two(work);
  const std::vector<int> ends = {one.Wait(), two.Wait()};
  EXPECT_THAT(ends, ::testing::Each(::testing::AnyOf(0, 3)));
  EXPECT_THAT(ends, ::testing::Contains(0));
}

TEST_F(LinuxInstanceLockTest, HolderThatNeverListensIsNotBelieved) {
  const LocalAddress address = LocalAddress::OfName(GlobalName(0));
  const FileDescriptor mute(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  ASSERT_EQ(bind(mute.get(), address.get(), address.length()), 0);
  EXPECT_TRUE(Elsewhere().Acquire(name_));
}

TEST_F(LinuxInstanceLockTest, HolderOfAnotherUserIsSeen) {
  LinuxInstanceLock lock = Lock();
  ASSERT_TRUE(lock.Acquire(name_));
  EXPECT_EQ(test::AsOrdinaryUser([&] { return Lock().Acquire(name_) ? 1 : 0; }), 0);
}

TEST_F(LinuxInstanceLockTest, AdministratorSeesTheHolderOfAnyUser) {
  if (geteuid() != 0) GTEST_SKIP() << "needs the administrator";
  const ChildProcess holder = HolderOf(kOneUser);
  EXPECT_FALSE(Lock().Acquire(name_));
}

// The executable of another ordinary user's process cannot be seen, so such a holder proves nothing.
TEST_F(LinuxInstanceLockTest, HolderWhoseExecutableCannotBeSeenStopsNobody) {
  if (geteuid() != 0) GTEST_SKIP() << "needs the administrator";
  const ChildProcess holder = HolderOf(kOneUser);
  EXPECT_EQ(AsUser(kAnotherUser, [&] { return Elsewhere().Acquire(name_) ? 1 : 0; }), 1);
}

TEST_F(LinuxInstanceLockTest, LinkInThePlaceOfTheLockFileIsNotFollowed) {
  const test::TemporaryFolder elsewhere;
  elsewhere.Write("precious", "text");
  std::filesystem::create_symlink(elsewhere.Path("precious"), runtime_.Path(LockFileName()));
  std::filesystem::create_symlink(elsewhere.Path("precious"), runtime_.Path(SocketName()));
  LinuxInstanceLock lock = Lock();
  EXPECT_TRUE(lock.Acquire(name_));
  EXPECT_FALSE(Elsewhere().Acquire(name_));
  EXPECT_EQ(elsewhere.Read("precious"), "text");
  EXPECT_TRUE(std::filesystem::is_symlink(runtime_.Path(SocketName())));
}

TEST_F(LinuxInstanceLockTest, ForeignFilesInThePlaceOfItsOwnAreLeftAlone) {
  // A second name of a file that is somebody's, a folder, a pipe.
  const test::TemporaryFolder next;
  runtime_.Write("theirs", "text");
  std::filesystem::create_hard_link(runtime_.Path("theirs"), runtime_.Path(LockFileName()));
  std::filesystem::create_directory(runtime_.Path(SocketName()));
  LinuxInstanceLock lock(Folders{{runtime_.path(), false}, {next.path(), false}});
  EXPECT_TRUE(lock.Acquire(name_));
  EXPECT_TRUE(std::filesystem::exists(next.Path(LockFileName())));
  lock.Release();
  std::filesystem::remove(runtime_.Path(LockFileName()));
  ASSERT_EQ(mkfifo(runtime_.Path(LockFileName()).c_str(), 0600), 0);
  EXPECT_TRUE(lock.Acquire(name_));
  lock.Release();
  std::filesystem::remove(runtime_.Path(LockFileName()));
  EXPECT_TRUE(lock.Acquire(name_));
  EXPECT_TRUE(std::filesystem::is_directory(runtime_.Path(SocketName())));
  EXPECT_EQ(runtime_.Read("theirs"), "text");
  // Without its socket the holder is still found.
  EXPECT_FALSE(Lock().Acquire(name_));
  EXPECT_EQ(Asked(lock, Lock()), 1);
}

TEST_F(LinuxInstanceLockTest, LinkInThePlaceOfTheSocketStays) {
  const test::TemporaryFolder elsewhere;
  elsewhere.Write("precious", "text");
  std::filesystem::create_symlink(elsewhere.Path("precious"), runtime_.Path(SocketName()));
  {
    LinuxInstanceLock lock = Lock();
    EXPECT_TRUE(lock.Acquire(name_));
    EXPECT_FALSE(Lock().Acquire(name_));
  }
  EXPECT_TRUE(std::filesystem::is_symlink(runtime_.Path(SocketName())));
  EXPECT_EQ(elsewhere.Read("precious"), "text");
}

TEST_F(LinuxInstanceLockTest, FileOfAnotherUserIsNoLock) {
  if (geteuid() != 0) GTEST_SKIP() << "needs the administrator";
  const test::TemporaryFolder next;
  runtime_.Write(LockFileName(), "");
  ASSERT_EQ(chown(runtime_.Path(LockFileName()).c_str(), kOneUser, kOneUser), 0);
  LinuxInstanceLock lock(Folders{{runtime_.path(), false}, {next.path(), false}});
  EXPECT_TRUE(lock.Acquire(name_));
  EXPECT_TRUE(std::filesystem::exists(next.Path(LockFileName())));
}

TEST_F(LinuxInstanceLockTest, FolderThatIsNotTheUsersAloneIsPassedOver) {
  const test::TemporaryFolder next;
  const test::TemporaryFolder target;
  const auto used = [&](const std::string& folder) {
    LinuxInstanceLock lock(Folders{{folder, false}, {next.path(), false}});
    EXPECT_TRUE(lock.Acquire(name_));
    const bool passed_over = std::filesystem::remove(next.Path(LockFileName()));
    std::filesystem::remove(next.Path(SocketName()));
    return !passed_over;
  };
  EXPECT_TRUE(used(runtime_.path()));
  for (const mode_t mode : {0750, 0701, 01777}) {
    ASSERT_EQ(chmod(runtime_.path().c_str(), mode), 0);
    EXPECT_FALSE(used(runtime_.path())) << mode;
  }
  ASSERT_EQ(chmod(runtime_.path().c_str(), 0700), 0);
  std::filesystem::create_directory_symlink(target.path(), runtime_.Path("link"));
  runtime_.Write("file", "");
  EXPECT_FALSE(used(runtime_.Path("link")));
  EXPECT_FALSE(used(runtime_.Path("file")));
  EXPECT_FALSE(used(runtime_.Path("missing")));
  EXPECT_FALSE(used("relative"));
  EXPECT_FALSE(used(""));
  if (geteuid() == 0) {
    ASSERT_EQ(chown(runtime_.path().c_str(), kOneUser, kOneUser), 0);
    EXPECT_FALSE(used(runtime_.path()));
  }
}

TEST_F(LinuxInstanceLockTest, MissingFolderIsMadeForTheUserAloneWhereItMayBe) {
  const std::string folder = runtime_.Path("made");
  LinuxInstanceLock lock(Folders{{folder, true}});
  LinuxInstanceLock other(Folders{{folder, true}});
  EXPECT_TRUE(lock.Acquire(name_));
  struct stat status {};
  ASSERT_EQ(stat(folder.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0700U);
  EXPECT_TRUE(std::filesystem::exists(folder + "/" + LockFileName()));
  EXPECT_FALSE(other.Acquire(name_));
}

TEST_F(LinuxInstanceLockTest, ReadOnlyFolderLeavesTheNames) {
  EXPECT_EQ(test::AsOrdinaryUser([&] {
              const test::TemporaryFolder folder;
              if (chmod(folder.path().c_str(), 0500) != 0) return 2;
              LinuxInstanceLock lock(Folders{{folder.path(), false}});
              if (!lock.Acquire(name_)) return 3;
              return std::filesystem::is_empty(folder.path()) ? 0 : 4;
            }),
            0);
}

TEST_F(LinuxInstanceLockTest, FullFolderLeavesTheNames) {
  ChildProcess child([&](const ChildProcess::Line&) {
    // A file system of this process's own that has room for its root alone, then for the lock file too.
    if (unshare(CLONE_NEWNS) != 0 && unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) return 77;
    if (mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return 77;
    std::vector<bool> files;
    for (const char* room : {"nr_inodes=1,mode=0700", "nr_inodes=2,mode=0700"}) {
      if (mount("none", runtime_.path().c_str(), "tmpfs", 0, room) != 0) return 77;
      LinuxInstanceLock lock = Lock();
      if (!lock.Acquire(name_)) return 2;
      if (IsInFolder(SocketName())) return 3;
      if (Elsewhere().Acquire(name_)) return 4;
      files.push_back(IsInFolder(LockFileName()));
    }
    return files == std::vector<bool>{false, true} ? 0 : 5;
  });
  const int status = child.Wait();
  if (status == 77) GTEST_SKIP() << "no file systems of one's own here";
  EXPECT_EQ(status, 0);
}

TEST_F(LinuxInstanceLockTest, PathTooLongForASocketStillLocks) {
  const std::string folder = runtime_.Path(std::string(100, 'x'));
  ASSERT_TRUE(std::filesystem::create_directory(folder));
  ASSERT_EQ(chmod(folder.c_str(), 0700), 0);
  LinuxInstanceLock lock(Folders{{folder, false}});
  EXPECT_TRUE(lock.Acquire(name_));
  EXPECT_TRUE(std::filesystem::exists(folder + "/" + LockFileName()));
  EXPECT_EQ(Asked(lock, LinuxInstanceLock(Folders{{folder, false}})), 1);
}

TEST_F(LinuxInstanceLockTest, HolderIsAskedToComeForwardThroughItsLoop) {
  ChildProcess holder([&](const ChildProcess::Line& parent) {
    PollLoop loop;
    LinuxInstanceLock lock = Lock();
    if (!lock.Acquire(name_)) return 1;
    lock.OnAskedToComeForward([&] { parent.Tell('f'); });
    loop.WatchReadable(lock.Descriptor(), [&] { lock.HandleRequests(); });
    loop.WatchReadable(parent.in(), [&] {
      if (parent.Hear() != 'n') loop.Quit();
    });
    parent.Tell('r');
    loop.Run();
    return 5;
  });
  ASSERT_EQ(holder.Hear(), 'r');
  LinuxInstanceLock second = Lock();
  ASSERT_FALSE(second.Acquire(name_));
  second.AskToComeForward(name_);
  EXPECT_EQ(holder.Hear(), 'f');
  Elsewhere().AskToComeForward(name_);
  EXPECT_EQ(holder.Hear(), 'f');
  holder.Tell('q');
  EXPECT_EQ(holder.Wait(), 5);
}

TEST_F(LinuxInstanceLockTest, LookingWhoIsThereIsNoRequest) {
  LinuxInstanceLock holder = Elsewhere();
  ASSERT_TRUE(holder.Acquire(name_));
  int forward = 0;
  holder.OnAskedToComeForward([&] { ++forward; });
  LinuxInstanceLock second = Elsewhere();
  EXPECT_FALSE(second.Acquire(name_));
  EXPECT_TRUE(Readable(holder.Descriptor()));
  holder.HandleRequests();
  EXPECT_FALSE(Readable(holder.Descriptor()));
  EXPECT_EQ(forward, 0);
  second.AskToComeForward(name_);
  holder.HandleRequests();
  EXPECT_EQ(forward, 1);
}

TEST_F(LinuxInstanceLockTest, RequestThatComesInTwoStepsIsHeard) {
  LinuxInstanceLock holder = Lock();
  ASSERT_TRUE(holder.Acquire(name_));
  int forward = 0;
  holder.OnAskedToComeForward([&] { ++forward; });
  const FileDescriptor peer = ConnectTo(LocalAddress::OfName(GlobalName(0)));
  ASSERT_TRUE(peer);
  holder.HandleRequests();
  EXPECT_FALSE(Readable(holder.Descriptor()));
  EXPECT_EQ(send(peer.get(), "?", 1, MSG_NOSIGNAL), 1);
  EXPECT_TRUE(Readable(holder.Descriptor()));
  holder.HandleRequests();
  EXPECT_EQ(forward, 1);
}

TEST_F(LinuxInstanceLockTest, ManyRequestsAreOneAndNeverBlock) {
  LinuxInstanceLock holder = Lock();
  ASSERT_TRUE(holder.Acquire(name_));
  int forward = 0;
  holder.OnAskedToComeForward([&] { ++forward; });
  // More than can wait: those beyond are dropped, the asking goes on.
  LinuxInstanceLock other = Lock();
  for (int i = 0; i < 1000; ++i) other.AskToComeForward(name_);
  int wakes = 0;
  for (; Readable(holder.Descriptor()); ++wakes) holder.HandleRequests();
  EXPECT_LE(wakes, 3);
  EXPECT_EQ(forward, wakes);
  holder.HandleRequests();
  EXPECT_EQ(forward, wakes);
}

TEST_F(LinuxInstanceLockTest, ConnectionsThatSayNothingDoNotPileUp) {
  LinuxInstanceLock holder = Lock();
  ASSERT_TRUE(holder.Acquire(name_));
  std::vector<FileDescriptor> silent;
  for (int i = 0; i < 50; ++i) {
    silent.push_back(ConnectTo(LocalAddress::OfName(GlobalName(0))));
    ASSERT_TRUE(silent.back());
  }
  holder.HandleRequests();
  const auto ended = std::count_if(silent.begin(), silent.end(), [](const FileDescriptor& connection) {
    char byte = 0;
    return recv(connection.get(), &byte, 1, 0) == 0;
  });
  EXPECT_EQ(ended, 50 - 16);
}

// Whoever connects faster than the holder accepts would keep it from ever coming back to its window.
TEST_F(LinuxInstanceLockTest, HandlingEndsHoweverManyConnect) {
  LinuxInstanceLock holder = Lock();
  ASSERT_TRUE(holder.Acquire(name_));
  std::vector<FileDescriptor> crowd;
  while (crowd.empty() || crowd.back()) crowd.push_back(ConnectTo(LocalAddress::OfName(GlobalName(0))));
  ASSERT_EQ(crowd.size(), 66U) << "those that the system lets wait, and the one that was refused";
  holder.HandleRequests();
  EXPECT_TRUE(Readable(holder.Descriptor())) << "the last one is left for the next time";
  holder.HandleRequests();
  EXPECT_FALSE(Readable(holder.Descriptor()));
}

TEST_F(LinuxInstanceLockTest, WhatAPeerSendsIsOneRequestWhateverItIs) {
  LinuxInstanceLock holder = Lock();
  ASSERT_TRUE(holder.Acquire(name_));
  int forward = 0;
  holder.OnAskedToComeForward([&] { ++forward; });
  const FileDescriptor peer = ConnectTo(LocalAddress::OfName(GlobalName(0)));
  ASSERT_TRUE(peer);
  const std::string garbage(100000, '\xFF');
  EXPECT_GT(send(peer.get(), garbage.data(), garbage.size(), MSG_NOSIGNAL), 0);
  holder.HandleRequests();
  EXPECT_EQ(forward, 1);
  // The holder has closed its end: there is nobody to talk to.
  EXPECT_LT(send(peer.get(), garbage.data(), garbage.size(), MSG_NOSIGNAL), 0);
}

TEST_F(LinuxInstanceLockTest, RequestsOfAnotherUserChangeNothing) {
  int forward = 0;
  LinuxInstanceLock holder = Lock();
  ASSERT_TRUE(holder.Acquire(name_));
  holder.OnAskedToComeForward([&] { ++forward; });
  ASSERT_EQ(test::AsOrdinaryUser([&] {
              const FileDescriptor peer = ConnectTo(LocalAddress::OfName(GlobalName(0)));
              return peer && send(peer.get(), "f", 1, MSG_NOSIGNAL) == 1 ? 0 : 1;
            }),
            0);
  EXPECT_TRUE(Readable(holder.Descriptor()));
  holder.HandleRequests();
  EXPECT_FALSE(Readable(holder.Descriptor()));
  // An ordinary run asks as the same user, a run of the administrator as somebody else.
  EXPECT_EQ(forward, geteuid() == 0 ? 0 : 1);
}

TEST_F(LinuxInstanceLockTest, AskingNobodyIsHarmless) {
  LinuxInstanceLock lock = Lock();
  lock.AskToComeForward(name_);
  lock.HandleRequests();
  lock.Release();
}

TEST(RuntimeFoldersTest, TheSessionsOwnComesFirst) {
  const std::string user = std::to_string(geteuid());
  const auto text = [] {
    std::string all;
    for (const RuntimeFolder& folder : RuntimeFolders()) all += folder.path + (folder.make ? "+ " : " ");
    return all;
  };
  {
    const test::EnvironmentVariable given("XDG_RUNTIME_DIR", "/run/session");
    EXPECT_EQ(text(), "/run/session /run/user/" + user + " /tmp/zendrix-" + user + "+ ");
  }
  const test::EnvironmentVariable none("XDG_RUNTIME_DIR", std::nullopt);
  EXPECT_EQ(text(), "/run/user/" + user + " /tmp/zendrix-" + user + "+ ");
}

}  // namespace
}  // namespace zendrix::platform
