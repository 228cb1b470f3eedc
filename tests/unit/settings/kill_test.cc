// Real files, a real process, a real kill: whenever the process that saves is killed, the next start finds
// each settings file and its hash as one pair, with the old value or the new one.
#include <signal.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <random>
#include <thread>

#include "core/hash_utils.h"
#include "platform/linux/linux_family.h"
#include "platform/linux/linux_files.h"
#include "platform/memory/memory_platform.h"
#include "settings/reg_ini.h"
#include "settings/setting.h"
#include "settings/smtp.h"
#include "support/temporary_folder.h"

namespace zendrix::settings {
namespace {

// Each kill waits for some saves, which takes seconds on a machine that is busy with other things. More than
// the fewest are only made until one has fallen into the middle of a save.
constexpr int kFewestKills = 60;
constexpr int kMostKills = 400;
// Files that a kill may leave behind at one time; the next save takes them away.
constexpr std::size_t kMostLeftOvers = 2;

// A memory file system where there is one: a save flushes its files, and what is tested is the order of the
// steps.
std::filesystem::path WhereSavesAreQuick() {
  return access("/dev/shm", W_OK) == 0 ? "/dev/shm" : testing::TempDir();
}

// The console's rooms over the real files of a folder.
struct Program {
  explicit Program(const std::string& folder) { state.ProgramFolder = folder; }

  platform::MemoryPlatform memory;
  platform::LinuxFiles files;
  platform::LinuxFamily family{"/nonexistent"};
  platform::Seams seams{files,         memory.clock,         memory.locale,       memory.host,
                        memory.shell,  memory.instance_lock, memory.services,     memory.timers,
                        memory.timers, memory.message_boxes, memory.file_dialogs, memory.colour_dialogs,
                        family,        memory.process};
  core::AppState state{seams};
  core::ErrorLog log{state};
  RegIni reg_ini{state, log};
};

enum Operation { kOneSetting, kWholeCatalogue, kSmtpFile, kOperations };

// What the saving process tells the killing one, in memory that both see. Numbers of saves.
struct Progress {
  std::atomic<int> begun[kOperations];
  std::atomic<int> done[kOperations];
};

void Save(Program& program, Operation operation, int number) {
  const std::string text = std::to_string(number);
  if (operation == kOneSetting) {
    program.reg_ini.SaveSettingHashed("Marks", "single", text);
  } else if (operation == kWholeCatalogue) {
    program.state.settings.ldAlert = text;
    program.reg_ini.SaveRegInfo({{"Memory", true}}, {{"Hostname", number % 2 == 0}});
  } else {
    SaveSMTPData(program.state, program.log, {text + "@b.c", "mail.b.c", "25"});
  }
}

[[noreturn]] void SaveForEver(const std::string& folder, Progress& progress) {
  Program program(folder);
  for (int number = progress.begun[kOneSetting] + 1;; ++number) {
    for (int i = 0; i < kOperations; ++i) {
      progress.begun[i] = number;
      Save(program, static_cast<Operation>(i), number);
      progress.done[i] = number;
    }
  }
}

class KillTest : public ::testing::Test {
 protected:
  KillTest() {
    void* shared = mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    EXPECT_NE(shared, MAP_FAILED);
    progress_ = new (shared) Progress{};
  }
  ~KillTest() override { munmap(progress_, sizeof(Progress)); }

  // Lets a process save until it has done a few more, and a little of the next; then kills it.
  void SaveAndKill() {
    const int enough = progress_->done[kSmtpFile] + std::uniform_int_distribution<int>(1, 3)(random_);
    const std::chrono::microseconds more(std::uniform_int_distribution<int>(0, 400)(random_));
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) SaveForEver(folder_, *progress_);
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (progress_->done[kSmtpFile] < enough && std::chrono::steady_clock::now() < limit)
      std::this_thread::yield();
    const auto moment = std::chrono::steady_clock::now() + more;
    while (std::chrono::steady_clock::now() < moment) std::this_thread::yield();
    ASSERT_EQ(kill(child, SIGKILL), 0);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << "the saving process ended by itself";
    ASSERT_GE(progress_->done[kSmtpFile], enough) << "the saving process got nowhere";
  }

  void ExpectOldOrNew(Operation operation, const std::string& found) {
    const int begun = progress_->begun[operation], done = progress_->done[operation];
    if (found == std::to_string(done)) return;
    EXPECT_EQ(found, std::to_string(begun)) << "operation " << operation << ", last finished " << done;
    ++new_values_;
  }

  // What the next start finds.
  void CheckNextStart() {
    Program program(folder_);
    core::HashUtils hashes(program.files, program.family);
    ASSERT_TRUE(hashes.VerifyFileHash(program.reg_ini.IniPath()));
    CSetting file(program.state);
    file.Init();
    ExpectOldOrNew(kOneSetting, file.GetSettingStr("Marks", "single", ""));
    ExpectOldOrNew(kWholeCatalogue, file.GetSettingStr("Misc", "ldAlert", ""));
    const std::string address = LoadSMTPData(program.state, program.log).Address;
    ExpectOldOrNew(kSmtpFile, address.substr(0, address.find('@')));
    EXPECT_TRUE(program.memory.message_boxes.shown.empty()) << "a file did not verify";
  }

  // Files of the folder beside the two pairs.
  std::vector<std::string> LeftOvers() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
      const std::string name = entry.path().filename();
      if (name != "zendrix.ini" && name != "zendrix.kvh" && !name.starts_with("KorvessaSMTPConfig.kv"))
        names.push_back(name);
    }
    return names;
  }

  const test::TemporaryFolder temporary_{WhereSavesAreQuick()};
  const std::string folder_ = temporary_.path();
  Progress* progress_ = nullptr;
  std::mt19937 random_{20041109};
  int new_values_ = 0;
};

TEST_F(KillTest, AKillAtAnyMomentLeavesPairsThatVerifyWithTheOldValueOrTheNew) {
  Program first(folder_);
  for (int i = 0; i < kOperations; ++i) Save(first, static_cast<Operation>(i), 0);
  std::size_t most_left_overs = 0;
  const auto enough = [&](int kills) { return kills >= (new_values_ > 0 ? kFewestKills : kMostKills); };
  for (int kills = 0; !enough(kills) && !HasFailure(); ++kills) {
    ASSERT_NO_FATAL_FAILURE(SaveAndKill());
    ASSERT_NO_FATAL_FAILURE(CheckNextStart());
    most_left_overs = std::max(most_left_overs, LeftOvers().size());
  }
  EXPECT_LE(most_left_overs, kMostLeftOvers) << testing::PrintToString(LeftOvers());
  // Kills did fall between a finished file and the end of its save.
  EXPECT_GT(new_values_, 0);
}

}  // namespace
}  // namespace zendrix::settings
