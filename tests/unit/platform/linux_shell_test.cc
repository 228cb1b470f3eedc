#include "platform/linux/linux_shell.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>

#include "support/environment.h"
#include "support/temporary_folder.h"

namespace zendrix::platform {
namespace {

// Looks again and again, for a minute at the least before it gives up.
bool Comes(const std::function<bool()>& condition) {
  for (int i = 0; i < 12000; ++i) {
    if (condition()) return true;
    poll(nullptr, 0, 5);
  }
  return false;
}

class LinuxShellTest : public ::testing::Test {
 protected:
  LinuxShellTest() {
    // A stand-in for the desktop's opener: writes its arguments down, one per line, and what it has for
    // input.
    const std::string script =
        "#!/bin/sh\n"
        "{ printf '%s\\n' \"$#\" \"$@\"; cat; ls /proc/self/fd | wc -l; } > \"$OUT.new\" 2>&1\n"
        "mv \"$OUT.new\" \"$OUT\"\n";
    for (const char* name : {"xdg-open", "tool"}) {
      folder_.Write(name, script);
      chmod(folder_.Path(name).c_str(), 0755);
    }
  }

  // What the started program wrote down, without its last line.
  std::string Written() {
    EXPECT_TRUE(Comes([this] { return std::filesystem::exists(out_); })) << "nothing was started";
    std::string text = folder_.Read("out");
    std::filesystem::remove(out_);
    text.pop_back();
    return text.substr(0, text.rfind('\n') + 1);
  }

