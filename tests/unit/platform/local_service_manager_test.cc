#include "platform/linux/local_service_manager.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <algorithm>
#include <filesystem>
#include <thread>

#include "child_process.h"
#include "platform/linux/process_lock.h"
#include "support/temporary_folder.h"

namespace zendrix::platform {
namespace {

using test::ChildProcess;

// Never reached, however busy the machine is.
constexpr auto kLongWait = std::chrono::seconds(100);
constexpr auto kShortWait = std::chrono::milliseconds(200);

class LocalServiceManagerTest : public ::testing::Test {
 protected:
  // Whatever a test has started ends with it.
  ~LocalServiceManagerTest() override {
    if (const auto holder = HolderOf(Lock()); holder && holder->process > 0) kill(holder->process, SIGKILL);
  }

  std::string Lock() const { return folder_.Path(kAgentLock); }
  LocalServiceManager Manager(std::chrono::milliseconds deadline = kLongWait,
                              const std::string& program = ZENDRIX_TEST_AGENT) const {
    return LocalServiceManager({"ZENDRIX", program, folder_.path(), {"--form", "home"}, deadline});
  }
  int Start() const { return Number(Manager().Run("ZENDRIX", ServiceMethod::kStart)); }
  int Stop() const { return Number(Manager().Run("ZENDRIX", ServiceMethod::kStop)); }
  std::string State() const { return Manager().Properties("ZENDRIX").value().state; }
  static int Number(const Result<int>& result) {
    return result ? result.value() : -1 - static_cast<int>(result.error().kind);
  }
  std::vector<std::string> Started() const {
    std::vector<std::string> lines;
    std::istringstream text(folder_.Read("started"));
    for (std::string line; std::getline(text, line);) lines.push_back(line);
    return lines;
  }

