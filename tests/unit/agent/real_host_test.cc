// The real program on the real /proc, in a temporary folder.
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <thread>

#include "agent/host/host_view.h"
#include "agent/host/text.h"
#include "support/temporary_folder.h"

namespace zendrix::agent {
namespace {

using ::testing::HasSubstr;

struct Ended {
  int status = -1;
  std::string errors;
  std::string output;
};

// Starts the program with its streams in files of `folder`.
pid_t Start(const test::TemporaryFolder& folder, std::vector<std::string> arguments) {
  const std::string output = folder.Path("out");
  const std::string errors = folder.Path("err");
  std::vector<char*> words;
  std::string program = ZENDRIX_AGENT;
  words.push_back(program.data());
  for (std::string& argument : arguments) words.push_back(argument.data());
  words.push_back(nullptr);
  const pid_t pid = fork();
  if (pid != 0) return pid;
  dup2(open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), 1);
  dup2(open(errors.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), 2);
  execv(words[0], words.data());
  _exit(127);
}

Ended WaitFor(const test::TemporaryFolder& folder, pid_t pid) {
  Ended ended;
  int status = 0;
  if (waitpid(pid, &status, 0) == pid && WIFEXITED(status)) ended.status = WEXITSTATUS(status);
  ended.errors = folder.Read("err");
  ended.output = folder.Read("out");
  return ended;
}

class RealHost : public ::testing::Test {
 protected:
  Ended Run(const std::vector<std::string>& arguments) { return WaitFor(folder, Start(folder, arguments)); }

  static bool IsOneLine(const std::string& text) {
    return !text.empty() && text.find('\n') == text.size() - 1;
  }