  test::TemporaryFolder folder_;
  std::string out_ = folder_.Path("out");
  test::EnvironmentVariable path_{"PATH", folder_.path() + ":/usr/bin:/bin"};
  test::EnvironmentVariable out_variable_{"OUT", out_};
  LinuxShell shell_;
};

TEST_F(LinuxShellTest, DocumentIsOneArgumentAndNeverACommand) {
  const std::string document = "http://x/?a=$(touch pwned)&b='\";`id` %s\\ *";
  ASSERT_TRUE(shell_.Open(document).ok());
  EXPECT_EQ(Written(), "1\n" + document + "\n");
}

TEST_F(LinuxShellTest, AddressIsHandedOverInUtf8AndAPathByteByByte) {
  ASSERT_TRUE(shell_.Open("http://x/?d=caf\xE9\x80").ok());
  EXPECT_EQ(Written(), "1\nhttp://x/?d=caf\u00E9\u20AC\n");
  ASSERT_TRUE(shell_.Open("a+B-9.c://caf\xE9").ok());
  EXPECT_EQ(Written(), "1\na+B-9.c://caf\u00E9\n");
  for (const std::string scheme : {"az09", "za", "AZ", "Za"}) {
    ASSERT_TRUE(shell_.Open(scheme + "://caf\xE9").ok());
    EXPECT_EQ(Written(), "1\n" + scheme + "://caf\u00E9\n");
  }
  // No scheme begins with a digit or holds any other character.
  for (const std::string path :
       {"/home/caf\xE9", "9a://caf\xE9", "a/b://caf\xE9", "a_b://caf\xE9", "://caf\xE9"}) {
    ASSERT_TRUE(shell_.Open(path).ok());
    EXPECT_EQ(Written(), "1\n" + path + "\n");
  }
}

TEST_F(LinuxShellTest, OptionsAndControlCharactersAreNoDocuments) {
  for (const std::string& document : {std::string("--help"), std::string("-x"), std::string(),
                                      std::string("a\nb"), std::string("a\0b", 3), std::string("a\x7F")}) {
    EXPECT_FALSE(shell_.Open(document).ok()) << document;
  }
  EXPECT_FALSE(std::filesystem::exists(out_));
}

TEST_F(LinuxShellTest, MissingProgramsAreNotFound) {
  EXPECT_EQ(shell_.RunHidden({"no-such-tool"}).error().kind, ErrorKind::kNotFound);
  EXPECT_EQ(shell_.RunHidden({"/no/such/tool"}).error().kind, ErrorKind::kNotFound);
  EXPECT_FALSE(shell_.RunHidden({}).ok());
  EXPECT_FALSE(shell_.RunHidden({""}).ok());
  EXPECT_FALSE(shell_.RunHidden({"tool", std::string("a\0b", 3)}).ok());
  const test::EnvironmentVariable none("PATH", "/nonexistent");
  EXPECT_EQ(shell_.Open("http://x/").error().kind, ErrorKind::kNotFound);
}

TEST_F(LinuxShellTest, ProgramGetsItsArgumentsAndNoInput) {
  ASSERT_TRUE(shell_.RunHidden({"tool", "a b", "", "-c"}).ok());
  EXPECT_EQ(Written(), "3\na b\n\n-c\n");
}

TEST_F(LinuxShellTest, OpenFilesAreNotHandedDown) {
  const int leaked = open(folder_.Path("tool").c_str(), 0);
  ASSERT_GE(leaked, 0);
  ASSERT_TRUE(shell_.RunHidden({folder_.Path("tool")}).ok());
  ASSERT_TRUE(Comes([this] { return std::filesystem::exists(out_); }));
  // Input, output, errors, and the listed folder itself.
  EXPECT_EQ(folder_.Read("out"), "0\n4\n");
  close(leaked);
}

// With its input the console's own, a program would have eaten what was typed for somebody else; with no
// errors at all, the first file that it opened would have got them.
TEST_F(LinuxShellTest, ProgramHasNoneOfTheConsolesStreamsAndNoneIsMissing) {
  folder_.Write("streams",
                "#!/bin/sh\n"
                "streams=$(readlink /proc/$$/fd/0 /proc/$$/fd/1 /proc/$$/fd/2)\n"
                "echo \"$streams\" > \"$OUT.new\"\n"
                "mv \"$OUT.new\" \"$OUT\"\n");
  chmod(folder_.Path("streams").c_str(), 0755);
  int typed[2];
  ASSERT_EQ(pipe2(typed, O_CLOEXEC), 0);
  const int before = fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 3);
  ASSERT_EQ(dup2(typed[0], STDIN_FILENO), STDIN_FILENO);
  EXPECT_TRUE(shell_.RunHidden({"streams"}).ok());
  close(STDIN_FILENO);
  if (before >= 0) dup2(before, STDIN_FILENO);
  for (const int fd : {before, typed[0], typed[1]}) close(fd);
  ASSERT_TRUE(Comes([this] { return std::filesystem::exists(out_); }));
  EXPECT_EQ(folder_.Read("out"), "/dev/null\n/dev/null\n/dev/null\n");
}

// State letters of this process's children, from the kernel's own list.
std::string ChildStates() {
  std::string states;
  for (const auto& task : std::filesystem::directory_iterator("/proc")) {
    std::ifstream file(task.path() / "stat");
    std::string line;
    if (!std::getline(file, line)) continue;
    const std::size_t end = line.rfind(')');
    if (end == std::string::npos) continue;
    char state = 0;
    int parent = 0;
    if (std::sscanf(line.c_str() + end + 1, " %c %d", &state, &parent) == 2 && parent == getpid())
      states += state;
  }
  return states;
}

TEST_F(LinuxShellTest, NoZombieStaysBehind) {
  for (int i = 0; i < 5; ++i) {
    ASSERT_TRUE(shell_.RunHidden({"tool"}).ok());
    Written();
  }
  EXPECT_TRUE(Comes([] { return ChildStates().empty(); })) << ChildStates();
}

constexpr char kParameters[] = "/silent /log =\"Setup.log\" /NOCANCEL";

class OpenInstallerTest : public LinuxShellTest {
 protected:
  OpenInstallerTest() {
    folder_.Write("Zendrix Update.exe",
                  "#!/bin/sh\n{ printf '%s\\n' \"$#\" \"$@\"; pwd; echo; } > \"$OUT.new\"\n"
                  "mv \"$OUT.new\" \"$OUT\"\n");
    Mode(0755);
  }
  void Mode(mode_t mode) { chmod(installer_.c_str(), mode); }
  ErrorKind Refusal() {
    const Status status = shell_.OpenInstaller(installer_, kParameters);
    EXPECT_FALSE(status.ok());
    return status.ok() ? ErrorKind::kOther : status.error().kind;
  }

