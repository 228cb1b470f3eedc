// Real processes.
#include "act/linux_processes.h"

#include <gtest/gtest.h>

#include <ctime>

#include "support/temporary_folder.h"
#include "unit/act/dropper.h"

namespace zendrix::act {
namespace {

// Never reached, however busy the machine is.
constexpr std::int64_t kLongMs = 100'000;

class LinuxProcessesTest : public testing::Test {
 protected:
  ShownProgram Shown() const {
    struct stat status = {};
    EXPECT_EQ(stat(dropper_.path().c_str(), &status), 0);
    return {dropper_.process(), {status.st_dev, status.st_ino}, std::nullopt};
  }

  const test::TemporaryFolder folder_{test::FolderOnDisk()};
  test::Dropper dropper_{folder_.Path("dropper")};
  LinuxProcesses processes_;
};

TEST_F(LinuxProcessesTest, TheProgramThatWasShownIsEnded) {
  const auto held = processes_.Hold(dropper_.process());
  ASSERT_TRUE(held);
  const ShownProgram shown = Shown();
  EXPECT_EQ(held->Is(shown), Found::kIt);
  EXPECT_FALSE(held->HasEnded(0));
  held->Kill();
  EXPECT_TRUE(held->HasEnded(kLongMs));
  EXPECT_EQ(held->Is(shown), Found::kGone);
  EXPECT_TRUE(dropper_.WasKilled());
}

TEST_F(LinuxProcessesTest, AProcessThatBeganBehindTheEventIsAnother) {
  const auto held = processes_.Hold(dropper_.process());
  ASSERT_TRUE(held);
  ShownProgram shown = Shown();
  shown.moment = std::time(nullptr) - 3600;
  EXPECT_EQ(held->Is(shown), Found::kGone);
  shown.moment = std::time(nullptr) + 60;
  EXPECT_EQ(held->Is(shown), Found::kIt);
}

TEST_F(LinuxProcessesTest, AProcessOfAnotherFileIsAnother) {
  const auto held = processes_.Hold(dropper_.process());
  ASSERT_TRUE(held);
  ShownProgram shown = Shown();
  ++shown.file.number;
  EXPECT_EQ(held->Is(shown), Found::kAnother);
  shown = Shown();
  ++shown.file.device;
  EXPECT_EQ(held->Is(shown), Found::kAnother);
}

TEST_F(LinuxProcessesTest, AFileThatWasReplacedUnderTheSamePathIsAnother) {
  const auto held = processes_.Hold(dropper_.process());
  ASSERT_TRUE(held);
  const ShownProgram before = Shown();
  std::filesystem::rename(dropper_.path(), folder_.Path("aside"));
  dropper_.Write();
  EXPECT_EQ(held->Is(Shown()), Found::kAnother);
  EXPECT_EQ(held->Is(before), Found::kIt);
}

TEST_F(LinuxProcessesTest, AHandleOfAnEndedProcessHitsNobody) {
  const auto held = processes_.Hold(dropper_.process());
  const ShownProgram shown = Shown();
  dropper_.Start();
  EXPECT_EQ(held->Is(shown), Found::kGone);
  held->Kill();
  EXPECT_TRUE(held->HasEnded(0));
  EXPECT_EQ(kill(dropper_.process(), 0), 0);
  EXPECT_FALSE(dropper_.WasKilled());
}

TEST_F(LinuxProcessesTest, ThereIsNothingToHoldOfNoProcess) {
  const pid_t gone = dropper_.process();
  dropper_.Start();
  EXPECT_FALSE(processes_.Hold(gone));
  for (const pid_t number : {0, -1, 1, static_cast<int>(getpid())}) EXPECT_FALSE(processes_.Hold(number));
}

}  // namespace
}  // namespace zendrix::act
