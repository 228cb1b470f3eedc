#include "platform/linux/posix.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <future>
#include <map>

#include "support/environment.h"
#include "support/temporary_folder.h"

namespace zendrix::platform {
namespace {

TEST(ErrorFromErrnoTest, NamesTheSubjectAndTheKind) {
  EXPECT_EQ(ErrorFromErrno(ENOENT, "/a").text, "/a: No such file or directory");
  const std::map<int, ErrorKind> kinds = {
      {ENOENT, ErrorKind::kNotFound},          {ENOTDIR, ErrorKind::kNotFound},
      {EACCES, ErrorKind::kPermissionDenied},  {EPERM, ErrorKind::kPermissionDenied},
      {ETXTBSY, ErrorKind::kPermissionDenied}, {EROFS, ErrorKind::kPermissionDenied},
      {EEXIST, ErrorKind::kAlreadyExists},     {ELOOP, ErrorKind::kNotRegular},
      {EISDIR, ErrorKind::kNotRegular},        {ENOSPC, ErrorKind::kNoSpace},
      {EDQUOT, ErrorKind::kNoSpace},           {EIO, ErrorKind::kOther}};
  for (const auto& [number, kind] : kinds) EXPECT_EQ(ErrorFromErrno(number, "").kind, kind) << number;
}

TEST(FileDescriptorTest, IsClosedOnceByItsOwner) {
  FileDescriptor none;
  EXPECT_FALSE(none);
  EXPECT_TRUE(none.Close());
  const int fd = open("/dev/null", O_RDONLY | O_CLOEXEC);
  FileDescriptor first(fd);
  FileDescriptor second(std::move(first));
  EXPECT_EQ(second.get(), fd);
  first = std::move(second);
  FileDescriptor& same = first;
  first = std::move(same);
  EXPECT_EQ(first.get(), fd);
  EXPECT_TRUE(first.Close());
  EXPECT_FALSE(first);
  EXPECT_EQ(fcntl(fd, F_GETFD), -1);
}

TEST(FindProgramTest, FirstPlainExecutableOfTheAbsoluteFoldersCounts) {
  const test::TemporaryFolder one;
  const test::TemporaryFolder two;
  const test::EnvironmentVariable path("PATH", "relative::" + one.path() + ":" + two.path());
  EXPECT_EQ(FindProgram("tool"), "");
  one.Write("tool", "");
  two.Write("tool", "");
  chmod(one.Path("tool").c_str(), 0644);
  chmod(two.Path("tool").c_str(), 0755);
  EXPECT_EQ(FindProgram("tool"), two.Path("tool"));
  chmod(one.Path("tool").c_str(), 0755);
  EXPECT_EQ(FindProgram("tool"), one.Path("tool"));
  // A folder is executable too.
  unlink(one.Path("tool").c_str());
  mkdir(one.Path("tool").c_str(), 0755);
  EXPECT_EQ(FindProgram("tool"), two.Path("tool"));
}

TEST(RunInBackgroundTest, ThreadGetsNoSignalsAndTheCallerKeepsItsOwn) {
  sigset_t before;
  pthread_sigmask(SIG_SETMASK, nullptr, &before);
  std::promise<bool> blocked;
  ASSERT_TRUE(RunInBackground([&blocked] {
    sigset_t mask;
    pthread_sigmask(SIG_SETMASK, nullptr, &mask);
    blocked.set_value(sigismember(&mask, SIGTERM) == 1 && sigismember(&mask, SIGCHLD) == 1);
  }));
  EXPECT_TRUE(blocked.get_future().get());
  sigset_t after;
  pthread_sigmask(SIG_SETMASK, nullptr, &after);
  EXPECT_EQ(sigismember(&after, SIGTERM), sigismember(&before, SIGTERM));
}

}  // namespace
}  // namespace zendrix::platform
