// The inspector where the package manager puts it: in the system's own folder of programs, run by an ordinary
// user, with the Agent's files of another one. The places lie in a mount name space of the test's own;
// nothing of the machine is touched.
#include <fcntl.h>
#include <grp.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>

#include "cli/inspector.h"
#include "platform/install_paths.h"

namespace zendrix::test {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr uid_t kNobody = 65534;
constexpr int kNoNameSpace = 77;
constexpr char kAgentsFolder[] = "/var/lib/zendrix/home";

void CopyTo(const std::string& from, const std::string& to) {
  std::filesystem::copy_file(from, to, std::filesystem::copy_options::overwrite_existing);
}

class InstalledTest : public InspectorTest {
 protected:
  InstalledTest() {
    std::filesystem::permissions(root_.path(), std::filesystem::perms(0755));
    for (const char* name : {"bin", "share", "share/zendrix", "services", "services/zendrix",
                             "services/zendrix/home", "services/zendrix/admin", "user"})
      std::filesystem::create_directory(root_.Path(name));
    EXPECT_EQ(chown(root_.Path("user").c_str(), geteuid() == 0 ? kNobody : geteuid(), getegid()), 0);
    WriteAlertHistory();
    WriteDescriptions();
    WriteHashed("KorvessaDesc1.kvl", "2,1,Agent watches.\r\n2,3,Agent rests.\r\n");
    for (const std::string& name : FilesIn(folder_.path()))
      CopyTo(folder_.Path(name),
             root_.Path((name.starts_with("KorvessaDesc") ? "share/zendrix/" : "services/zendrix/home/") +
                        name));
    std::filesystem::remove(root_.Path("services/zendrix/home/zendrix.ini"));
    std::filesystem::remove(root_.Path("services/zendrix/home/zendrix.kvh"));
    CopyTo(InspectorPath(), root_.Path("bin/zendrix-inspect"));
  }

  void LetOthersIn(bool in) {
    std::filesystem::permissions(root_.Path("services/zendrix/home"),
                                 std::filesystem::perms(in ? 0755 : 0750));
  }

  // What the installed inspector prints, with the environment of the user and nothing else.
  Json Run(const Arguments& arguments) {
    const std::string output = root_.Path("output");
    const pid_t child = fork();
    if (child == 0) _exit(Become(arguments, output));
    int status = 0;
    waitpid(child, &status, 0);
    if (WIFEXITED(status) && WEXITSTATUS(status) == kNoNameSpace) {
      no_name_space_ = true;
      return {};
    }
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    std::ifstream file(output);
    return Json::parse(file, nullptr, false);
  }

  TemporaryFolder root_;
  bool no_name_space_ = false;

 private:
  bool Lay(const char* folder, const char* place) const {
    return mount(root_.Path(folder).c_str(), place, nullptr, MS_BIND, nullptr) == 0;
  }
  int Become(const Arguments& arguments, const std::string& output) const {
    if (unshare(CLONE_NEWNS) != 0 || mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
      return kNoNameSpace;
    const std::string shares = std::filesystem::path(platform::kInstalledData).parent_path();
    if (!Lay("bin", platform::kInstalledPrograms) || !Lay("share", shares.c_str()) ||
        !Lay("services", "/var/lib"))
      return kNoNameSpace;
    const int file = open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    if (file < 0 || dup2(file, STDOUT_FILENO) < 0) return 1;
    if (setgroups(0, nullptr) != 0 || setgid(kNobody) != 0 || setuid(kNobody) != 0) return kNoNameSpace;
    const std::string home = "HOME=" + root_.Path("user");
    const std::string program = std::string(platform::kInstalledPrograms) + "/zendrix-inspect";
    std::vector<char*> words = {const_cast<char*>(program.c_str())};
    for (const std::string& argument : arguments) words.push_back(const_cast<char*>(argument.c_str()));
    words.push_back(nullptr);
    char relative[] = "XDG_STATE_HOME=state", zone[] = "TZ=UTC";
    char* environment[] = {const_cast<char*>(home.c_str()), relative, zone, nullptr};
    execve(program.c_str(), words.data(), environment);
    return 1;
  }
};

#define SKIP_WITHOUT_NAME_SPACE()                                                                          \
  if (no_name_space_ || geteuid() != 0)                                                                    \
  GTEST_SKIP() << "SKIPPED: only root can lay folders over the system's own in a mount name space of the " \
                  "test's own. The installed inspector is not tried."

TEST_F(InstalledTest, AUserOutsideOfTheGroupIsToldWhatToDoAndNothingElse) {
  LetOthersIn(false);
  const Json status = Run({"status"});
  SKIP_WITHOUT_NAME_SPACE();
  EXPECT_THAT(BoxTexts(status), IsEmpty());
  EXPECT_THAT(status["icStatus"].get<std::string>(), HasSubstr("\"adduser nobody zendrix\""));
  EXPECT_EQ(status["AgentLevel"], 3);
  EXPECT_THAT(LogLines(Run({"desc", "1", "2,1,"})), Contains(HasSubstr("\"adduser nobody zendrix\"")));
}

TEST_F(InstalledTest, AFirstStartMakesTheSettingsInTheUsersFoldersWithoutAWord) {
  LetOthersIn(true);
  const auto agents = Listing(root_.Path("services"));
  const Json first = Run({"--write", "status"});
  SKIP_WITHOUT_NAME_SPACE();
  EXPECT_THAT(BoxTexts(first), IsEmpty());
  EXPECT_EQ(FilesIn(root_.Path("user/.config/zendrix")),
            (std::vector<std::string>{"zendrix.ini", "zendrix.kvh"}));
  EXPECT_EQ(FilesIn(root_.Path("user/.local/state/zendrix")),
            std::vector<std::string>{"KorvessaAdministratorEventLog.kvl"});
  EXPECT_EQ(std::filesystem::status(root_.Path("user/.config/zendrix")).permissions(),
            std::filesystem::perms(0700));
  EXPECT_THAT(BoxTexts(Run({"--write", "status"})), IsEmpty());
  EXPECT_EQ(Listing(root_.Path("services")), agents);
}

TEST_F(InstalledTest, WithoutWriteNothingIsMade) {
  LetOthersIn(true);
  const Json events = Run({"events"});
  SKIP_WITHOUT_NAME_SPACE();
  EXPECT_THAT(BoxTexts(events), IsEmpty());
  EXPECT_FALSE(events["rows"].empty());
  EXPECT_TRUE(std::filesystem::is_empty(root_.Path("user")));
}

}  // namespace
}  // namespace zendrix::test
