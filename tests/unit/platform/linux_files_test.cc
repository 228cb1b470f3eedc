#include "platform/linux/linux_files.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <atomic>
#include <filesystem>
#include <random>
#include <set>
#include <thread>

#include "child_process.h"
#include "platform/linux/left_overs.h"
#include "platform/linux/posix.h"
#include "support/temporary_folder.h"

namespace zendrix::platform {
namespace {

namespace fs = std::filesystem;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

class LinuxFilesTest : public ::testing::Test {
 protected:
  std::string Path(const std::string& name) const { return folder_.Path(name); }
  unsigned ModeOf(const std::string& name) const {
    struct stat status {};
    EXPECT_EQ(stat(Path(name).c_str(), &status), 0);
    return status.st_mode & 07777;
  }
  std::vector<std::string> Names() { return files_.List(folder_.path()).value(); }

  test::TemporaryFolder folder_;
  LinuxFiles files_;
};

TEST_F(LinuxFilesTest, WriteAllCreatesAndReplacesAndLeavesNothingElse) {
  ASSERT_TRUE(files_.WriteAll(Path("a"), "one").ok());
  ASSERT_TRUE(files_.WriteAll(Path("a"), std::string("t\0o", 3)).ok());
  EXPECT_EQ(files_.ReadAll(Path("a")).value(), std::string("t\0o", 3));
  EXPECT_EQ(files_.Size(Path("a")).value(), 3);
  EXPECT_THAT(Names(), UnorderedElementsAre("a"));
}

TEST_F(LinuxFilesTest, WriteAllKeepsTheModeOfTheFileItReplaces) {
  const mode_t before = umask(022);
  ASSERT_TRUE(files_.WriteAll(Path("fresh"), "x").ok());
  umask(before);
  EXPECT_EQ(ModeOf("fresh"), 0644U);
  for (const unsigned mode : {0600U, 0664U, 0640U, 0755U}) {
    ASSERT_EQ(chmod(Path("fresh").c_str(), mode), 0);
    ASSERT_TRUE(files_.WriteAll(Path("fresh"), "y").ok());
    EXPECT_EQ(ModeOf("fresh"), mode);
  }
}

TEST_F(LinuxFilesTest, EmptyFileCanBeWrittenAndRead) {
  ASSERT_TRUE(files_.WriteAll(Path("a"), "").ok());
  EXPECT_EQ(files_.ReadAll(Path("a")).value(), "");
  EXPECT_TRUE(files_.Exists(Path("a")));
}

TEST_F(LinuxFilesTest, LinkIsNeverWrittenThrough) {
  folder_.Write("victim", "precious");
  fs::create_symlink(Path("victim"), Path("link"));
  fs::create_symlink(Path("nowhere"), Path("dangling"));
  folder_.Write("other", "x");
  for (const char* name : {"link", "dangling"}) {
    EXPECT_EQ(files_.WriteAll(Path(name), "evil").error().kind, ErrorKind::kNotRegular) << name;
    EXPECT_EQ(files_.Append(Path(name), "evil").error().kind, ErrorKind::kNotRegular) << name;
    EXPECT_EQ(files_.Rename(Path("other"), Path(name)).error().kind, ErrorKind::kNotRegular) << name;
    EXPECT_EQ(files_.Rename(Path(name), Path("taken")).error().kind, ErrorKind::kNotRegular) << name;
  }
  EXPECT_EQ(folder_.Read("victim"), "precious");
  EXPECT_FALSE(fs::exists(Path("nowhere")));
  EXPECT_THAT(Names(), UnorderedElementsAre("victim", "link", "dangling", "other"));
}

TEST_F(LinuxFilesTest, LinkIsFollowedForReadingAndRemovedAlone) {
  folder_.Write("file", "text");
  fs::create_symlink(Path("file"), Path("link"));
  EXPECT_TRUE(files_.Exists(Path("link")));
  EXPECT_EQ(files_.ReadAll(Path("link")).value(), "text");
  ASSERT_TRUE(files_.Remove(Path("link")).ok());
  EXPECT_EQ(folder_.Read("file"), "text");
}

TEST_F(LinuxFilesTest, PipesDevicesAndFoldersAreNoFilesAndDoNotHang) {
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  fs::create_directory(Path("folder"));
  for (const std::string& path : {Path("pipe"), Path("folder"), std::string("/dev/zero")}) {
    EXPECT_FALSE(files_.Exists(path)) << path;
    EXPECT_EQ(files_.Open(path).error().kind, ErrorKind::kNotRegular) << path;
    EXPECT_EQ(files_.Size(path).error().kind, ErrorKind::kNotRegular) << path;
    EXPECT_EQ(files_.WriteAll(path, "x").error().kind, ErrorKind::kNotRegular) << path;
    EXPECT_EQ(files_.Append(path, "x").error().kind, ErrorKind::kNotRegular) << path;
    EXPECT_EQ(files_.Remove(path).error().kind, ErrorKind::kNotRegular) << path;
  }
  // A pipe with somebody at its other end opens at once; it is refused all the same.
  const int reader = open(Path("pipe").c_str(), O_RDWR | O_NONBLOCK);
  EXPECT_EQ(files_.Append(Path("pipe"), "x").error().kind, ErrorKind::kNotRegular);
  EXPECT_EQ(files_.Open(Path("pipe")).error().kind, ErrorKind::kNotRegular);
  close(reader);
}

TEST_F(LinuxFilesTest, MissingFilesAndFoldersAreNotFound) {
  folder_.Write("file", "x");
  for (const std::string& path : {Path("none"), Path("none/deeper"), Path("file/deeper"), std::string()}) {
    EXPECT_FALSE(files_.Exists(path)) << path;
    EXPECT_EQ(files_.Open(path).error().kind, ErrorKind::kNotFound) << path;
    EXPECT_EQ(files_.Size(path).error().kind, ErrorKind::kNotFound) << path;
    EXPECT_EQ(files_.Remove(path).error().kind, ErrorKind::kNotFound) << path;
    EXPECT_EQ(files_.Rename(path, Path("x")).error().kind, ErrorKind::kNotFound) << path;
    EXPECT_EQ(files_.List(path).error().kind, ErrorKind::kNotFound) << path;
  }
  EXPECT_EQ(files_.WriteAll(Path("none/deeper"), "x").error().kind, ErrorKind::kNotFound);
  EXPECT_EQ(files_.Append(Path("none/deeper"), "x").error().kind, ErrorKind::kNotFound);
}

TEST_F(LinuxFilesTest, PathIsNotCutAtANul) {
  folder_.Write("file", "precious");
  const std::string path = Path("file") + std::string("\0.kvl", 5);
  EXPECT_FALSE(files_.Exists(path));
  EXPECT_EQ(files_.WriteAll(path, "x").error().kind, ErrorKind::kNotFound);
  EXPECT_EQ(files_.Append(path, "x").error().kind, ErrorKind::kNotFound);
  EXPECT_EQ(files_.Remove(path).error().kind, ErrorKind::kNotFound);
  EXPECT_EQ(files_.Rename(path, Path("x")).error().kind, ErrorKind::kNotFound);
  EXPECT_EQ(files_.Rename(Path("file"), path).error().kind, ErrorKind::kNotFound);
  EXPECT_EQ(folder_.Read("file"), "precious");
}

TEST_F(LinuxFilesTest, AppendCreatesAndAdds) {
  ASSERT_TRUE(files_.Append(Path("log"), "one\r\n").ok());
  ASSERT_TRUE(files_.Append(Path("log"), "two\r\n").ok());
  EXPECT_EQ(folder_.Read("log"), "one\r\ntwo\r\n");
}

TEST_F(LinuxFilesTest, LinesOfTwoProcessesDoNotMix) {
  constexpr int kLines = 300;
  const auto write_lines = [this](char c) {
    for (int i = 0; i < kLines; ++i) {
      if (!files_.Append(Path("log"), std::string(200, c) + "\n")) return 1;
    }
    return 0;
  };
  test::ChildProcess other([&](const auto&) { return write_lines('b'); });
  EXPECT_EQ(write_lines('a'), 0);
  EXPECT_EQ(other.Wait(), 0);
  const std::string text = folder_.Read("log");
  ASSERT_EQ(text.size(), 2U * kLines * 201);
  for (std::size_t i = 0; i < text.size(); i += 201) {
    EXPECT_EQ(text.substr(i, 201), std::string(200, text[i]) + "\n");
  }
}

TEST_F(LinuxFilesTest, OpenStreamSeesWhatIsAppended) {
  folder_.Write("a", "one");
  const auto stream = std::move(files_.Open(Path("a")).value());
  char bytes[16];
  ASSERT_EQ(stream->Read(bytes, sizeof bytes).value(), 3U);
  ASSERT_EQ(stream->Read(bytes, sizeof bytes).value(), 0U);
  ASSERT_TRUE(files_.Append(Path("a"), "two").ok());
  ASSERT_EQ(stream->Read(bytes, sizeof bytes).value(), 3U);
  ASSERT_TRUE(stream->Seek(1).ok());
  ASSERT_EQ(stream->Read(bytes, 2).value(), 2U);
  EXPECT_EQ(std::string(bytes, 2), "ne");
  ASSERT_TRUE(stream->Seek(1000).ok());
  EXPECT_EQ(stream->Read(bytes, sizeof bytes).value(), 0U);
  EXPECT_FALSE(stream->Seek(-1).ok());
}

// This process's own memory: a plain file by its status, and nothing can be read at its beginning.
TEST_F(LinuxFilesTest, ReadThatFailsIsAnErrorAndDoesNotHang) {
  const auto stream = std::move(files_.Open("/proc/self/mem").value());
  char byte = 0;
  EXPECT_EQ(stream->Read(&byte, 1).error().kind, ErrorKind::kOther);
}

TEST_F(LinuxFilesTest, EveryTemporaryHasANameOfItsOwn) {
  const FileDescriptor watch(inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
  ASSERT_GE(inotify_add_watch(watch.get(), folder_.path().c_str(), IN_CREATE), 0);
  for (const char* bytes : {"one", "two"}) ASSERT_TRUE(files_.WriteAll(Path("a"), bytes).ok());
  alignas(inotify_event) char events[4096];
  const ssize_t size = read(watch.get(), events, sizeof events);
  std::set<std::string> names;
  for (ssize_t at = 0; at < size;) {
    const auto* const event = reinterpret_cast<const inotify_event*>(events + at);
    names.insert(event->name);
    at += static_cast<ssize_t>(sizeof *event + event->len);
  }
  EXPECT_EQ(names.size(), 2U);
  const std::string digits(16, '0');
  for (const std::string& name : names)
    EXPECT_EQ(name.size(), (kTemporaryPrefix + digits + kTemporarySuffix).size()) << name;
}

TEST_F(LinuxFilesTest, RenameReplacesItsTarget) {
  folder_.Write("a", "new");
  folder_.Write("b", "old");
  ASSERT_TRUE(files_.Rename(Path("a"), Path("b")).ok());
  EXPECT_THAT(Names(), UnorderedElementsAre("b"));
  EXPECT_EQ(folder_.Read("b"), "new");
}

TEST_F(LinuxFilesTest, FoldersAreListedWithoutTheirDots) {
  fs::create_directory(Path("sub"));
  EXPECT_TRUE(files_.FolderExists(Path("sub")));
  EXPECT_FALSE(files_.Exists(Path("sub")));
  EXPECT_THAT(files_.List(Path("sub")).value(), IsEmpty());
  folder_.Write("a", "");
  EXPECT_THAT(Names(), UnorderedElementsAre("sub", "a"));
  EXPECT_EQ(files_.List(Path("a")).error().kind, ErrorKind::kNotRegular);
}

TEST_F(LinuxFilesTest, SaveOfTheAdministratorLeavesTheFileToItsUser) {
  if (geteuid() != 0) GTEST_SKIP() << "needs the administrator";
  struct Owner {
    uid_t user;
    gid_t group;
  };
  for (const Owner owner : {Owner{65534, 65534}, Owner{65534, getegid()}, Owner{geteuid(), 65534}}) {
    folder_.Write("theirs", "old");
    ASSERT_EQ(chown(Path("theirs").c_str(), owner.user, owner.group), 0);
    ASSERT_TRUE(files_.WriteAll(Path("theirs"), "new").ok());
    struct stat status {};
    ASSERT_EQ(stat(Path("theirs").c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, owner.user);
    EXPECT_EQ(status.st_gid, owner.group);
  }
}

TEST_F(LinuxFilesTest, RightsAreRespectedForAnOrdinaryUser) {
  folder_.Write("read-only", "x");
  folder_.Write("secret", "x");
  ASSERT_EQ(chmod(folder_.path().c_str(), 0777), 0);
  ASSERT_EQ(chmod(Path("read-only").c_str(), 0444), 0);
  ASSERT_EQ(chmod(Path("secret").c_str(), 0), 0);
  fs::create_directory(Path("closed"));
  ASSERT_EQ(chmod(Path("closed").c_str(), 0555), 0);
  const int outcome = test::AsOrdinaryUser([&] {
    const auto denied = [](const auto& result) {
      return !result && result.error().kind == ErrorKind::kPermissionDenied;
    };
    if (!denied(files_.WriteAll(Path("read-only"), "y"))) return 1;
    if (!denied(files_.Append(Path("read-only"), "y"))) return 2;
    if (!denied(files_.Open(Path("secret")))) return 3;
    if (!denied(files_.WriteAll(Path("closed/new"), "y"))) return 4;
    if (!files_.Exists(Path("secret"))) return 6;
    // A read-only file can be deleted in a folder that may be written.
    if (!files_.Remove(Path("read-only"))) return 7;
    return 0;
  });
  EXPECT_EQ(outcome, 0);
  EXPECT_FALSE(files_.Exists(Path("read-only")));
}

TEST_F(LinuxFilesTest, FullDiskLeavesTheOldFileAndNoTemporary) {
  // /dev/full stands for a disk only as a device, which is refused; a size limit of the process is the next
  // best thing: the write fails in the middle.
  folder_.Write("a", "old");
  test::ChildProcess child([&](const auto&) {
    signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{1000, 1000};
    if (setrlimit(RLIMIT_FSIZE, &limit) != 0) return 1;
    return files_.WriteAll(Path("a"), std::string(5000, 'x')).ok() ? 2 : 0;
  });
  EXPECT_EQ(child.Wait(), 0);
  EXPECT_EQ(folder_.Read("a"), "old");
  EXPECT_THAT(Names(), UnorderedElementsAre("a"));
}

TEST_F(LinuxFilesTest, KilledWriteLeavesTheOldFileOrTheNewOne) {
  const std::string a(700000, 'a');
  const std::string b(1000001, 'b');
  ASSERT_TRUE(files_.WriteAll(Path("f"), a).ok());
  std::mt19937 random(7);
  std::atomic<unsigned> spin{0};
  for (int round = 0; round < 60; ++round) {
    test::ChildProcess writer([&](const test::ChildProcess::Line& parent) {
      parent.Tell('r');
      for (;;) {
        if (!files_.WriteAll(Path("f"), b) || !files_.WriteAll(Path("f"), a)) return 1;
      }
    });
    ASSERT_EQ(writer.Hear(), 'r');
    for (unsigned left = random() % 4000000; left > 0; --left) spin.fetch_add(1, std::memory_order_relaxed);
    writer.Kill();
    const std::string now = folder_.Read("f");
    ASSERT_TRUE(now == a || now == b) << "round " << round << ", " << now.size() << " bytes";
  }
}

TEST_F(LinuxFilesTest, ReaderNeverSeesAHalfWrittenFile) {
  const std::string a(300000, 'a');
  const std::string b(500000, 'b');
  ASSERT_TRUE(files_.WriteAll(Path("f"), a).ok());
  test::ChildProcess writer([&](const auto&) {
    for (;;) {
      if (!files_.WriteAll(Path("f"), b) || !files_.WriteAll(Path("f"), a)) return 1;
    }
  });
  for (int i = 0; i < 300; ++i) {
    const auto now = files_.ReadAll(Path("f"));
    ASSERT_TRUE(now.ok());
    ASSERT_TRUE(now.value() == a || now.value() == b);
  }
}

}  // namespace
}  // namespace zendrix::platform
