#include "platform/linux/linux_instance_lock.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <cstddef>
#include <vector>

#include "child_process.h"
#include "family/korvessa_crypto_services.h"
#include "platform/linux/poll_loop.h"

namespace zendrix::platform {
namespace {

using test::ChildProcess;

// A name that no other run of the tests has.
std::string OwnName() {
  const auto* test = ::testing::UnitTest::GetInstance()->current_test_info();
  return std::string("Global\\") + test->name() + std::to_string(getpid());
}

bool Readable(int fd) {
  pollfd waiting{fd, POLLIN, 0};
  return poll(&waiting, 1, 0) == 1;
}

// A connection as any program of the machine can make it.
FileDescriptor Connect(const std::string& lock_name) {
  char hash[65];
  family::HashBytes(lock_name.data(), lock_name.size(), hash, sizeof hash);
  const std::string name = std::string("zendrix-instance-") + hash;
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  name.copy(address.sun_path + 1, sizeof address.sun_path - 1);
  FileDescriptor connection(socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
  if (connect(connection.get(), reinterpret_cast<sockaddr*>(&address),
              static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size())) != 0) {
    connection.Close();
  }
  return connection;
}

TEST(LinuxInstanceLockTest, SecondHolderIsRefusedUntilTheFirstLetsGo) {
  const std::string name = OwnName();
  LinuxInstanceLock first;
  LinuxInstanceLock second;
  EXPECT_EQ(first.Descriptor(), -1);
  EXPECT_TRUE(first.Acquire(name));
  EXPECT_TRUE(first.Acquire(name));
  EXPECT_FALSE(second.Acquire(name));
  EXPECT_TRUE(second.Acquire(name + "x"));
  second.Release();
  first.Release();
  EXPECT_EQ(first.Descriptor(), -1);
  EXPECT_TRUE(second.Acquire(name));
}

TEST(LinuxInstanceLockTest, LockOfAKilledProcessIsFreeAtOnce) {
  const std::string name = OwnName();
  for (int round = 0; round < 5; ++round) {
    ChildProcess holder([&](const ChildProcess::Line& parent) {
      LinuxInstanceLock lock;
      parent.Tell(lock.Acquire(name) ? 'y' : 'n');
      parent.Hear();
      return 0;
    });
    ASSERT_EQ(holder.Hear(), 'y');
    LinuxInstanceLock lock;
    ASSERT_FALSE(lock.Acquire(name));
    holder.Kill();
    ASSERT_TRUE(lock.Acquire(name));
  }
}

TEST(LinuxInstanceLockTest, HolderOfAnotherUserIsSeen) {
  const std::string name = OwnName();
  LinuxInstanceLock lock;
  ASSERT_TRUE(lock.Acquire(name));
  EXPECT_EQ(test::AsOrdinaryUser([&] { return LinuxInstanceLock().Acquire(name) ? 1 : 0; }), 0);
}

TEST(LinuxInstanceLockTest, HolderIsAskedToComeForwardThroughItsLoop) {
  const std::string name = OwnName();
  ChildProcess holder([&](const ChildProcess::Line& parent) {
    PollLoop loop;
    LinuxInstanceLock lock;
    if (!lock.Acquire(name)) return 1;
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
  LinuxInstanceLock second;
  ASSERT_FALSE(second.Acquire(name));
  second.AskToComeForward(name);
  EXPECT_EQ(holder.Hear(), 'f');
  second.AskToComeForward(name);
  EXPECT_EQ(holder.Hear(), 'f');
  holder.Tell('q');
  EXPECT_EQ(holder.Wait(), 5);
}

TEST(LinuxInstanceLockTest, ManyRequestsAreOneAndNeverBlock) {
  const std::string name = OwnName();
  LinuxInstanceLock holder;
  ASSERT_TRUE(holder.Acquire(name));
  int forward = 0;
  holder.OnAskedToComeForward([&] { ++forward; });
  // More than can wait: those beyond are dropped, the asking goes on.
  LinuxInstanceLock other;
  for (int i = 0; i < 1000; ++i) other.AskToComeForward(name);
  int wakes = 0;
  for (; Readable(holder.Descriptor()); ++wakes) holder.HandleRequests();
  EXPECT_LE(wakes, 2);
  EXPECT_EQ(forward, wakes);
  holder.HandleRequests();
  EXPECT_EQ(forward, wakes);
}

TEST(LinuxInstanceLockTest, WhatAPeerSendsIsNeverRead) {
  const std::string name = OwnName();
  LinuxInstanceLock holder;
  ASSERT_TRUE(holder.Acquire(name));
  int forward = 0;
  holder.OnAskedToComeForward([&] { ++forward; });
  const FileDescriptor peer = Connect(name);
  ASSERT_TRUE(peer);
  const std::string garbage(100000, '\xFF');
  EXPECT_GT(send(peer.get(), garbage.data(), garbage.size(), MSG_NOSIGNAL), 0);
  holder.HandleRequests();
  EXPECT_EQ(forward, 1);
  // The holder has closed its end: there is nobody to talk to.
  EXPECT_LT(send(peer.get(), garbage.data(), garbage.size(), MSG_NOSIGNAL), 0);
}

TEST(LinuxInstanceLockTest, RequestsOfAnotherUserChangeNothing) {
  const std::string name = OwnName();
  int forward = 0;
  LinuxInstanceLock holder;
  ASSERT_TRUE(holder.Acquire(name));
  holder.OnAskedToComeForward([&] { ++forward; });
  ASSERT_EQ(test::AsOrdinaryUser([&] {
              LinuxInstanceLock().AskToComeForward(name);
              return 0;
            }),
            0);
  EXPECT_TRUE(Readable(holder.Descriptor()));
  holder.HandleRequests();
  // An ordinary run asks as the same user, a run of the administrator as somebody else.
  EXPECT_EQ(forward, geteuid() == 0 ? 0 : 1);
}

TEST(LinuxInstanceLockTest, AskingNobodyIsHarmless) {
  LinuxInstanceLock lock;
  lock.AskToComeForward(OwnName());
  lock.HandleRequests();
  lock.Release();
}

}  // namespace
}  // namespace zendrix::platform
