// Another program exchanges what stands in the file's place while the file is being moved. What is caught by
// mistake is given back; nothing but the file that was checked is ever moved or changed.
#include <linux/fs.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include "support/sanitizers.h"
#include "unit/quarantine/quarantine_fixture.h"
#include "unit/quarantine/traced_child.h"

namespace zendrix::family {
namespace {

constexpr int kRounds = test::kSanitized ? 20 : 40;
constexpr int kStopsUntilGivenBack = 9;
constexpr int kExchangesPerRacer = 50'000'000;
constexpr char kPrecious[] = "what must not be touched\n";

void Exchange(const std::string& one, const std::string& other) {
  // Fails while one of the two is away.
  (void)renameat2(AT_FDCWD, one.c_str(), AT_FDCWD, other.c_str(), RENAME_EXCHANGE);
}

enum class Victim { kLinkToFile, kHardLink, kFolder, kPipe, kFolderOnTheWay };

std::string VictimName(Victim victim) {
  switch (victim) {
    case Victim::kLinkToFile:
      return "LinkToAFile";
    case Victim::kHardLink:
      return "FileWithTwoNames";
    case Victim::kFolder:
      return "Folder";
    case Victim::kPipe:
      return "Pipe";
    case Victim::kFolderOnTheWay:
      break;
  }
  return "LinkInsteadOfAFolderOnTheWay";
}

class RaceTest : public QuarantineTest, public testing::WithParamInterface<std::tuple<Victim, bool>> {
 protected:
  RaceTest() : QuarantineTest(std::get<1>(GetParam())) {}

  Victim victim() const { return std::get<0>(GetParam()); }

  // "way/evil" is to be put away. Beside it, or beside its folder, lies what it is exchanged with.
  void Fresh() {
    for (const auto& name : NamesOf(files_)) std::filesystem::remove_all(Path(name));
    std::filesystem::create_directory(Path("way"));
    std::filesystem::create_directory(Path("safe"));
    evil_ = Make("way/evil");
    const std::string precious = Make("safe/evil", kPrecious, 0644);
    one_ = evil_;
    other_ = Path("way/other");
    switch (victim()) {
      case Victim::kLinkToFile:
        std::filesystem::create_symlink(precious, other_);
        break;
      case Victim::kHardLink:
        std::filesystem::create_hard_link(precious, other_);
        break;
      case Victim::kFolder:
        std::filesystem::create_directory(other_);
        Make("way/other/inside", kPrecious, 0644);
        break;
      case Victim::kPipe:
        ASSERT_EQ(mkfifo(other_.c_str(), 0644), 0);
        break;
      case Victim::kFolderOnTheWay:
        one_ = Path("way");
        other_ = Path("link");
        std::filesystem::create_symlink(Path("safe"), other_);
        break;
    }
    precious_before_ = LookAt(precious);
    struct stat status = {};
    ASSERT_EQ(lstat(other_.c_str(), &status), 0);
    victim_inode_ = status.st_ino;
    victim_device_ = status.st_dev;
    victim_before_ = LookAt(other_);
  }

  // Where the thing with the victim's number is, among the files and in the store.
  std::vector<std::string> PlacesOfVictim() const {
    std::vector<std::string> places;
    for (const auto& root : {files_, store_}) {
      if (!std::filesystem::exists(root)) continue;
      for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
        struct stat status = {};
        if (lstat(entry.path().c_str(), &status) == 0 && status.st_ino == victim_inode_ &&
            status.st_dev == victim_device_)
          places.push_back(entry.path());
      }
    }
    return places;
  }

  void ExpectVictimUnharmed(const std::string& when) {
    EXPECT_EQ(LookAt(Path("safe/evil")), precious_before_) << when;
    const auto places = PlacesOfVictim();
    ASSERT_EQ(places.size(), victim() == Victim::kHardLink ? 2U : 1U)
        << when << testing::PrintToString(places);
    for (const auto& place : places) {
      EXPECT_FALSE(place.starts_with(store_)) << when << ": " << place;
      EXPECT_EQ(LookAt(place), victim_before_) << when << ": " << place;
      if (place.ends_with("safe/evil")) continue;
      EXPECT_TRUE(place == one_ || place == other_) << when << ": " << place;
    }
    if (victim() == Victim::kFolder) {
      EXPECT_EQ(LookAt(places[0] + "/inside").contents, kPrecious) << when;
    }
  }

  // The evil file itself is in one of its two places or the one entry of the store.
  void ExpectEvilKnown(const std::string& when) {
    std::vector<std::string> at;
    for (const auto& path : {evil_, Path("way/other"), Path("link/evil")})
      if (LookAt(path).contents == kContents && !std::filesystem::is_symlink(path)) at.push_back(path);
    if (at.empty()) {
      EXPECT_EQ(Stored().size(), 2U) << when << testing::PrintToString(Stored());
      EXPECT_EQ(LookAt(TheEntry()).mode, static_cast<mode_t>(S_IFREG)) << when;
    } else {
      EXPECT_EQ(Stored(), std::vector<std::string>()) << when << testing::PrintToString(at);
    }
  }

