#include "agent/waiting.h"

#include <gtest/gtest.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include "agent/sources/memory/recorded_source.h"
#include "platform/memory/fake_clock.h"

namespace zendrix::agent {
namespace {

// The clock stands still while the kernel waits, and goes on by what is slept.
class WaitingTest : public ::testing::Test {
 protected:
  RecordedSource& Add(std::int64_t gather_ms) {
    auto made = std::make_unique<RecordedSource>(std::vector<std::string_view>{monitor::kProcesses},
                                                 SourceLevel{Level::kEvents, "test", ""});
    made->SetTimes(kDrainMs, gather_ms);
    handles.emplace_back(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
    made->SetHandle(handles.back().get());
    sources.push_back(std::move(made));
    return static_cast<RecordedSource&>(*sources.back());
  }
  static void Wake(const Source& source) { ASSERT_EQ(eventfd_write(source.Handle(), 1), 0); }
  std::int64_t SleptIn(std::int64_t milliseconds) {
    const std::int64_t before = clock.MonotonicMs();
    Waiting(sources, clock).Rest(milliseconds);
    return clock.MonotonicMs() - before;
  }

  platform::FakeClock clock;
  std::vector<std::unique_ptr<Source>> sources;
  std::vector<platform::FileDescriptor> handles;
};

TEST_F(WaitingTest, NothingReadySleepsNoLongerThanTheKernelWaited) {
  Add(kDrainMs);
  EXPECT_EQ(SleptIn(1), 0);
}

TEST_F(WaitingTest, WhatIsReadyGathersAsLongAsItsSourceSays) {
  Wake(Add(kDrainMs));
  EXPECT_EQ(SleptIn(10'000), kDrainMs);
}

TEST_F(WaitingTest, SourceThatIsInAHurryIsNotHeldUpByAnother) {
  Wake(Add(kDrainMs));
  Wake(Add(kGatherMs));
  EXPECT_EQ(SleptIn(10'000), kGatherMs);
}

TEST_F(WaitingTest, WhatGathersMakesNoRestLongerThanItWasMeantToBe) {
  Wake(Add(kDrainMs));
  EXPECT_EQ(SleptIn(7), 7);
}

TEST_F(WaitingTest, SourceWithoutAHandleIsPassedOver) {
  Wake(Add(kDrainMs));
  static_cast<RecordedSource&>(*sources.front()).SetHandle(-1);
  EXPECT_EQ(SleptIn(1), 0);
}

}  // namespace
}  // namespace zendrix::agent