  test::TemporaryFolder folder;
};

TEST_F(RealHost, OneLookInTheHomeFormGivesFullLines) {
  const Ended ended = Run({"--once", "--folder", folder.path()});
  EXPECT_EQ(ended.status, 0) << ended.errors;
  EXPECT_EQ(ended.errors, "");
  const std::string text = folder.Read("KorvessaMonitoring.kvl");
  EXPECT_TRUE(text.ends_with("|0\r\n"));
  EXPECT_THAT(text, HasSubstr(",System|0|0|Begin Session Refresh.|"));
  EXPECT_THAT(text, HasSubstr(",Running Processes|1|0|"));
  EXPECT_THAT(text, HasSubstr(",System Users|1|0|root * "));
  for (const auto line : SplitLines(text)) {
    const auto fields = SplitFields(line, '|');
    ASSERT_EQ(fields.size(), 7U) << line;
    EXPECT_EQ(SplitFields(fields[0], ',').size(), 4U) << line;
    EXPECT_EQ(line.find_first_of("\t\r\n'"), std::string_view::npos) << line;
  }
  EXPECT_THAT(folder.Read("KorvessaEventLog.kvl"), HasSubstr("Agent stopped\r\n"));
}

TEST_F(RealHost, OneLookInTheAdminFormGivesFiveFields) {
  const Ended ended = Run({"--once", "--form", "admin", "--folder", folder.path()});
  EXPECT_EQ(ended.status, 0) << ended.errors;
  const std::string text = folder.Read("KorvessaMonitoring.kvl");
  EXPECT_THAT(text, HasSubstr(",System,B,Begin Session Refresh.\r\n"));
  EXPECT_THAT(text, HasSubstr(",Running Processes,B,** Start baseline **\r\n"));
  EXPECT_THAT(text, HasSubstr(",Running Processes,A,"));
  for (const auto line : SplitLines(text)) EXPECT_EQ(SplitFields(line, ',').size(), 5U) << line;
}

TEST_F(RealHost, RequestToStopEndsAtALineEnd) {
  const pid_t pid = Start(folder, {"--interval", "1", "--folder", folder.path()});
  const auto give_up = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  while (folder.Read("KorvessaEventLog.kvl").find("Session began") == std::string::npos &&
         std::chrono::steady_clock::now() < give_up) {
    std::this_thread::yield();
  }
  kill(pid, SIGTERM);
  EXPECT_EQ(WaitFor(folder, pid).status, 0);
  EXPECT_TRUE(folder.Read("KorvessaMonitoring.kvl").ends_with("\r\n"));
  EXPECT_THAT(folder.Read("KorvessaEventLog.kvl"), HasSubstr("Agent stopped\r\n"));
}

// Two Agents of one folder wrote over each other's idea of the file.
TEST_F(RealHost, SecondAgentOfAFolderEndsAtOnce) {
  ASSERT_EQ(Run({"--start", "--folder", folder.path()}).status, 0);
  const std::string written = folder.Read("KorvessaMonitoring.kvl");
  EXPECT_THAT(written, HasSubstr("Begin Session Refresh."));
  for (const char* task : {"--once", "--start"}) {
    const Ended ended = Run({task, "--folder", folder.path()});
    EXPECT_EQ(ended.status, 3) << task;
    EXPECT_TRUE(IsOneLine(ended.errors)) << ended.errors;
  }
  EXPECT_EQ(Run({"--stop", "--folder", folder.path()}).status, 0);
  EXPECT_EQ(Run({"--once", "--folder", folder.path()}).status, 0);
}

TEST_F(RealHost, StartedAgentGoesOnUntilItIsStopped) {
  const Ended started = Run({"--start", "--folder", folder.path()});
  ASSERT_EQ(started.status, 0) << started.errors;
  EXPECT_TRUE(IsOneLine(started.output)) << started.output;
  const std::string words = "by the Agent beside the console, process ";
  const std::size_t at = started.output.find(words);
  ASSERT_NE(at, std::string::npos) << started.output;
  const pid_t agent = std::stoi(started.output.substr(at + words.size()));
  EXPECT_EQ(kill(agent, 0), 0);
  EXPECT_EQ(Run({"--stop", "--folder", folder.path()}).status, 0);
  EXPECT_THAT(folder.Read("KorvessaEventLog.kvl"), HasSubstr("Agent stopped\r\n"));
  // Nothing to stop is as good as stopped.
  EXPECT_EQ(Run({"--stop", "--folder", folder.path()}).status, 0);
}

TEST_F(RealHost, StartThatFailsSaysSo) {
  folder.Write("KorvessaMonitoring.kvl", "1,vm,System,B,a line of the other form\r\n");
  const Ended ended = Run({"--start", "--folder", folder.path()});
  EXPECT_EQ(ended.status, 1);
  EXPECT_TRUE(IsOneLine(ended.errors)) << ended.errors;
}

// An Agent whose folder was deleted wrote on for ever, and nothing could find it to stop it.
TEST_F(RealHost, AgentEndsWithItsFolder) {
  test::TemporaryFolder gone;
  const pid_t pid = Start(folder, {"--folder", gone.path()});
  while (gone.Read("KorvessaEventLog.kvl").find("Session began") == std::string::npos) {
    std::this_thread::yield();
  }
  // The Agent may write into the folder while its files are being removed.
  std::error_code refused;
  do {
    std::filesystem::remove_all(gone.path(), refused);
  } while (std::filesystem::exists(gone.path()));
  EXPECT_EQ(WaitFor(folder, pid).status, 0);
}

TEST_F(RealHost, FolderWithoutALockIsNotWrittenInto) {
  ASSERT_EQ(symlink("elsewhere", folder.Path("zendrix-agent.lock").c_str()), 0);
  const Ended ended = Run({"--once", "--folder", folder.path()});
  EXPECT_EQ(ended.status, 1);
  EXPECT_TRUE(IsOneLine(ended.errors)) << ended.errors;
  EXPECT_EQ(folder.Read("KorvessaMonitoring.kvl"), "");
}

TEST_F(RealHost, WrongUsageIsOneLineAndStatusTwo) {
  const Ended ended = Run({"--interval", "soon"});
  EXPECT_EQ(ended.status, 2);
  EXPECT_TRUE(IsOneLine(ended.errors)) << ended.errors;
  EXPECT_EQ(ended.output, "");
}

TEST_F(RealHost, HelpGoesToTheOutput) {
  const Ended ended = Run({"--help"});
  EXPECT_EQ(ended.status, 0);
  EXPECT_THAT(ended.output, HasSubstr("--interval SECONDS"));
  EXPECT_EQ(ended.errors, "");
}

TEST_F(RealHost, MonitoringFileThatIsALinkIsNotWrittenThrough) {
  folder.Write("victim", "");
  ASSERT_EQ(symlink(folder.Path("victim").c_str(), folder.Path("KorvessaMonitoring.kvl").c_str()), 0);
  const Ended ended = Run({"--once", "--folder", folder.path()});
  EXPECT_EQ(ended.status, 1);
  EXPECT_TRUE(IsOneLine(ended.errors)) << ended.errors;
  EXPECT_EQ(folder.Read("victim"), "");
}

TEST_F(RealHost, NothingButAPlainFileIsWrittenInto) {
  for (const char* name : {"KorvessaMonitoring.kvl", "KorvessaEventLog.kvl", "zendrix-agent.status"}) {
    for (const bool pipe : {false, true}) {
      SCOPED_TRACE(std::string(name) + (pipe ? " is a pipe" : " is a link"));
      test::TemporaryFolder own;
      own.Write("victim", "");
      const std::string path = own.Path(name);
      ASSERT_EQ(pipe ? mkfifo(path.c_str(), 0600) : symlink(own.Path("victim").c_str(), path.c_str()), 0);
      const Ended ended = Run({"--once", "--folder", own.path()});
      const bool vital = std::string_view(name) == "KorvessaMonitoring.kvl";
      EXPECT_EQ(ended.status, vital ? 1 : 0);
      EXPECT_EQ(own.Read("victim"), "");
      EXPECT_TRUE(std::filesystem::is_symlink(path) || std::filesystem::is_fifo(path)) << "left alone";
      const bool is_status = std::string_view(name) == "zendrix-agent.status";
      EXPECT_THAT(is_status ? own.Read("KorvessaEventLog.kvl") : ended.errors, HasSubstr(name)) << "told";
    }
  }
}

TEST_F(RealHost, ServiceWritesBothForms) {
  const Ended ended = Run({"--once", "--plain", "--state", folder.path()});
  EXPECT_EQ(ended.status, 0) << ended.errors;
  EXPECT_THAT(folder.Read("home/KorvessaMonitoring.kvl"), HasSubstr(",System|0|0|Begin Session Refresh.|"));
  EXPECT_THAT(folder.Read("admin/KorvessaMonitoring.kvl"), HasSubstr(",System,B,Begin Session Refresh.\r\n"));
  EXPECT_THAT(folder.Read("zendrix-agent.status"), HasSubstr("\"running\": false"));
  EXPECT_FALSE(std::filesystem::exists(folder.Path("home/zendrix-agent.lock")))
      << "a console would take the service for an Agent of its own";
}

TEST_F(RealHost, StateFolderThatIsALinkIsRefused) {
  test::TemporaryFolder elsewhere;
  ASSERT_EQ(symlink(elsewhere.path().c_str(), folder.Path("admin").c_str()), 0);
  const Ended ended = Run({"--once", "--plain", "--state", folder.path()});
  EXPECT_EQ(ended.status, 1);
  EXPECT_TRUE(IsOneLine(ended.errors)) << ended.errors;
  EXPECT_TRUE(std::filesystem::is_empty(elsewhere.path()));
}

TEST_F(RealHost, StatusTellsHowAnAgentWouldWatchAndHowTheRunningOneDoes) {
  const Ended before = Run({"--status", "--plain", "--folder", folder.path()});
  EXPECT_EQ(before.status, 0) << before.errors;
  EXPECT_THAT(before.output, HasSubstr("\"running\": false"));
  EXPECT_THAT(before.output, HasSubstr("{\"watched\": \"Running Processes\", \"level\": \"polling\""));
  EXPECT_TRUE(std::filesystem::is_empty(folder.Path(".")) || folder.Read("zendrix-agent.status").empty());
  const Ended started = Run({"--start", "--plain", "--interval", "7", "--folder", folder.path()});
  ASSERT_EQ(started.status, 0) << started.errors;
  EXPECT_THAT(started.output, HasSubstr("By a look every 7 s it sees "));
  const Ended running = Run({"--status", "--folder", folder.path()});
  EXPECT_THAT(running.output, HasSubstr("\"running\": true"));
  EXPECT_THAT(running.output, HasSubstr("a look every 7 s"));
  EXPECT_EQ(Run({"--stop", "--folder", folder.path()}).status, 0);
  EXPECT_THAT(folder.Read("zendrix-agent.status"), HasSubstr("\"running\": false"));
}

// What stands in the folder may be anybody's, and goes to a terminal.
TEST_F(RealHost, StatusWithControlCharactersIsNotPrinted) {
  ASSERT_EQ(Run({"--start", "--plain", "--folder", folder.path()}).status, 0);
  folder.Write("zendrix-agent.status", "\x1b[2J \"running\": true");
  EXPECT_EQ(Run({"--status", "--plain", "--folder", folder.path()}).output.find('\x1b'), std::string::npos);
  EXPECT_EQ(Run({"--stop", "--folder", folder.path()}).status, 0);
}

TEST_F(RealHost, PipeInAWatchedPlaceIsNotWaitedFor) {
  ASSERT_EQ(mkfifo(folder.Path("x.desktop").c_str(), 0600), 0);
  EXPECT_FALSE(MakeLinuxHostView()->ReadText(folder.Path("x.desktop"), 100));
}

TEST_F(RealHost, ViewTellsKindsSizesAndNames) {
  const auto host = MakeLinuxHostView();
  folder.Write("b", "12345");
  folder.Write("a", "");
  ASSERT_EQ(symlink("b", folder.Path("c").c_str()), 0);
  EXPECT_THAT(host->List(folder.path()), ::testing::ElementsAre("a", "b", "c"));
  EXPECT_EQ(host->Look(folder.Path("b"))->kind, EntryKind::kFile);
  EXPECT_EQ(host->Look(folder.Path("b"))->size, 5);
  EXPECT_EQ(host->Look(folder.Path("c"))->kind, EntryKind::kLink);
  EXPECT_EQ(host->Look(folder.path())->kind, EntryKind::kFolder);
  EXPECT_EQ(host->ReadLink(folder.Path("c")), "b");
  EXPECT_EQ(host->ReadText(folder.Path("c"), 3), "123");
}

TEST_F(RealHost, ViewOfWhatIsNotThereIsEmpty) {
  const auto host = MakeLinuxHostView();
  EXPECT_FALSE(host->ReadText(folder.Path("none"), 3));
  EXPECT_FALSE(host->ReadText(folder.path(), 3));
  EXPECT_FALSE(host->ReadLink(folder.Path("none")));
  EXPECT_FALSE(host->Look(folder.Path("none")));
  EXPECT_TRUE(host->List(folder.Path("none")).empty());
}

}  // namespace
}  // namespace zendrix::agent