  void EmptyStore() {
    for (const auto& name : Stored()) unlink((store_ + "/" + name).c_str());
  }

  std::string evil_, one_, other_;
  Look precious_before_, victim_before_;
  ino_t victim_inode_ = 0;
  dev_t victim_device_ = 0;
};

// Exchanges the two names as fast as it can until it is told to stop; also ends by itself.
class Racer {
 public:
  Racer(const std::string& one, const std::string& other) : pid_(fork()) {
    if (pid_ < 0) throw std::runtime_error("no child process");
    if (pid_ > 0) return;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    for (int i = 0; i < kExchangesPerRacer; ++i) Exchange(one, other);
    _exit(0);
  }
  Racer(const Racer&) = delete;
  Racer& operator=(const Racer&) = delete;
  ~Racer() {
    kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
  }
  // Returns when it stands still.
  void Hold() const {
    kill(pid_, SIGSTOP);
    waitpid(pid_, nullptr, WUNTRACED);
  }
  void LetGo() const { kill(pid_, SIGCONT); }

 private:
  pid_t pid_;
};

TEST_P(RaceTest, AProgramThatExchangesAllTheTimeGetsNothingElseMoved) {
  Fresh();
  const Racer racer(one_, other_);
  for (int round = 0; round < kRounds && !HasFailure(); ++round) {
    const Outcome outcome = PutAway(evil_);
    racer.Hold();
    const std::string when = "round " + std::to_string(round) + ": " + outcome.text;
    ExpectVictimUnharmed(when);
    ExpectEvilKnown(when);
    EmptyStore();
    Fresh();
    racer.LetGo();
  }
}

// Before a call that looks a name up in an open folder. Between two such calls it makes no difference when
// the exchange happens.
bool LooksUp(const test::Stop& stop) {
  const bool by_name = stop.call == SYS_openat || stop.call == SYS_renameat2 || stop.call == SYS_unlinkat ||
                       stop.call == SYS_newfstatat;
  return by_name && stop.argument != AT_FDCWD;
}

TEST_P(RaceTest, AnExchangeBeforeAnyLookUpMovesNothingElse) {
  for (int exchange_at = 1;; ++exchange_at) {
    Fresh();
    int look_ups = 0;
    const auto at_stop = [&](const test::Stop& stop) {
      if (LooksUp(stop) && ++look_ups == exchange_at) Exchange(one_, other_);
      return true;
    };
    ASSERT_TRUE(test::RunTraced([&] { PutAway(evil_); }, at_stop));
    const std::string when = "exchanged before look-up " + std::to_string(exchange_at);
    ExpectVictimUnharmed(when);
    ExpectEvilKnown(when);
    EmptyStore();
    if (look_ups < exchange_at || HasFailure()) break;
  }
}

// The worst moment: something else was caught and the process dies before it could give it back.
TEST_P(RaceTest, WhatADyingProcessCaughtIsGivenBackByTheNextOperation) {
  bool reached = true;
  for (int exchange_at = 1; reached && !HasFailure(); ++exchange_at) {
    for (int later = 0; later <= kStopsUntilGivenBack && !HasFailure(); ++later) {
      Fresh();
      int renames = 0, kill_at = 0;
      const auto at_stop = [&](const test::Stop& stop) {
        if (stop.call == SYS_renameat2 && ++renames == exchange_at) {
          Exchange(one_, other_);
          kill_at = stop.number + later;
        }
        return kill_at == 0 || stop.number < kill_at;
      };
      test::RunTraced([&] { PutAway(evil_); }, at_stop);
      reached = kill_at > 0;
      PutAway(Path("nothing"));
      ExpectVictimUnharmed("exchanged before rename " + std::to_string(exchange_at) + ", killed " +
                           std::to_string(later) + " stops later");
      EmptyStore();
    }
  }
  EXPECT_FALSE(reached);
}

std::string RaceName(const testing::TestParamInfo<RaceTest::ParamType>& race) {
  return VictimName(std::get<0>(race.param)) + WayName({std::get<1>(race.param), race.index});
}

INSTANTIATE_TEST_SUITE_P(Quarantine, RaceTest,
                         testing::Combine(testing::Values(Victim::kLinkToFile, Victim::kHardLink,
                                                          Victim::kFolder, Victim::kPipe,
                                                          Victim::kFolderOnTheWay),
                                          testing::Bool()),
                         RaceName);

}  // namespace
}  // namespace zendrix::family