  const std::string installer_ = folder_.Path("Zendrix Update.exe");
};

TEST_F(OpenInstallerTest, ProgramOfTheUsersOwnStartsInItsFolderWithItsParameters) {
  ASSERT_TRUE(shell_.OpenInstaller(installer_, kParameters).ok());
  EXPECT_EQ(Written(), "4\n/silent\n/log\n=Setup.log\n/NOCANCEL\n" + folder_.path() + "\n");
}

TEST_F(OpenInstallerTest, QuotesHoldAParameterTogetherAndNothingIsExpanded) {
  ASSERT_TRUE(shell_.OpenInstaller(installer_, "  \"a  b\"c \"\" $(id) ").ok());
  EXPECT_EQ(Written(), "3\na  bc\n\n$(id)\n" + folder_.path() + "\n");
  ASSERT_TRUE(shell_.OpenInstaller(installer_, "").ok());
  EXPECT_EQ(Written(), "0\n" + folder_.path() + "\n");
}

TEST_F(OpenInstallerTest, FileThatOthersMayWriteIsNotStarted) {
  for (const mode_t mode : {0775, 0757, 0777}) {
    Mode(mode);
    EXPECT_EQ(Refusal(), ErrorKind::kPermissionDenied) << std::oct << mode;
  }
}

TEST_F(OpenInstallerTest, FolderThatOthersMayWriteStartsNothing) {
  for (const mode_t mode : {0770, 0707, 01777}) {
    chmod(folder_.path().c_str(), mode);
    EXPECT_EQ(Refusal(), ErrorKind::kPermissionDenied) << std::oct << mode;
  }
}

TEST_F(OpenInstallerTest, FileOrFolderOfSomebodyElseStartsNothing) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can give a file away";
  constexpr uid_t kNobody = 65534;
  ASSERT_EQ(chown(installer_.c_str(), kNobody, 0), 0);
  EXPECT_EQ(Refusal(), ErrorKind::kPermissionDenied);
  ASSERT_EQ(chown(installer_.c_str(), 0, 0), 0);
  ASSERT_EQ(chown(folder_.path().c_str(), kNobody, 0), 0);
  EXPECT_EQ(Refusal(), ErrorKind::kPermissionDenied);
}

TEST_F(OpenInstallerTest, LinkFolderOrPipeIsNoInstaller) {
  std::filesystem::rename(installer_, folder_.Path("elsewhere"));
  std::filesystem::create_symlink(folder_.Path("elsewhere"), installer_);
  EXPECT_FALSE(shell_.OpenInstaller(installer_, kParameters).ok());
  std::filesystem::remove(installer_);
  ASSERT_EQ(mkfifo(installer_.c_str(), 0755), 0);
  EXPECT_EQ(Refusal(), ErrorKind::kNotRegular);
  std::filesystem::remove(installer_);
  std::filesystem::create_directory(installer_);
  EXPECT_EQ(Refusal(), ErrorKind::kNotRegular);
}

TEST_F(OpenInstallerTest, WhatIsNoProgramOrNotThereIsRefused) {
  Mode(0644);
  EXPECT_EQ(Refusal(), ErrorKind::kPermissionDenied);
  Mode(0755);
  folder_.Write("Zendrix Update.exe", "neither a script nor an image");
  EXPECT_FALSE(shell_.OpenInstaller(installer_, kParameters).ok());
  std::filesystem::remove(installer_);
  EXPECT_EQ(Refusal(), ErrorKind::kNotFound);
  EXPECT_EQ(shell_.OpenInstaller("/no/such/folder/x", "").error().kind, ErrorKind::kNotFound);
  EXPECT_FALSE(shell_.OpenInstaller("tool", "").ok());
  EXPECT_FALSE(shell_.OpenInstaller(installer_ + std::string("\0x", 2), "").ok());
  EXPECT_FALSE(std::filesystem::exists(out_));
}

}  // namespace
}  // namespace zendrix::platform