  test::TemporaryFolder folder_;
};

TEST_F(LocalServiceManagerTest, AgentIsStartedForTheFolder) {
  EXPECT_EQ(Start(), 0);
  EXPECT_EQ(State(), "Running");
  EXPECT_EQ(Started(), std::vector<std::string>{"--folder " + folder_.path() + " --form home "});
  EXPECT_EQ(Manager().Process(), HolderOf(Lock())->process);
  EXPECT_EQ(Stop(), 0);
  EXPECT_EQ(State(), "Stopped");
  EXPECT_FALSE(Manager().Process());
}

TEST_F(LocalServiceManagerTest, AgentHasASessionOfItsOwn) {
  ASSERT_EQ(Start(), 0);
  const pid_t agent = *Manager().Process();
  EXPECT_EQ(getsid(agent), agent);
}

TEST_F(LocalServiceManagerTest, AgentThatDiesAtOnceIsAFailedStart) {
  for (const char* plan : {"die", "die-late", "killed"}) {
    folder_.Write("plan", plan);
    EXPECT_EQ(Start(), 8) << plan;
    EXPECT_EQ(State(), "Stopped") << plan;
  }
}

TEST_F(LocalServiceManagerTest, AgentThatDiedLeavesNoZombie) {
  folder_.Write("plan", "die");
  // In a process that has no other children.
  ChildProcess console([this](const ChildProcess::Line&) {
    if (Start() != 8) return 1;
    return waitpid(-1, nullptr, WNOHANG) == -1 && errno == ECHILD ? 0 : 2;
  });
  EXPECT_EQ(console.Wait(), 0);
}

TEST_F(LocalServiceManagerTest, AgentThatIsNotReadyInTimeIsATimeOut) {
  folder_.Write("plan", "slow");
  EXPECT_EQ(Number(Manager(kShortWait).Run("ZENDRIX", ServiceMethod::kStart)), 7);
  // On a busy machine it may not even have come to its lock yet.
  while (!HolderOf(Lock())) std::this_thread::yield();
  EXPECT_EQ(State(), "Start Pending");
  EXPECT_EQ(Start(), 10);
  EXPECT_EQ(Stop(), 0);
}

TEST_F(LocalServiceManagerTest, AgentThatDoesNotEndInTimeIsATimeOut) {
  folder_.Write("plan", "stubborn");
  ASSERT_EQ(Start(), 0);
  EXPECT_EQ(Number(Manager(kShortWait).Run("ZENDRIX", ServiceMethod::kStop)), 7);
  EXPECT_EQ(State(), "Running");
}

TEST_F(LocalServiceManagerTest, LockLeftBehindByAKilledAgentIsInNobodysWay) {
  ASSERT_EQ(Start(), 0);
  kill(*Manager().Process(), SIGKILL);
  while (HolderOf(Lock())) std::this_thread::yield();
  EXPECT_EQ(State(), "Stopped");
  EXPECT_EQ(Stop(), 6);
  EXPECT_EQ(Start(), 0);
  EXPECT_EQ(State(), "Running");
}

// Two consoles, or a console and run.sh, at the same moment.
TEST_F(LocalServiceManagerTest, RacingStartsGiveOneAgent) {
  std::vector<ChildProcess> consoles;
  for (int i = 0; i < 4; ++i) {
    consoles.emplace_back([this](const ChildProcess::Line& parent) {
      parent.Hear();
      return Start();
    });
  }
  for (const ChildProcess& console : consoles) console.Tell('g');
  std::vector<int> numbers;
  for (ChildProcess& console : consoles) numbers.push_back(console.Wait());
  std::sort(numbers.begin(), numbers.end());
  EXPECT_EQ(numbers, (std::vector<int>{0, 10, 10, 10}));
  EXPECT_EQ(State(), "Running");
  EXPECT_EQ(Stop(), 0);
  EXPECT_FALSE(HolderOf(Lock()));
}

// A program that took the lock got the console's signals, and the console called it the Agent.
TEST_F(LocalServiceManagerTest, HolderThatIsNotThatProgramIsNoAgent) {
  ChildProcess stranger([path = Lock()](const ChildProcess::Line& parent) {
    ProcessLock lock;
    lock.Acquire(path);
    lock.SetReady();
    parent.Tell('l');
    parent.Hear();
    return 0;
  });
  ASSERT_EQ(stranger.Hear(), 'l');
  EXPECT_EQ(State(), "Stopped");
  EXPECT_EQ(Start(), 19);
  EXPECT_EQ(Stop(), 6);
  EXPECT_TRUE(Started().empty());
  stranger.Tell('e');
  EXPECT_EQ(stranger.Wait(), 0);
}

TEST_F(LocalServiceManagerTest, CopyOfTheProgramIsAnotherProgram) {
  const test::TemporaryFolder elsewhere;
  const std::string copy = elsewhere.Path("zendrix-agent");
  std::filesystem::copy_file(ZENDRIX_TEST_AGENT, copy);
  auto other = Manager(kLongWait, copy);
  ASSERT_EQ(Number(other.Run("ZENDRIX", ServiceMethod::kStart)), 0);
  EXPECT_EQ(State(), "Stopped");
  EXPECT_EQ(Start(), 19);
  EXPECT_EQ(Stop(), 6);
  EXPECT_EQ(Number(other.Run("ZENDRIX", ServiceMethod::kStop)), 0);
}

// An upgrade under a running Agent had the console say "not watching", with no way to stop it.
TEST_F(LocalServiceManagerTest, AgentWhoseProgramWasReplacedIsStillTheOne) {
  const test::TemporaryFolder elsewhere;
  const std::string program = elsewhere.Path("zendrix-agent");
  std::filesystem::copy_file(ZENDRIX_TEST_AGENT, program);
  auto manager = Manager(kLongWait, program);
  const auto state = [&] { return manager.Properties("ZENDRIX").value().state; };
  ASSERT_EQ(Number(manager.Run("ZENDRIX", ServiceMethod::kStart)), 0);
  std::filesystem::copy_file(ZENDRIX_TEST_AGENT, elsewhere.Path("new"));
  std::filesystem::rename(elsewhere.Path("new"), program);
  EXPECT_EQ(state(), "Running");
  EXPECT_EQ(Number(manager.Run("ZENDRIX", ServiceMethod::kStart)), 10);
  EXPECT_EQ(Number(manager.Run("ZENDRIX", ServiceMethod::kStop)), 0);
  EXPECT_EQ(state(), "Stopped");
}

TEST_F(LocalServiceManagerTest, RemovedCopyOfTheProgramIsAnotherProgram) {
  const test::TemporaryFolder elsewhere;
  const std::string copy = elsewhere.Path("zendrix-agent");
  std::filesystem::copy_file(ZENDRIX_TEST_AGENT, copy);
  auto other = Manager(kLongWait, copy);
  ASSERT_EQ(Number(other.Run("ZENDRIX", ServiceMethod::kStart)), 0);
  std::filesystem::rename(copy, elsewhere.Path("moved"));
  std::filesystem::copy_file(ZENDRIX_TEST_AGENT, copy);
  std::filesystem::remove(elsewhere.Path("moved"));
  EXPECT_EQ(State(), "Stopped");
  EXPECT_EQ(Stop(), 6);
}

TEST_F(LocalServiceManagerTest, AgentOfAnotherUserIsNotTouched) {
  if (geteuid() != 0) GTEST_SKIP() << "needs a second user";
  ASSERT_EQ(chmod(folder_.path().c_str(), 0777), 0);
  ChildProcess other([this](const ChildProcess::Line& parent) {
    if (setgid(65534) != 0 || setuid(65534) != 0) return 97;
    const bool reaches = access(ZENDRIX_TEST_AGENT, X_OK) == 0 && access(folder_.path().c_str(), W_OK) == 0;
    if (!reaches) {
      parent.Tell('-');
      return 0;
    }
    const int number = Start();
    parent.Tell(static_cast<char>('A' + number));
    parent.Hear();
    return Stop();
  });
  const char told = other.Hear();
  if (told == '-') GTEST_SKIP() << "the second user does not reach the program or the folder";
  ASSERT_EQ(told, 'A');
  EXPECT_EQ(State(), "Stopped");
  EXPECT_EQ(Stop(), 6);
  EXPECT_EQ(Start(), 19);
  other.Tell('e');
  EXPECT_EQ(other.Wait(), 0);
}

TEST_F(LocalServiceManagerTest, AgentThatMayNotBeExecutedIsNoAccess) {
  const test::TemporaryFolder elsewhere;
  elsewhere.Write("zendrix-agent", "#!/bin/true\n");
  auto manager = Manager(kLongWait, elsewhere.Path("zendrix-agent"));
  EXPECT_EQ(Number(manager.Run("ZENDRIX", ServiceMethod::kStart)), 2);
}

TEST_F(LocalServiceManagerTest, WithoutAnAgentThereIsNoService) {
  auto manager = Manager(kLongWait, folder_.Path("nothing"));
  EXPECT_EQ(manager.Run("ZENDRIX", ServiceMethod::kStart).error().kind, ErrorKind::kNotFound);
  EXPECT_EQ(manager.Properties("ZENDRIX").error().kind, ErrorKind::kNotFound);
  folder_.Write(kAgentLock, "");
  EXPECT_FALSE(manager.InCharge());
}

TEST_F(LocalServiceManagerTest, IsInChargeOnceAnAgentWasAtWork) {
  EXPECT_FALSE(Manager().InCharge());
  ASSERT_EQ(Start(), 0);
  EXPECT_TRUE(Manager().InCharge());
  ASSERT_EQ(Stop(), 0);
  EXPECT_TRUE(Manager().InCharge());
}

TEST_F(LocalServiceManagerTest, LookingChangesNothing) {
  EXPECT_EQ(State(), "Stopped");
  EXPECT_EQ(Stop(), 6);
  EXPECT_TRUE(std::filesystem::is_empty(folder_.path()));
}

}  // namespace
}  // namespace zendrix::platform
