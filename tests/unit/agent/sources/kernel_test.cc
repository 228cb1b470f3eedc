// The real kernel under the source: what this process starts, opens and closes must be told. Where the kernel
// refuses the programs these tests are skipped with its reason; the same road is tried with recorded streams
// in bpf_source_test.cc.
#include <arpa/inet.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <link.h>
#include <poll.h>
#include <sched.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <map>

#include "agent/host/distinct_name.h"
#include "agent/host/text.h"
#include "agent/sources/bpf_source.h"
#include "support/kernel_load.h"
#include "support/temporary_folder.h"

namespace zendrix::agent {
namespace {

using test::ConnectOnce;
using test::EnterOwnNetwork;
using test::ListenOn;
using test::MeasuredAddress;
using test::Spawn;
using Kind = Observation::Kind;
using ::testing::HasSubstr;

constexpr char kTrue[] = "/usr/bin/true";
constexpr char kFalse[] = "/usr/bin/false";

int WaitFor(pid_t pid) {
  int status = 0;
  waitpid(pid, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

class RealKernel : public ::testing::Test {
 protected:
  void SetUp() override {
    host = MakeLinuxHostView();
    source = MakeBpfSource(*host, 0);
    if (source->level().level == Level::kNone) GTEST_SKIP() << "SKIPPED: " << source->level().reason;
    source->Drain(seen);
    before = seen.size();
  }

  // Runs `work` in a process of its own and gives its exit status.
  static int InChild(const std::function<int()>& work) {
    const pid_t pid = fork();
    if (pid == 0) _exit(work());
    return WaitFor(pid);
  }

  std::uint64_t Lost() const {
    std::uint64_t lost = 0;
    for (const Observation& observation : seen) lost += observation.lost;
    return lost;
  }

  // How often each description was told since the first drain.
  std::map<std::string, int> Told(Kind kind, std::string_view monitor_name) const {
    std::map<std::string, int> told;
    for (std::size_t i = before; i < seen.size(); ++i) {
      if (seen[i].kind == kind && seen[i].item.monitor == monitor_name) ++told[seen[i].item.description];
    }
    return told;
  }

  // The item of the process, as it last came.
  std::optional<Item> ProcessTold(pid_t pid) const {
    const std::string end = ":" + std::to_string(pid);
    for (std::size_t i = seen.size(); i-- > before;) {
      const Item& item = seen[i].item;
      if (seen[i].kind == Kind::kCame && item.monitor == monitor::kProcesses &&
          item.description.ends_with(end))
        return item;
    }
    return {};
  }

  // A folder's own path may lead through links; the kernel knows the one that it ends at.
  std::string RealPath(const std::string& path) const { return std::filesystem::canonical(path).string(); }

  std::string CopyOf(const std::string& program, const std::string& name) {
    std::filesystem::copy_file(program, folder.Path(name));
    return RealPath(folder.Path(name));
  }

  test::TemporaryFolder folder;
  std::unique_ptr<HostView> host;
  std::unique_ptr<Source> source;
  std::vector<Observation> seen;
  std::size_t before = 0;
};

TEST_F(RealKernel, ItselfIsThereFromTheFirstDrainOn) {
  const std::string own =
      ProgramName({{}, ParseProgramFile(*host->ReadLink("/proc/self/exe"))}) + ":" + std::to_string(getpid());
  EXPECT_TRUE(std::any_of(seen.begin(), seen.end(), [&](const Observation& observation) {
    return observation.kind == Kind::kCame && observation.item.description == own;
  })) << own;
}

// Others use this computer too, so only what must become ready can be tried.
TEST_F(RealKernel, FirstRecordAfterAQuietDrainMakesItReady) {
  for (int i = 0; i < 100 && source->RestMs() != kQuietRestMs; ++i) source->Drain(seen);
  ASSERT_EQ(source->RestMs(), kQuietRestMs) << "two drains one after the other, and always something between";
  ASSERT_EQ(WaitFor(Spawn(kTrue)), 0);
  pollfd handle = {source->Handle(), POLLIN, 0};
  EXPECT_EQ(poll(&handle, 1, 10'000), 1);
  source->Drain(seen);
}

TEST_F(RealKernel, ProgramsThatEndAtOnceAreEachSeenOnceAndNamedRight) {
  constexpr int kStarts = 4000;
  const std::string own = CopyOf(kTrue, "short-lived");
  std::map<std::string, int> expected;
  for (int i = 0; i < kStarts; ++i) {
    const std::string& program = i % 2 == 0 ? own : kTrue;
    const pid_t pid = Spawn(program);
    ASSERT_GT(pid, 0);
    WaitFor(pid);
    ++expected[CleanName(program) + ":" + std::to_string(pid)];
    if (i % 100 == 0) source->Drain(seen);
  }
  source->Drain(seen);
  const auto came = Told(Kind::kCame, monitor::kProcesses);
  const auto went = Told(Kind::kWent, monitor::kProcesses);
  int right = 0;
  for (const auto& [description, times] : expected) {
    const auto coming = came.find(description);
    const auto going = went.find(description);
    if (coming != came.end() && going != went.end() && coming->second == times && going->second == times)
      right += times;
  }
  EXPECT_EQ(right, kStarts);
  EXPECT_EQ(Lost(), 0U);
}

TEST_F(RealKernel, NameWithALineEndAndSeparatorsIsCleaned) {
  const std::string program = CopyOf(kTrue, "a\nb|c,d'e");
  const pid_t pid = Spawn(program);
  WaitFor(pid);
  source->Drain(seen);
  ASSERT_TRUE(ProcessTold(pid));
  EXPECT_EQ(ProcessTold(pid)->description, DistinctName(program) + ":" + std::to_string(pid));
  EXPECT_THAT(ProcessTold(pid)->description, HasSubstr("a_b_c_d\x92"
                                                       "e"));
}

TEST_F(RealKernel, ScriptIsItsInterpreter) {
  folder.Write("script", "#!/bin/sh\nexit 0\n");
  ASSERT_EQ(chmod(folder.Path("script").c_str(), 0700), 0);
  const pid_t pid = Spawn(folder.Path("script"));
  WaitFor(pid);
  source->Drain(seen);
  ASSERT_TRUE(ProcessTold(pid));
  EXPECT_EQ(ProcessTold(pid)->description, RealPath("/bin/sh") + ":" + std::to_string(pid));
}

TEST_F(RealKernel, ProgramFromMemoryIsKnownAsSuch) {
  const pid_t pid = fork();
  if (pid == 0) {
    const int memory = memfd_create("usr/bin/true", 0);
    const int file = open(kTrue, O_RDONLY);
    char buffer[4096];
    for (ssize_t got = 0; (got = read(file, buffer, sizeof buffer)) > 0;) {
      if (write(memory, buffer, static_cast<std::size_t>(got)) != got) _exit(1);
    }
    char name[] = "true";
    char* const arguments[] = {name, nullptr};
    char* const environment[] = {nullptr};
    fexecve(memory, arguments, environment);
    _exit(2);
  }
  EXPECT_EQ(WaitFor(pid), 0);
  source->Drain(seen);
  ASSERT_TRUE(ProcessTold(pid));
  EXPECT_EQ(ProcessTold(pid)->description, "/memfd_usr/bin/true:" + std::to_string(pid));
  EXPECT_TRUE(ProcessTold(pid)->rules.Has(Rule::kProgramInMemory));
}

TEST_F(RealKernel, DeletedProgramKeepsItsNameAndIsKnownAsDeleted) {
  const std::string program = CopyOf(kTrue, "gone");
  const pid_t pid = fork();
  if (pid == 0) {
    const int file = open(program.c_str(), O_RDONLY | O_CLOEXEC);
    unlink(program.c_str());
    char name[] = "true";
    char* const arguments[] = {name, nullptr};
    char* const environment[] = {nullptr};
    fexecve(file, arguments, environment);
    _exit(2);
  }
  EXPECT_EQ(WaitFor(pid), 0);
  source->Drain(seen);
  ASSERT_TRUE(ProcessTold(pid));
  EXPECT_EQ(ProcessTold(pid)->description, CleanName(program) + ":" + std::to_string(pid));
  EXPECT_TRUE(ProcessTold(pid)->rules.Has(Rule::kProgramDeleted));
}

// A user may make himself a mount namespace and lay his own file over any path of the host's.
TEST_F(RealKernel, ProgramOfAnotherMountNamespaceDoesNotPassForTheHosts) {
  const std::string evil = CopyOf(kFalse, "evil");
  const pid_t pid = fork();
  if (pid == 0) {
    if (unshare(CLONE_NEWNS) != 0 || mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        mount(evil.c_str(), kTrue, nullptr, MS_BIND, nullptr) != 0) {
      _exit(77);
    }
    execl(kTrue, kTrue, static_cast<char*>(nullptr));
    _exit(2);
  }
  const int status = WaitFor(pid);
  if (status == 77) GTEST_SKIP() << "SKIPPED: no mount namespace may be made here";
  EXPECT_EQ(status, 1);
  source->Drain(seen);
  ASSERT_TRUE(ProcessTold(pid));
  EXPECT_THAT(ProcessTold(pid)->description, HasSubstr("/usr/bin/true in mount namespace "));
  EXPECT_EQ(ProcessTold(pid)->subject, "/usr/bin/true in another mount namespace");
}

// Services mostly run in namespaces of their own, but what they run is the host's.
TEST_F(RealKernel, HostsProgramInAnotherMountNamespaceKeepsItsName) {
  const pid_t pid = fork();
  if (pid == 0) {
    if (unshare(CLONE_NEWNS) != 0) _exit(77);
    execl(kTrue, kTrue, static_cast<char*>(nullptr));
    _exit(2);
  }
  const int status = WaitFor(pid);
  if (status == 77) GTEST_SKIP() << "SKIPPED: no mount namespace may be made here";
  source->Drain(seen);
  ASSERT_TRUE(ProcessTold(pid));
  EXPECT_EQ(ProcessTold(pid)->description, "/usr/bin/true:" + std::to_string(pid));
}

// The loader that programs here ask for.
std::string Interpreter() {
  std::string name;
  dl_iterate_phdr(
      [](dl_phdr_info* info, std::size_t, void* found) {
        for (int i = 0; i < info->dlpi_phnum; ++i) {
          const ElfW(Phdr)& header = info->dlpi_phdr[i];
          if (header.p_type != PT_INTERP) continue;
          *static_cast<std::string*>(found) = reinterpret_cast<const char*>(info->dlpi_addr + header.p_vaddr);
        }
        return 1;  // the program itself comes first
      },
      &name);
  return name;
}

// Without a right of the host's, only as root of a namespace of his own, a user may change a program's root.
TEST_F(RealKernel, ChangedRootDoesNotChangeTheName) {
  const std::filesystem::path jail = folder.Path("jail");
  const auto put = [&](const std::string& from, const std::filesystem::path& to) {
    std::filesystem::create_directories((jail / to.relative_path()).parent_path());
    std::filesystem::copy_file(from, jail / to.relative_path());
  };
  put(kTrue, kTrue);
  put(RealPath(Interpreter()), Interpreter());
  Dl_info library = {};
  ASSERT_NE(dladdr(reinterpret_cast<void*>(&getpid), &library), 0);
  put(RealPath(library.dli_fname), RealPath(library.dli_fname));
  const std::string program = RealPath(jail.string() + kTrue);
  const pid_t pid = fork();
  if (pid == 0) {
    if (chroot(jail.c_str()) != 0) _exit(77);
    execl(kTrue, kTrue, static_cast<char*>(nullptr));
    _exit(78);
  }
  const int status = WaitFor(pid);
  if (status == 77) GTEST_SKIP() << "SKIPPED: the root may not be changed here";
  EXPECT_EQ(status, 0);
  source->Drain(seen);
  ASSERT_TRUE(ProcessTold(pid));
  EXPECT_EQ(ProcessTold(pid)->description, CleanName(program) + ":" + std::to_string(pid));
}

TEST_F(RealKernel, ConnectionsAreEachSeenOnceWithTheirProgram) {
  constexpr int kConnections = 2000;
  constexpr std::uint16_t kPort = 7777;
  const std::string own = ProgramName({{}, ParseProgramFile(*host->ReadLink("/proc/self/exe"))});
  const int status = InChild([&] {
    if (!EnterOwnNetwork()) return 77;
    const int listening = ListenOn(kPort);
    for (int i = 1; i <= kConnections; ++i) {
      if (!ConnectOnce(listening, MeasuredAddress(i, kPort))) return 2;
    }
    return 0;
  });
  if (status == 77) GTEST_SKIP() << "SKIPPED: no network namespace may be made here";
  ASSERT_EQ(status, 0);
  source->Drain(seen);
  const auto came = Told(Kind::kCame, monitor::kConnections);
  const auto went = Told(Kind::kWent, monitor::kConnections);
  int right = 0;
  for (int i = 1; i <= kConnections; ++i) {
    char text[INET_ADDRSTRLEN] = {};
    const sockaddr_in address = MeasuredAddress(i, kPort);
    inet_ntop(AF_INET, &address.sin_addr, text, sizeof text);
    const std::string description = std::string(text) + ":7777:" + own;
    if (came.contains(description) && came.at(description) == 1 && went.contains(description) &&
        went.at(description) == 1) {
      ++right;
    }
  }
  EXPECT_EQ(right, kConnections);
  EXPECT_EQ(Told(Kind::kCame, monitor::kPorts).count("7777:" + own), 1U);
  EXPECT_EQ(Told(Kind::kWent, monitor::kPorts).count("7777:" + own), 1U);
  EXPECT_EQ(Lost(), 0U);
}

// Who listens without choosing a port is given one only after the kernel has told that he listens.
TEST_F(RealKernel, PortThatTheKernelChoseIsFound) {
  const std::string own = ProgramName({{}, ParseProgramFile(*host->ReadLink("/proc/self/exe"))});
  const int handle = socket(AF_INET, SOCK_STREAM, 0);
  ASSERT_EQ(listen(handle, 1), 0);
  sockaddr_in address = {};
  socklen_t size = sizeof address;
  getsockname(handle, reinterpret_cast<sockaddr*>(&address), &size);
  const std::string description = std::to_string(ntohs(address.sin_port)) + ":" + own;
  // Looks are a second apart at least.
  while (Told(Kind::kCame, monitor::kPorts).count(description) == 0 && seen.size() < 1'000'000) {
    source->Drain(seen);
    sched_yield();
  }
  EXPECT_EQ(Told(Kind::kCame, monitor::kPorts)[description], 1);
  close(handle);
  source->Drain(seen);
  EXPECT_EQ(Told(Kind::kWent, monitor::kPorts)[description], 1);
}

}  // namespace
}  // namespace zendrix::agent
